#pragma once

#include <QThread>

namespace kivo {

class LiveScreen;
class MetricSnapshot;
class Transfers;

// Composes and uploads one whole frame off the GUI thread and tells the panel its orientation and the time.
// Ends by itself; everything handed in outlives it.
class FrameUploadThread : public QThread {
    Q_OBJECT

public:
    FrameUploadThread(LiveScreen& screen, Transfers& transfers, MetricSnapshot& snapshot,
                      QObject* parent = nullptr);

Q_SIGNALS:
    void uploaded(bool success);

protected:
    void run() override;

private:
    LiveScreen& m_screen;
    Transfers& m_transfers;
    MetricSnapshot& m_snapshot;
};

}  // namespace kivo
