// The window's sensors: the poller that brings power and temperature, and the read-out at the top.

#include <QPushButton>
#include <QRegularExpression>
#include <QThread>
#include <algorithm>
#include <utility>

#include "ui_main_window.h"
#include "window/main_window.h"
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

void MainWindow::StartPowerPoller() {
    if (m_power || m_isEnding) {
        return;
    }
    m_power = std::make_unique<IntelPowerGadgetThread>(IntelPowerGadgetThread::Parts{m_parts.makeSensors});
    m_power->isStop = 0;
    m_power->start(QThread::InheritPriority);
    // Deliberate: a sample that comes before this is lost; there is one every second.
    connect(m_power.get(), &IntelPowerGadgetThread::readingsTaken, m_session.get(),
            &LiveSession::SetReadings);
    connect(m_power.get(), &IntelPowerGadgetThread::readingsTaken, this,
            [this](const SensorReadings& readings) { m_factLog.NoteReadings(readings); });
    connect(m_power.get(), &IntelPowerGadgetThread::RefreshCpuPowClock, this, &MainWindow::slotCpuPowClock);
}

void MainWindow::StopPowerPoller() {
    if (!m_power) {
        return;
    }
    m_power->AskToStop();
    QThread::msleep(kStopGraceMs);
    m_power->Stop();
    // Deliberate: not destroyed now. It goes with the window.
    m_stoppedPollers.push_back(std::move(m_power));
}

void MainWindow::AskSensorsToStop() {
    m_isEnding = true;
    if (m_power) {
        m_power->AskToStop();
    }
    if (m_thermalZone) {
        m_thermalZone->AskToStop();
    }
}

bool MainWindow::HaveSensorsEnded(QDeadlineTimer deadline) {
    const bool hasPollerEnded = !m_power || m_power->wait(deadline);
    return (!m_thermalZone || m_thermalZone->wait(deadline)) && hasPollerEnded;
}

void MainWindow::slotCpuPowClock(qint32 iPow, qint32 iClock, qint32 iGPow, qint32 iGClock) {
    Q_UNUSED(iGPow)
    Q_UNUSED(iGClock)
    m_session->SetCpuPowClock(iPow, iClock);
}

void MainWindow::on_pushButton_clicked() {
    // One reading at a time. The button stays enabled, or the keyboard's focus would leave it.
    if (std::exchange(m_isReadingZone, true)) {
        return;
    }
    m_thermalText = QStringLiteral("...");
    m_thermalUntil = QDeadlineTimer(QDeadlineTimer::Forever);
    ShowTemperature();
    m_thermalZone = std::make_unique<ThermalZoneThread>(m_parts.readThermalZone);
    connect(m_thermalZone.get(), &ThermalZoneThread::temperatureRead, this, &MainWindow::ShowThermalZone);
    m_thermalZone->start();
}

void MainWindow::ShowThermalZone(const QString& text) {
    m_thermalText = Shortened(text);
    m_thermalUntil = QDeadlineTimer(kThermalTextStands);
    m_isReadingZone = false;
    ShowTemperature();
}

void MainWindow::ShowSensors() {
    if (!m_sensors) {
        m_sensors = std::make_unique<SensorsDialog>(
            [this] { return SensorTable(m_session->LiveTexts(), m_session->Readings()); });
    }
    m_sensors->BringToFront();
}

// What was asked for stands a while, then the live temperature again. A machine without a sensor keeps it.
void MainWindow::ShowTemperature() {
    const bool isLive = m_session->HasTemperature();
    if (isLive && m_thermalUntil.hasExpired()) {
        m_thermalText.clear();
    }
    // What a click does, then whose number it is.
    QStringList lines{WindowText(QT_TRANSLATE_NOOP("MainWindow", "CPU温度，点击读取系统温区"))};
    if (!m_thermalText.isEmpty()) {
        m_ui->pushButton->setText(m_thermalText);
        lines.append(WindowText(QT_TRANSLATE_NOOP("MainWindow", "系统温区")));
    } else {
        m_ui->pushButton->setText(m_session->LiveText(CpuTemperature));
        const Reading reading = m_session->Readings()[Quantity::Temperature];
        lines.append(SensorPhrase(reading));
        lines.append(SensorHelp(Quantity::Temperature, reading));
        lines.removeAll(QString());
    }
    // Only what is new: a screen reader is told of it each time.
    const QString description = lines.join(QLatin1Char('\n'));
    if (description != m_ui->pushButton->toolTip()) {
        m_ui->pushButton->setToolTip(description);
        m_ui->pushButton->setAccessibleDescription(description);
    }
}

}  // namespace kivo
