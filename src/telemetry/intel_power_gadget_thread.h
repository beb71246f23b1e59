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
        std::chrono::milliseconds period{1000};  // between two samples, and between two tries to find sensors
    };
    explicit IntelPowerGadgetThread(QObject* parent = nullptr);
    explicit IntelPowerGadgetThread(Parts parts, QObject* parent = nullptr);
    // Asks the thread to end and gives it 1.5 s; then it is terminated and waited for without limit.
    ~IntelPowerGadgetThread() override;

    // Asks the thread to end, which cuts a pause short but not a call into the library. Any thread.
    void AskToStop();

    // Asks, terminates at once and waits without limit. Deliberate: the thread may die inside a call of the
    // library, but nowhere else. Not for the program's end, which must not wait for a library that hangs.
    void Stop();

    std::atomic<quint8> isStop{0};

Q_SIGNALS:
    // What the sensors say, a moment before RefreshCpuPowClock. While nothing measures anything it tells the
    // reasons, each time that they change, and RefreshCpuPowClock is silent.
    void readingsTaken(const kivo::SensorReadings& readings);

    // Power in whole watts, cut off, 0 where it is no number; temperature in degrees Celsius; the last two
    // are reserved and 0. Deliberate: the temperature goes where a clock was meant to be.
    void RefreshCpuPowClock(qint32 iPow, qint32 iClock, qint32 iGPow, qint32 iGClock);

protected:
    void run() override;

private:
    // False when the thread is to end.
    bool LoadSensors(PackageSensors& sensors);
    void TellGaps(PackageSensors& sensors);
    void Poll(PackageSensors& sensors);

    const Parts m_parts;
    SensorReadings m_toldGaps;
    StopPause m_pause{isStop};
    ThreadEnd m_end;
};

// Cut off towards zero; 0 where it is no number or too large for one.
qint32 WholeWatts(double watts);

}  // namespace kivo
