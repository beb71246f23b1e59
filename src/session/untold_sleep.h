#pragma once

#include <chrono>

namespace kivo {

// How long the system has been asleep since it was started. Always 0 on Windows, which reports the wake-up to
// the window.
std::chrono::nanoseconds UntoldTimeAsleep();

}  // namespace kivo
