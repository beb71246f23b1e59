#pragma once

// The worker that reads the sensors of the processor package and its fan once a second and tells what they
// say. Made and stopped by the GUI thread; a stopped one is not started again.

#include <QThread>

#include <atomic>
#include <chrono>

#include "telemetry/package_sensors.h"
#include "telemetry/stop_pause.h"
#include "telemetry/thread_end.h"

namespace kivo {

class IntelPowerGadgetThread : public QThread {
    Q_OBJECT

public:
    struct Parts {
        PackageSensorsFactory makeSensors = MakePackageSensors;
        std::chrono::milliseconds period{1000};  // between two samples
    };
    explicit IntelPowerGadgetThread(QObject* parent = nullptr);
    explicit IntelPowerGadgetThread(Parts parts, QObject* parent = nullptr);
    // Asks the thread to end and gives it 1.5 s; then it is terminated and waited for without limit.
    ~IntelPowerGadgetThread() override;

    // Asks the thread to end, which cuts a pause short. Any thread.
    void AskToStop();

    // Asks, terminates at once and waits without limit. Deliberate: the thread allows its termination
    // nowhere, for it might hold a lock, so it ends by itself, which is soon: no call of the library's holds
    // it up.
    void Stop();

    std::atomic<quint8> isStop{0};

Q_SIGNALS:
    // What the sensors say, a moment before RefreshCpuPowClock. While nothing measures anything it tells the
    // reasons, each time that they change.
    void readingsTaken(const kivo::SensorReadings& readings);

    // Power in whole watts, cut off, 0 where it is no number; temperature in degrees Celsius; the last two
    // are reserved and 0. Not told while nothing measures either. Deliberate: the temperature goes where a
    // clock was meant to be.
    void RefreshCpuPowClock(qint32 iPow, qint32 iClock, qint32 iGPow, qint32 iGClock);

protected:
    void run() override;

private:
    bool LoadLibrary(PackageSensors& sensors);
    void Tell(PackageSensors& sensors);

    const Parts m_parts;
    bool m_hasToldError = false;
    SensorReadings m_told;  // last
    StopPause m_pause{isStop};
    ThreadEnd m_end;
};

// Cut off towards zero; 0 where it is no number or too large for one.
qint32 WholeWatts(double watts);

}  // namespace kivo
