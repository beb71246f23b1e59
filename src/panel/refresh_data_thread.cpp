#include "panel/refresh_data_thread.h"

#include <QCoreApplication>
#include <QDebug>

#include "telemetry/metric_snapshot.h"

namespace kivo {

RefreshDataThread::RefreshDataThread(Parts parts, QObject* parent)
    : QThread(parent),
      m_parts(std::move(parts)),
      m_sampler(m_parts.makeCpuCounter),
      m_startTexts(StartTexts(m_parts.language)) {}

RefreshDataThread::~RefreshDataThread() {
    stop();
    wait();
    static_cast<void>(m_end.IsMarked());
}

void RefreshDataThread::stop() {
    m_pause.Stop();
    quit();
}

void RefreshDataThread::run() {
    const ThreadEndMarker marker(m_end);
    if (isStop == 0) {
        m_parts.renderer.Prepare();
    }
    m_sampler.SetMode(0);
    while (isStop == 0) {
        Round();
        m_pause.Sleep(m_parts.pauses.afterRound);
    }
    qDebug("isStop.\n");
}

void RefreshDataThread::Round() {
    const bool isPanelThere = m_parts.renderer.BeginRound();
    for (int index = 0; index < kLiveValueCount && isStop == 0; ++index) {
        if (index == CpuUsage) {
            SampleCpu();
        }
        if (isPanelThere) {
            RefreshValue(index);
        }
    }
    m_firstRound = false;
}

void RefreshDataThread::SampleCpu() {
    const qint32 percent = m_sampler.Sample();
    // The first sample of a new sampler has nothing to compare with and is 0; a load that is known already
    // stays, or every new thread would flash 1%.
    if (m_firstRound && m_parts.snapshot.CpuUsed() != 0) {
        return;
    }
    if (m_sampler.HasRead()) {
        m_parts.snapshot.SetCpuUsed(percent);
    } else {
        m_parts.snapshot.SetCpuUnreadable();
    }
}

void RefreshDataThread::RefreshValue(int index) {
    const QString text = m_parts.snapshot.GetValueText(index);
    // Deliberate, fixed: in the first round a text that equals its start text is left out, but for time and
    // date. It is owed still, so the second round sends it, or the panel would keep what it showed before the
    // program started.
    if (m_firstRound && index != Time && index != Date && text == m_startTexts[size_t(index)]) {
        return;
    }
    if (!m_parts.renderer.RenderLiveItem(text, index)) {
        return;
    }
    // Deliberate, fixed: lets this thread's own events in, the timers and deletions of whatever drew.
    QCoreApplication::processEvents();
    m_pause.Sleep(m_parts.pauses.afterValue);
}

}  // namespace kivo
