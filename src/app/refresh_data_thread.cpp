#include "app/refresh_data_thread.h"

#include <QCoreApplication>
#include <QDebug>

#include "device/transfers.h"
#include "telemetry/cpu_usage_sampler.h"
#include "telemetry/metric_snapshot.h"
#include "telemetry/value_texts.h"

namespace kivo {

RefreshDataThread::RefreshDataThread(Parts parts, QObject* parent)
    : QThread(parent), m_parts(std::move(parts)), m_lastText(StartTexts(m_parts.language)) {}

RefreshDataThread::~RefreshDataThread() {
    stop();
    wait();
    static_cast<void>(m_end.IsMarked());
}

void RefreshDataThread::stop() {
    m_pause.Stop();
    quit();
}

void RefreshDataThread::ForgetSentTexts() {
    m_forget = 1;
}

void RefreshDataThread::run() {
    const ThreadEndMarker marker(m_end);
    if (m_parts.prepare && isStop == 0) {
        m_parts.prepare();
    }
    CpuUsageSampler sampler(m_parts.makeCpuCounter);
    sampler.SetMode(0);
    while (isStop == 0) {
        if (m_forget.exchange(0) != 0) {
            m_wasSent.fill(false);
        }
        m_parts.transfers.SendTimeSync();
        for (int index = 0; index < kLiveValueCount && isStop == 0; ++index) {
            if (index == CpuUsage) {
                SampleCpu(sampler);
            }
            RefreshValue(index);
        }
        m_firstRound = false;
        if (m_parts.roundDone && isStop == 0) {
            m_parts.roundDone(!m_parts.transfers.TakeFailure());
        }
        m_pause.Sleep(m_parts.pauses.afterRound);
    }
    qDebug("isStop.\n");
}

void RefreshDataThread::SampleCpu(CpuUsageSampler& sampler) {
    const qint32 percent = sampler.Sample();
    // The first sample of a new sampler has nothing to compare with and is 0; a load that is known already
    // stays, or every new thread would flash 1%.
    if (!m_firstRound || m_parts.snapshot.CpuUsed() == 0) {
        m_parts.snapshot.SetCpuUsed(percent);
    }
}

bool RefreshDataThread::IsWorthSending(int index, const QString& text) const {
    // Deliberate: time and date go out in every round, changed or not.
    if (index == Time || index == Date) {
        return true;
    }
    // Whatever was left out of the first round for looking like its sample is sent in the second, or the
    // panel would keep what it showed before the program started.
    return text != m_lastText[size_t(index)] || (!m_wasSent[size_t(index)] && !m_firstRound);
}

void RefreshDataThread::RefreshValue(int index) {
    const QString text = m_parts.snapshot.GetValueText(index);
    if (text.isEmpty() || !IsWorthSending(index, text)) {
        return;
    }
    m_lastText[size_t(index)] = text;
    m_wasSent[size_t(index)] = true;
    if (LiveItemRenderer* renderer = m_parts.renderer.load()) {
        renderer->RenderLiveItem(text, index);
        // Deliberate: lets this thread's own events in, the timers and deletions of whatever drew.
        QCoreApplication::processEvents();
    }
    m_pause.Sleep(m_parts.pauses.afterValue);
}

}  // namespace kivo
