#include <windows.h>

#include "telemetry/memory_load.h"

namespace kivo {

int ReadMemoryLoad() {
    static_assert(sizeof(MEMORYSTATUSEX) == 64);
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    // The result is not tested: a call that fails leaves the load at 0.
    GlobalMemoryStatusEx(&status);
    return static_cast<int>(status.dwMemoryLoad);
}

}  // namespace kivo
