#include "telemetry/sleep_watch.h"

#include <utility>

namespace kivo {

namespace {

// The clocks are read one after the other, and something may come between.
constexpr std::chrono::milliseconds kShortestSleep{500};

}  // namespace

bool SleepWatch::HasSlept(std::chrono::nanoseconds timeAsleep) {
    const bool hadReading = std::exchange(m_hasReading, true);
    const std::chrono::nanoseconds last = std::exchange(m_last, timeAsleep);
    return hadReading && timeAsleep - last >= kShortestSleep;
}

}  // namespace kivo
