#pragma once

// Time that goes on only where a test turns it: the program's own clock, which stands still while the
// computer sleeps, and the local time, which does not.

#include <chrono>

#include "telemetry/local_time.h"

namespace kivo::test {

class SimulatedClock {
public:
    using Milliseconds = std::chrono::milliseconds;

    explicit SimulatedClock(LocalTime start) : m_start(start) {}

    void Advance(Milliseconds time) { m_awake += time; }
    void Sleep(Milliseconds time) { m_asleep += time; }

    // Since the desk was set up; never runs backwards.
    Milliseconds Now() const { return m_awake; }

    LocalTime Local() const {
        constexpr qint64 kDay = 24 * 60 * 60 * 1000LL;
        const qint64 sinceMidnight = m_start.time.msecsSinceStartOfDay() + (m_awake + m_asleep).count();
        const qint64 second = sinceMidnight % kDay / 1000;
        return {m_start.date.addDays(sinceMidnight / kDay),
                QTime::fromMSecsSinceStartOfDay(int(second * 1000))};
    }

private:
    const LocalTime m_start;
    Milliseconds m_awake{0};
    Milliseconds m_asleep{0};
};

}  // namespace kivo::test
