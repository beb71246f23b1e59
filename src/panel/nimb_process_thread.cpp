#include "panel/nimb_process_thread.h"

#include <QDebug>
#include <QScopeGuard>

#include "panel/panel_sender.h"
#include "telemetry/cpu_usage_sampler.h"
#include "telemetry/metric_snapshot.h"

namespace kivo {

NimbProcessThread::NimbProcessThread(Parts parts, QObject* parent)
    : QThread(parent), m_parts(std::move(parts)) {}

NimbProcessThread::~NimbProcessThread() {
    stop();
    wait();
    static_cast<void>(m_end.IsMarked());
}

void NimbProcessThread::stop() {
    m_pause.Stop();
}

void NimbProcessThread::run() {
    const ThreadEndMarker marker(m_end);
    if (isStop != 0) {
        // Deliberate: nobody waits for a thread that was stopped before it began.
        qDebug("isStop.\n");
        return;
    }
    const auto report = qScopeGuard([this] { Q_EMIT DoProcessDlg(); });
    MeasureLoadDuringPause();
    if (isStop == 0) {
        m_succeeded = m_parts.sender.ComposeWholeFrame();
    }
}

void NimbProcessThread::MeasureLoadDuringPause() {
    CpuUsageSampler sampler(m_parts.makeCpuCounter);
    sampler.SetMode(0);
    sampler.Sample();
    m_pause.Sleep(m_parts.pause);
    if (isStop != 0) {
        return;
    }
    const qint32 percent = sampler.Sample();
    if (sampler.HasRead()) {
        m_parts.snapshot.SetCpuUsed(percent);
    } else {
        m_parts.snapshot.SetCpuUnreadable();
    }
}

}  // namespace kivo
