#pragma once

#include <optional>
#include <string_view>

namespace kivo {

// Physical memory in use, 0 to 100 percent; nothing when it cannot be read. Any thread.
std::optional<int> ReadMemoryLoad();

// Memory load from the text of /proc/meminfo: (MemTotal - MemAvailable) / MemTotal, cut to a whole percent
// as Windows and the CPU figure are. Kernels before 3.14 have no MemAvailable: MemFree + Buffers + Cached
// stands in. Nothing where the text has no usable MemTotal or no free figure.
std::optional<int> ParseMemoryLoad(std::string_view text);

}  // namespace kivo
