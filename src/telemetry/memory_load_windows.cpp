#include <windows.h>

#include "telemetry/memory_load.h"

namespace kivo {

std::optional<int> ReadMemoryLoad() {
    static_assert(sizeof(MEMORYSTATUSEX) == 64);
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof(status);
    if (GlobalMemoryStatusEx(&status) == 0) {
        return std::nullopt;
    }
    return static_cast<int>(status.dwMemoryLoad);
}

}  // namespace kivo
