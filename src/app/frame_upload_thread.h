#pragma once

#include <QThread>
#include <atomic>

#include "app/thread_end.h"

namespace kivo {

class LiveScreen;
class MetricSnapshot;
class Transfers;

// Composes and uploads one whole frame off the GUI thread and tells the panel its orientation and the time.
// Ends by itself, or early when asked to stop; everything handed in outlives it.
class FrameUploadThread : public QThread {
    Q_OBJECT

public:
    FrameUploadThread(LiveScreen& screen, Transfers& transfers, MetricSnapshot& snapshot,
                      QObject* parent = nullptr);

    // Stops the thread and waits for it.
    ~FrameUploadThread() override;

    // Asks the thread to end before the frame is composed. Any thread; a frame that is on its way is stopped
    // by Transfers::StopTransfers.
    void stop() { m_isStop = 1; }

Q_SIGNALS:
    void uploaded(bool success);

protected:
    void run() override;

private:
    LiveScreen& m_screen;
    Transfers& m_transfers;
    MetricSnapshot& m_snapshot;
    std::atomic<quint8> m_isStop{0};
    ThreadEnd m_end;
};

}  // namespace kivo
