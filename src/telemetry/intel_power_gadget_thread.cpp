#include "telemetry/intel_power_gadget_thread.h"

#include <QLoggingCategory>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace kivo {
namespace {

// Every second a line, so only where it is asked for.
Q_LOGGING_CATEGORY(sensorLog, "kivo.telemetry.sensors", QtInfoMsg)

constexpr unsigned long kLastGraceMs = 1500;

bool HasValue(const SensorReadings& readings) {
    return std::any_of(kQuantities.begin(), kQuantities.end(),
                       [&readings](Quantity quantity) { return readings[quantity].value.has_value(); });
}

}  // namespace

qint32 WholeWatts(double watts) {
    // The limits are exact in a double; no number is in no range.
    constexpr double kLeast = std::numeric_limits<qint32>::min();
    constexpr double kMost = std::numeric_limits<qint32>::max();
    return watts >= kLeast && watts <= kMost ? static_cast<qint32>(watts) : 0;
}

IntelPowerGadgetThread::IntelPowerGadgetThread(QObject* parent) : IntelPowerGadgetThread(Parts{}, parent) {}

IntelPowerGadgetThread::IntelPowerGadgetThread(Parts parts, QObject* parent)
    : QThread(parent), m_parts(std::move(parts)) {
    qRegisterMetaType<SensorReadings>("kivo::SensorReadings");
}

IntelPowerGadgetThread::~IntelPowerGadgetThread() {
    AskToStop();
    if (!wait(kLastGraceMs)) {
        terminate();
        wait();
    }
    static_cast<void>(m_end.IsMarked());
}

void IntelPowerGadgetThread::AskToStop() {
    m_pause.Stop();
}

void IntelPowerGadgetThread::Stop() {
    AskToStop();
    terminate();
    wait();
}

void IntelPowerGadgetThread::run() {
    // Terminated, a thread would take locks of Qt's with it, or of the C library's, and the program would
    // hang on them.
    setTerminationEnabled(false);
    const ThreadEndMarker marker(m_end);
    const auto sensors = m_parts.makeSensors();
    const bool isLoaded = LoadLibrary(*sensors);
    if (isStop == 0) {
        sensors->ReadSample();
    }
    // A library that is there speaks from the second sample on, and nobody before it.
    if (!isLoaded) {
        Tell(*sensors);
    }
    while (isStop == 0) {
        m_pause.Sleep(m_parts.period);
        if (isStop == 0) {
            LoadLibrary(*sensors);
            sensors->ReadSample();
            Tell(*sensors);
        }
    }
    qDebug("isStop.\n");
}

bool IntelPowerGadgetThread::LoadLibrary(PackageSensors& sensors) {
    if (sensors.Load()) {
        return true;
    }
    // Most computers will never have it, so its failure is told once.
    const QString error = sensors.ErrorString();
    if (!error.isEmpty() && !std::exchange(m_hasToldError, true)) {
        qDebug("Error: %s", qUtf8Printable(error));
    }
    return false;
}

void IntelPowerGadgetThread::Tell(PackageSensors& sensors) {
    const SensorReadings readings = sensors.Readings();
    const std::optional<PackageNumbers> numbers = sensors.Numbers();
    if (numbers) {
        qCDebug(sensorLog, "-1 -- %g", numbers->watts);
    }
    if (isStop != 0) {
        return;
    }
    if (HasValue(readings) || !(readings == m_told)) {
        m_told = readings;
        Q_EMIT readingsTaken(readings);
    }
    if (numbers) {
        Q_EMIT RefreshCpuPowClock(WholeWatts(numbers->watts), numbers->degreesCelsius, 0, 0);
    }
}

}  // namespace kivo
