#include "app/frame_upload_thread.h"

#include "compose/live_screen.h"
#include "device/transfers.h"
#include "telemetry/cpu_usage_sampler.h"
#include "telemetry/metric_snapshot.h"

namespace kivo {

namespace {

// The first frame shows this moment's load like any other; it takes two samples, this far apart.
constexpr unsigned long kLoadSampleMs = 200;

}  // namespace

FrameUploadThread::FrameUploadThread(LiveScreen& screen, Transfers& transfers, MetricSnapshot& snapshot,
                                     QObject* parent)
    : QThread(parent), m_screen(screen), m_transfers(transfers), m_snapshot(snapshot) {}

FrameUploadThread::~FrameUploadThread() {
    stop();
    wait();
    static_cast<void>(m_end.IsMarked());
}

void FrameUploadThread::run() {
    const ThreadEndMarker marker(m_end);
    CpuUsageSampler sampler;
    sampler.SetMode(0);
    sampler.Sample();
    msleep(kLoadSampleMs);
    m_snapshot.SetCpuUsed(sampler.Sample());

    if (m_isStop != 0) {
        return;
    }
    const bool success = m_screen.ComposeWholeFrame();
    if (success) {
        m_transfers.SendOrientation(int(m_screen.Applied().orientation));
        m_transfers.SendTimeShow();
    }
    Q_EMIT uploaded(success);
}

}  // namespace kivo
