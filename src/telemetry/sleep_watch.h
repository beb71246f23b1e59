#pragma once

#include <chrono>

namespace kivo {

// Finds out that the system has slept from readings of SystemClocks::asleep, taken every now and then.
class SleepWatch {
public:
    // Whether it slept between the last reading and this one; false for the first.
    bool HasSlept(std::chrono::nanoseconds timeAsleep);

private:
    bool m_hasReading = false;
    std::chrono::nanoseconds m_last{0};
};

}  // namespace kivo
