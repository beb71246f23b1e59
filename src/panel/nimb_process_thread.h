#pragma once

// The worker that brings one whole frame to the panel while the busy dialog turns: waits a moment, composes
// the chosen state and has it sent. Touches no widget. Made by
// LiveSession on the GUI thread; ends by itself and is not started again.

#include <QThread>
#include <atomic>
#include <chrono>

#include "telemetry/cpu_counter.h"
#include "telemetry/stop_pause.h"
#include "telemetry/thread_end.h"

namespace kivo {

class MetricSnapshot;
class PanelSender;

class NimbProcessThread : public QThread {
    Q_OBJECT

public:
    // Both outlive the thread.
    struct Parts {
        PanelSender& sender;
        MetricSnapshot& snapshot;
        // Before the frame is composed. The CPU load that the frame shows is measured over it.
        std::chrono::milliseconds pause{1000};
        CpuCounterFactory makeCpuCounter = MakeCpuCounter;
    };
    explicit NimbProcessThread(Parts parts, QObject* parent = nullptr);
    // Stops the thread and waits for it.
    ~NimbProcessThread() override;

    // Asks the thread to end before it composes. A thread that was stopped before it began never reports: its
    // dialog would stay open. A frame that is on its way is stopped by Transfers::StopTransfers. Any thread.
    void stop();

    // Whether the panel took the frame. From DoProcessDlg on. Any thread.
    bool Succeeded() const { return m_succeeded; }

    std::atomic<quint8> isStop{0};

Q_SIGNALS:
    // The upload is over, whether it went well or not. Emitted once, on the worker.
    void DoProcessDlg();

protected:
    void run() override;

private:
    void MeasureLoadDuringPause();

    const Parts m_parts;
    StopPause m_pause{isStop};
    std::atomic<bool> m_succeeded{false};
    ThreadEnd m_end;
};

}  // namespace kivo
