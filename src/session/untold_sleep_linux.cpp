#include "session/untold_sleep.h"

#include "telemetry/system_clocks.h"

namespace kivo {

std::chrono::nanoseconds UntoldTimeAsleep() {
    return ReadSystemClocks().asleep;
}

}  // namespace kivo
