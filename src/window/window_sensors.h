#pragma once

// The window's sensors: the poller that brings power and temperature, the read-out at the top with the
// thermal zone that a click reads, and the list behind "Sensors..." in the tray menu. GUI thread.

#include <QDeadlineTimer>
#include <QObject>
#include <QString>
#include <memory>
#include <vector>

#include "telemetry/intel_power_gadget_thread.h"
#include "telemetry/thermal_zone_thread.h"

class QAbstractButton;

namespace kivo {

class LiveSession;
class SensorsDialog;

class WindowSensors : public QObject {
    Q_OBJECT

public:
    struct Parts {
        PackageSensorsFactory makeSensors = MakePackageSensors;
        ThermalZoneThread::Reader readThermalZone = ReadThermalZoneTemperature;
    };

    // The session, which gets the readings, and the read-out outlive it. The poller is not started yet.
    WindowSensors(LiveSession& session, QAbstractButton& readOut, Parts parts);
    // Waits for the threads; see AskToStop.
    ~WindowSensors() override;

    // The poller on and off. One at a time, and none after AskToStop. Stopping does not ask twice: see
    // IntelPowerGadgetThread::Stop.
    void StartPowerPoller();
    void StopPowerPoller();

    // Asks all threads to end; nothing is started any more.
    void AskToStop();
    // Waits for them until the deadline; false when one goes on.
    bool HaveEnded(QDeadlineTimer deadline);

    // Reads the firmware's thermal zone, beside the window, and shows it at the read-out. While it is being
    // read nothing more is asked.
    void ReadThermalZone();

    // Text and tool tip of the read-out, as they are now.
    void ShowTemperature();

    // Opens the list of sensors, or brings it to the front.
    void ShowList();

Q_SIGNALS:
    // What the poller has read, see IntelPowerGadgetThread.
    void readingsTaken(const kivo::SensorReadings& readings);
    // The poller's RefreshCpuPowClock.
    void sampled(qint32 iPow, qint32 iClock, qint32 iGPow, qint32 iGClock);

private:
    void ShowThermalZone(const QString& text);

    LiveSession& m_session;
    QAbstractButton& m_readOut;
    const Parts m_parts;
    std::unique_ptr<IntelPowerGadgetThread> m_power;
    std::vector<std::unique_ptr<IntelPowerGadgetThread>> m_stoppedPollers;
    std::unique_ptr<ThermalZoneThread> m_thermalZone;
    QString m_thermalText;          // empty: there is none to show
    QDeadlineTimer m_thermalUntil;  // for so long it stands before the live temperature
    bool m_isReadingZone = false;
    bool m_isEnding = false;
    std::unique_ptr<SensorsDialog> m_list;  // null until it is asked for
};

// Loads the energy library and lets it go. Deliberate, fixed: nobody asks what comes of it; the poller loads
// one of its own.
void ProbeEnergyLibrary();

}  // namespace kivo
