#pragma once

#include <QString>

#include <atomic>
#include <functional>

#include "telemetry/interface_language.h"
#include "telemetry/local_time.h"

namespace kivo {

// Where the snapshot reads what it does not store; called on the thread that asks for a text.
struct MetricSources {
    std::function<LocalTime()> now;   // Default: ReadLocalTime.
    std::function<int()> memoryLoad;  // Percent. Default: ReadMemoryLoad.
};

// The latest number of every live value, and its text. Numbers come in from the GUI thread (power,
// temperature) and from the refresh thread (utilisation); texts are asked for on the refresh thread. Without
// a lock: a power and a temperature of two different samples may meet for one round.
class MetricSnapshot {
public:
    // Empty members of `sources` stand for the defaults.
    explicit MetricSnapshot(InterfaceLanguage language, MetricSources sources = {});

    // The text of a live value (LiveValue), freshly made; empty for OtherText, OtherText2 and any other
    // number.
    QString GetValueText(int index) const;

    // Package power in watts and package temperature in degrees Celsius. Deliberate: the temperature arrives
    // in the argument that is named after a clock. Each is 0 where it is negative or above 998.
    void SetCpuPowClock(qint32 iPow, qint32 iClock);
    // Percent, 0 to 100 (stored as it is).
    void SetCpuUsed(qint32 percent);

    qint32 CpuTemp() const { return m_iCpuTemp.load(std::memory_order_relaxed); }
    qint32 CpuPow() const { return m_iCpuPow.load(std::memory_order_relaxed); }
    qint32 CpuUsed() const { return m_iCpuUsed.load(std::memory_order_relaxed); }

private:
    InterfaceLanguage m_language;
    MetricSources m_sources;
    std::atomic<qint32> m_iCpuTemp{0};
    std::atomic<qint32> m_iCpuPow{0};
    std::atomic<qint32> m_iCpuUsed{0};
};

}  // namespace kivo
