#include <windows.h>

#include "telemetry/system_clocks.h"

namespace kivo {

// The tick count goes on while the system sleeps, the unbiased interrupt time (100 ns units) does not.
SystemClocks ReadSystemClocks() {
    ULONGLONG unbiased = 0;
    QueryUnbiasedInterruptTime(&unbiased);
    const std::chrono::nanoseconds awake(static_cast<long long>(unbiased) * 100);
    return {awake, std::chrono::milliseconds(GetTickCount64()) - awake};
}

}  // namespace kivo
