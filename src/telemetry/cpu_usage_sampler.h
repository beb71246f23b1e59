#pragma once

#include <QtGlobal>

#include "telemetry/cpu_counter.h"

namespace kivo {

// CPU utilisation of the whole machine between two calls. Each thread that measures has one of its own.
class CpuUsageSampler {
public:
    explicit CpuUsageSampler(CpuCounterFactory makeCounter = MakeCpuCounter);

    // A selector that differs from the present one restarts the sampling. Starts at 1, so that the first
    // SetMode(0) restarts.
    void SetMode(quint8 mode);

    // Percent since the previous call, cut towards zero, at most 100. 0 on the first call, on the first one
    // after a restart, and where the counter could not be read at this call or the previous one. Deliberate:
    // no lower clamp; a counter that runs backwards shows as a negative number here.
    qint32 Sample();

    // Whether the counter could be read at the last Sample; true before the first one.
    bool HasRead() const { return IsValid(m_previousRaw); }

private:
    CpuCounterFactory m_makeCounter;
    quint8 m_mode = 1;
    bool m_firstSample = true;
    CpuRawSample m_previousRaw;
};

// The calculated value as the sampler reports it: cut towards zero, at most 100, 0 where no 32-bit integer
// holds it.
qint32 WholePercent(double value);

}  // namespace kivo
