#include "telemetry/system_clocks.h"

#include <ctime>

namespace kivo {
namespace {

std::chrono::nanoseconds Read(clockid_t clock) {
    timespec time = {};
    ::clock_gettime(clock, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

// The one clock goes on while the system sleeps, the other does not.
SystemClocks ReadSystemClocks() {
    const auto awake = Read(CLOCK_MONOTONIC);
    return {awake, Read(CLOCK_BOOTTIME) - awake};
}

}  // namespace kivo
