#include "telemetry/cpu_usage_sampler.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace kivo {

CpuUsageSampler::CpuUsageSampler(CpuCounterFactory makeCounter) : m_makeCounter(std::move(makeCounter)) {}

void CpuUsageSampler::SetMode(quint8 mode) {
    if (mode == m_mode) {
        return;
    }
    m_mode = mode;
    m_firstSample = true;
}

qint32 CpuUsageSampler::Sample() {
    // A fresh counter for every call: nothing stays open between two passes, only the raw sample survives.
    const std::unique_ptr<CpuCounter> counter = m_makeCounter();
    const CpuRawSample raw = counter->Collect();
    qint32 result = 0;
    if (m_firstSample) {
        m_firstSample = false;
    } else {
        result = WholePercent(counter->Calculate(raw, m_previousRaw));
    }
    m_previousRaw = raw;
    return result;
}

qint32 WholePercent(double value) {
    const double whole = std::trunc(value);
    // Written so that a NaN fails it.
    const bool fits =
        whole >= std::numeric_limits<qint32>::min() && whole <= std::numeric_limits<qint32>::max();
    return fits ? std::min(static_cast<qint32>(whole), 100) : 0;
}

}  // namespace kivo
