#include "telemetry/intel_power_gadget_thread.h"

#include <QLoggingCategory>

#include <limits>
#include <utility>

namespace kivo {
namespace {

// Every second a line, so only where it is asked for.
Q_LOGGING_CATEGORY(sensorLog, "kivo.telemetry.sensors", QtInfoMsg)

constexpr unsigned long kLastGraceMs = 1500;

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
    // Sensors open it where they may be left at any point. Terminated elsewhere, a thread would take locks
    // of Qt's with it, or of the C library's, and the program would hang on them.
    setTerminationEnabled(false);
    const ThreadEndMarker marker(m_end);
    const auto sensors = m_parts.makeSensors([](bool isAllowed) { setTerminationEnabled(isAllowed); });
    if (LoadSensors(*sensors)) {
        Poll(*sensors);
    }
    qDebug("isStop.\n");
}

bool IntelPowerGadgetThread::LoadSensors(PackageSensors& sensors) {
    if (!sensors.Load()) {
        qDebug("Error: %s", qUtf8Printable(sensors.ErrorString()));
        TellGaps(sensors);
        while (isStop == 0 && !sensors.Load()) {
            TellGaps(sensors);
            m_pause.Sleep(m_parts.period);
        }
    }
    return isStop == 0;
}

void IntelPowerGadgetThread::TellGaps(PackageSensors& sensors) {
    const SensorReadings gaps = sensors.Readings();
    if (!(gaps == m_toldGaps) && isStop == 0) {
        m_toldGaps = gaps;
        Q_EMIT readingsTaken(gaps);
    }
}

void IntelPowerGadgetThread::Poll(PackageSensors& sensors) {
    sensors.ReadSample();
    while (true) {
        m_pause.Sleep(m_parts.period);
        if (isStop != 0) {
            return;
        }
        sensors.ReadSample();
        const SensorReadings readings = sensors.Readings();
        const int temperature = sensors.Temperature();
        const double power = sensors.Power();
        qCDebug(sensorLog, "-1 -- %g", power);
        if (isStop != 0) {
            return;
        }
        Q_EMIT readingsTaken(readings);
        Q_EMIT RefreshCpuPowClock(WholeWatts(power), temperature, 0, 0);
    }
}

}  // namespace kivo
