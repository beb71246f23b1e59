#include "window/window_sensors.h"

#include <QAbstractButton>
#include <QRegularExpression>
#include <QThread>
#include <algorithm>
#include <utility>

#include "panel/live_session.h"
#include "telemetry/energy_library.h"
#include "window/sensor_table.h"
#include "window/sensors_dialog.h"
#include "window/window_text.h"

namespace kivo {

namespace {

constexpr unsigned long kStopGraceMs = 10;
constexpr std::chrono::seconds kThermalTextStands{10};

// One decimal is all that a person reads off it.
QString Shortened(QString thermalText) {
    static const QRegularExpression decimals(QStringLiteral("^(-?\\d+\\.\\d)\\d+"));
    return thermalText.replace(decimals, QStringLiteral("\\1"));
}

}  // namespace

WindowSensors::WindowSensors(LiveSession& session, QAbstractButton& readOut, Parts parts)
    : m_session(session), m_readOut(readOut), m_parts(std::move(parts)) {}

WindowSensors::~WindowSensors() = default;

void WindowSensors::StartPowerPoller() {
    if (m_power || m_isEnding) {
        return;
    }
    m_power = std::make_unique<IntelPowerGadgetThread>(IntelPowerGadgetThread::Parts{m_parts.makeSensors});
    m_power->isStop = 0;
    m_power->start(QThread::InheritPriority);
    // Deliberate: a sample that comes before this is lost; there is one every second.
    connect(m_power.get(), &IntelPowerGadgetThread::readingsTaken, &m_session, &LiveSession::SetReadings);
    connect(m_power.get(), &IntelPowerGadgetThread::readingsTaken, this, &WindowSensors::readingsTaken);
    connect(m_power.get(), &IntelPowerGadgetThread::RefreshCpuPowClock, this, &WindowSensors::sampled);
}

void WindowSensors::StopPowerPoller() {
    if (!m_power) {
        return;
    }
    m_power->AskToStop();
    QThread::msleep(kStopGraceMs);
    m_power->Stop();
    // Deliberate: not destroyed now. It goes with the window.
    m_stoppedPollers.push_back(std::move(m_power));
}

void WindowSensors::AskToStop() {
    m_isEnding = true;
    if (m_power) {
        m_power->AskToStop();
    }
    if (m_thermalZone) {
        m_thermalZone->AskToStop();
    }
}

bool WindowSensors::HaveEnded(QDeadlineTimer deadline) {
    const bool hasPollerEnded = !m_power || m_power->wait(deadline);
    return (!m_thermalZone || m_thermalZone->wait(deadline)) && hasPollerEnded;
}

void WindowSensors::ReadThermalZone() {
    // One reading at a time. The button stays enabled, or the keyboard's focus would leave it.
    if (std::exchange(m_isReadingZone, true)) {
        return;
    }
    m_thermalText = QStringLiteral("...");
    m_thermalUntil = QDeadlineTimer(QDeadlineTimer::Forever);
    ShowTemperature();
    m_thermalZone = std::make_unique<ThermalZoneThread>(m_parts.readThermalZone);
    connect(m_thermalZone.get(), &ThermalZoneThread::temperatureRead, this, &WindowSensors::ShowThermalZone);
    m_thermalZone->start();
}

void WindowSensors::ShowThermalZone(const QString& text) {
    m_thermalText = Shortened(text);
    m_thermalUntil = QDeadlineTimer(kThermalTextStands);
    m_isReadingZone = false;
    ShowTemperature();
}

void WindowSensors::ShowList() {
    if (!m_list) {
        m_list = std::make_unique<SensorsDialog>(
            [this] { return SensorTable(m_session.LiveTexts(), m_session.Readings()); });
    }
    m_list->BringToFront();
}

// What was asked for stands a while, then the live temperature again. A machine without a sensor keeps it.
void WindowSensors::ShowTemperature() {
    const bool isLive = m_session.HasTemperature();
    if (isLive && m_thermalUntil.hasExpired()) {
        m_thermalText.clear();
    }
    // What a click does, then whose number it is.
    QStringList lines{WindowText(QT_TRANSLATE_NOOP("MainWindow", "CPU温度，点击读取系统温区"))};
    if (!m_thermalText.isEmpty()) {
        m_readOut.setText(m_thermalText);
        lines.append(WindowText(QT_TRANSLATE_NOOP("MainWindow", "系统温区")));
    } else {
        m_readOut.setText(m_session.LiveText(CpuTemperature));
        const Reading reading = m_session.Readings()[Quantity::Temperature];
        lines.append(SensorPhrase(reading));
        lines.append(SensorHelp(Quantity::Temperature, reading));
        lines.removeAll(QString());
    }
    // Only what is new: a screen reader is told of it each time.
    const QString description = lines.join(QLatin1Char('\n'));
    if (description != m_readOut.toolTip()) {
        m_readOut.setToolTip(description);
        m_readOut.setAccessibleDescription(description);
    }
}

void ProbeEnergyLibrary() {
    EnergyLibrary library;
    library.Load();
    library.Release();
}

}  // namespace kivo
