#pragma once

#include <chrono>

namespace kivo {

// How long the system has been asleep since it was started. It stands still where the system tells the window
// itself that it woke up.
std::chrono::nanoseconds TimeAsleep();

// Finds out that the system has slept from readings of that time, taken every now and then.
class SleepWatch {
public:
    // Whether it slept between the last reading and this one; false for the first.
    bool HasSlept(std::chrono::nanoseconds timeAsleep);

private:
    bool m_hasReading = false;
    std::chrono::nanoseconds m_last{0};
};

}  // namespace kivo
