#include <ctime>

#include "app/sleep_watch.h"

namespace kivo {

namespace {

std::chrono::nanoseconds Read(clockid_t clock) {
    timespec time = {};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

// The one clock goes on while the system sleeps, the other does not.
std::chrono::nanoseconds TimeAsleep() {
    return Read(CLOCK_BOOTTIME) - Read(CLOCK_MONOTONIC);
}

}  // namespace kivo
