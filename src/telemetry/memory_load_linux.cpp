#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "telemetry/memory_load.h"

namespace kivo {

std::optional<int> ReadMemoryLoad() {
    const int file = ::open("/proc/meminfo", O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return std::nullopt;
    }
    // The entries wanted are the first five lines; the whole file is about 1500 bytes.
    std::array<char, 1024> buffer{};
    const ssize_t length = ::read(file, buffer.data(), buffer.size());
    ::close(file);
    return ParseMemoryLoad({buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0});
}

}  // namespace kivo
