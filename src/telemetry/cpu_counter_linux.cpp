#include <fcntl.h>
#include <unistd.h>

#include <array>

#include "telemetry/cpu_counter.h"

namespace kivo {
namespace {

class ProcStatCounter final : public CpuCounter {
public:
    CpuRawSample Collect() override {
        // Only the first line is wanted, and the file may have thousands: one short read, no stream, no
        // buffer. Ten numbers of up to twenty digits fit.
        std::array<char, 256> buffer{};
        const int file = ::open("/proc/stat", O_RDONLY | O_CLOEXEC);
        if (file < 0) {
            return ParseProcStat({});
        }
        const ssize_t length = ::read(file, buffer.data(), buffer.size());
        ::close(file);
        return ParseProcStat({buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0});
    }

    double Calculate(const CpuRawSample& now, const CpuRawSample& previous) override {
        return BusyPercent(now, previous);
    }
};

}  // namespace

std::unique_ptr<CpuCounter> MakeCpuCounter() {
    return std::make_unique<ProcStatCounter>();
}

}  // namespace kivo
