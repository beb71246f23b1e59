#pragma once

// The worker that keeps the panel current: each round it sets the panel's clock, reads every live value and
// hands the texts that changed to the live renderer. Made and stopped by the GUI thread; a stopped one is not
// started again.

#include <QString>
#include <QThread>
#include <array>
#include <atomic>
#include <chrono>
#include <functional>

#include "compose/live_item_renderer.h"
#include "telemetry/cpu_counter.h"
#include "telemetry/interface_language.h"
#include "telemetry/live_value.h"
#include "telemetry/stop_pause.h"
#include "telemetry/thread_end.h"

namespace kivo {

class CpuUsageSampler;
class MetricSnapshot;
class Transfers;

class RefreshDataThread : public QThread {
    Q_OBJECT

public:
    struct Pauses {
        std::chrono::milliseconds afterRound{500};
        std::chrono::milliseconds afterValue{10};
    };
    // transfers, snapshot and renderer outlive the thread; renderer may be null at any time.
    struct Parts {
        Transfers& transfers;
        MetricSnapshot& snapshot;
        const std::atomic<LiveItemRenderer*>& renderer = liveItemRenderer;
        InterfaceLanguage language = InterfaceLanguage::Chinese;
        CpuCounterFactory makeCpuCounter = MakeCpuCounter;
        Pauses pauses = {};
        // Called on the thread before its first round; empty for nothing to do.
        std::function<void()> prepare = {};
        // Called on the thread after each whole round, with whether the screen took everything.
        std::function<void(bool allTaken)> roundDone = {};
    };
    explicit RefreshDataThread(Parts parts, QObject* parent = nullptr);
    // Stops the thread and waits for it.
    ~RefreshDataThread() override;

    // Asks the thread to end; it does so before the next value is read. Any thread.
    void stop();

    // From the next round on every value counts as never sent. Any thread.
    void ForgetSentTexts();

    // What was last handed over for each value. Only while the thread does not run.
    const std::array<QString, kLiveValueCount>& lastText() const { return m_lastText; }

    std::atomic<quint8> isStop{0};

protected:
    void run() override;

private:
    void SampleCpu(CpuUsageSampler& sampler);
    void RefreshValue(int index);
    bool IsWorthSending(int index, const QString& text) const;

    const Parts m_parts;
    std::array<QString, kLiveValueCount> m_lastText;
    std::array<bool, kLiveValueCount> m_wasSent{};
    bool m_firstRound = true;
    std::atomic<quint8> m_forget{0};
    StopPause m_pause{isStop};
    ThreadEnd m_end;
};

}  // namespace kivo
