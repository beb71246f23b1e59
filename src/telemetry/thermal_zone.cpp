#include "telemetry/thermal_zone.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QtEndian>

#include <algorithm>

namespace kivo {
namespace {

constexpr QChar kDegreeSign(0x00B0);
constexpr std::chrono::milliseconds kBetweenLooks{50};

constexpr double kFreezingPoint = 2732.0;  // in tenths of a kelvin
constexpr double kTenths = 10.0;
constexpr double kColdest = -200.0;

bool IsUtf16(const QByteArray& output) {
    return output.startsWith("\xFF\xFE") || (output.size() >= 2 && output[1] == '\0' && output[0] != '\0');
}

// A process that need not have ended when this goes: QProcess would wait another half minute for it.
class ChildProcess final : public QProcess {
public:
    ChildProcess() = default;
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() override { setProcessState(NotRunning); }
};

QString Decode(const QByteArray& output) {
    if (!IsUtf16(output)) {
        return QString::fromLatin1(output.constData(),
                                   int(qstrnlen(output.constData(), uint(output.size()))));
    }
    QString text(output.size() / 2, Qt::Uninitialized);
    qFromLittleEndian<char16_t>(output.constData(), text.size(), text.data());
    if (text.startsWith(QChar(QChar::ByteOrderMark))) {
        text.remove(0, 1);
    }
    return text;
}

}  // namespace

double CelsiusOfTenths(double tenthsOfKelvin) {
    return (tenthsOfKelvin - kFreezingPoint) / kTenths;
}

bool IsZoneTemperature(double degreesCelsius) {
    return degreesCelsius > kColdest;
}

QString ThermalText(double degreesCelsius) {
    return QString::number(degreesCelsius, 'f', 6) + kDegreeSign + QLatin1Char('C');
}

QString NoThermalText() {
    return QStringLiteral("N/A");
}

QString ThermalCommand() {
    return QStringLiteral(
        "wmic /namespace:\\\\root\\wmi PATH MSAcpi_ThermalZoneTemperature get CurrentTemperature /value");
}

std::optional<double> LastThermalZone(const QByteArray& output) {
    std::optional<double> last;
    // The client ends its lines with CR CR LF; the spare one goes when the value is trimmed.
    const QStringList lines = Decode(output).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList parts = line.split(QLatin1Char('='), Qt::SkipEmptyParts);
        if (parts.size() != 2 || parts[0].trimmed() != QLatin1String("CurrentTemperature")) {
            continue;
        }
        bool isNumber = false;
        const int value = parts[1].trimmed().toInt(&isNumber, 10);
        if (isNumber) {
            last = CelsiusOfTenths(value);
        }
    }
    return last;
}

QString ParseThermalZones(const QByteArray& output) {
    const std::optional<double> zone = LastThermalZone(output);
    return zone ? ThermalText(*zone) : NoThermalText();
}

QByteArray ReadCommandOutput(const Command& command, const CommandLimits& limits,
                             const StopAsked& isStopAsked) {
    const QDeadlineTimer deadline(limits.run);
    ChildProcess process;
    process.start(command.program, command.arguments);
    process.closeWriteChannel();  // the WMI client waits for the end of its input
    // In short waits, so that giving up is quick.
    while (process.state() != QProcess::NotRunning && !(isStopAsked && isStopAsked()) &&
           !deadline.hasExpired()) {
        const auto left = std::min<qint64>(kBetweenLooks.count(), deadline.remainingTime());
        process.waitForFinished(int(std::max<qint64>(left, 1)));
    }
    if (process.state() != QProcess::NotRunning) {
        process.waitForReadyRead(0);  // takes in what has come since
    }
    QByteArray output = process.readAllStandardOutput();
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(int(limits.end.count()));
    }
    return output;
}

}  // namespace kivo
