#include "session/untold_sleep.h"

namespace kivo {

// WM_POWERBROADCAST tells.
std::chrono::nanoseconds UntoldTimeAsleep() {
    return std::chrono::nanoseconds(0);
}

}  // namespace kivo
