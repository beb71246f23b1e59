#pragma once

// The worker that keeps the panel current: each round it sets the panel's clock, reads every live value and
// hands the texts to the sender, which knows what of it the panel lacks. Made and stopped by the GUI thread;
// a stopped one is not started again.

#include <QString>
#include <QThread>
#include <array>
#include <atomic>
#include <chrono>

#include "model/interface_language.h"
#include "model/item_table.h"
#include "panel/live_item_renderer.h"
#include "telemetry/cpu_counter.h"
#include "telemetry/cpu_usage_sampler.h"
#include "telemetry/stop_pause.h"
#include "telemetry/thread_end.h"

namespace kivo {

class MetricSnapshot;

class RefreshDataThread : public QThread {
    Q_OBJECT

public:
    struct Pauses {
        std::chrono::milliseconds afterRound{500};
        std::chrono::milliseconds afterValue{10};
    };
    // renderer and snapshot outlive the thread.
    struct Parts {
        LiveItemRenderer& renderer;
        MetricSnapshot& snapshot;
        InterfaceLanguage language = InterfaceLanguage::Chinese;
        CpuCounterFactory makeCpuCounter = MakeCpuCounter;
        Pauses pauses = {};
    };
    explicit RefreshDataThread(Parts parts, QObject* parent = nullptr);
    // Stops the thread and waits for it.
    ~RefreshDataThread() override;

    // Asks the thread to end; it does so before the next value is read. Any thread.
    void stop();

    // One round, without the pause behind it; the thread's own work. To be called from outside only by
    // whoever turns the rounds by hand and never starts the thread.
    void Round();

    std::atomic<quint8> isStop{0};

protected:
    void run() override;

private:
    void SampleCpu();
    void RefreshValue(int index);

    const Parts m_parts;
    CpuUsageSampler m_sampler;
    const std::array<QString, kLiveValueCount> m_startTexts;
    bool m_firstRound = true;
    StopPause m_pause{isStop};
    ThreadEnd m_end;
};

}  // namespace kivo
