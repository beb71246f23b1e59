#pragma once

#include <chrono>

namespace kivo {

// Two clocks that never run backwards. Both since the system was started.
struct SystemClocks {
    std::chrono::nanoseconds awake{0};   // stands still while the system sleeps
    std::chrono::nanoseconds asleep{0};  // moves while it sleeps only, but for a little unrest
};

// Any thread.
SystemClocks ReadSystemClocks();

}  // namespace kivo
