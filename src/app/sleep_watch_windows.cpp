#include "app/sleep_watch.h"

namespace kivo {

// WM_POWERBROADCAST tells.
std::chrono::nanoseconds TimeAsleep() {
    return std::chrono::nanoseconds(0);
}

}  // namespace kivo
