#pragma once

// One reading of the thermal zone, beside the window: it may take half a minute. Made by the GUI thread for
// each reading.

#include <QThread>

#include <atomic>
#include <functional>

#include "telemetry/thermal_zone.h"
#include "telemetry/thread_end.h"

namespace kivo {

class ThermalZoneThread : public QThread {
    Q_OBJECT

public:
    using Reader = std::function<QString(const StopAsked&)>;

    explicit ThermalZoneThread(Reader read, QObject* parent = nullptr);
    // Gives the reading up and waits for the thread.
    ~ThermalZoneThread() override;

    // Gives the reading up: nothing is told any more. Any thread.
    void AskToStop() { m_isStop = true; }

Q_SIGNALS:
    void temperatureRead(const QString& text);

protected:
    void run() override;

private:
    const Reader m_read;
    std::atomic<bool> m_isStop{false};
    ThreadEnd m_end;
};

}  // namespace kivo
