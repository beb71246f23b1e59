#include "telemetry/cpu_counter.h"

#include <array>
#include <limits>

#include "telemetry/decimal_reader.h"

namespace kivo {
namespace {

// Columns of the "cpu" line, see proc(5). guest and guest_nice follow after steal and are left out: the
// kernel has counted them in user and nice already.
enum Column { User, Nice, System, Idle, IoWait, Irq, SoftIrq, Steal, kColumnCount };
constexpr int kColumnsOfTheOldestKernels = Idle + 1;

// A tick count beyond this is noise; below it eight of them add up without overflow.
constexpr std::uint64_t kMostTicks = std::numeric_limits<qint64>::max() / (2ULL * kColumnCount);

}  // namespace

CpuRawSample ParseProcStat(std::string_view text) {
    CpuRawSample noData;
    noData.status = kCpuSampleNoData;

    constexpr std::string_view kLabel = "cpu ";
    if (text.substr(0, kLabel.size()) != kLabel) {
        return noData;
    }
    text.remove_prefix(kLabel.size());

    std::array<qint64, kColumnCount> ticks{};
    int columns = 0;
    while (columns < kColumnCount) {
        const auto number = TakeNumber(text);
        if (!number) {
            break;
        }
        if (*number > kMostTicks) {
            return noData;
        }
        ticks[columns++] = static_cast<qint64>(*number);
    }
    if (columns < kColumnsOfTheOldestKernels) {
        return noData;
    }

    CpuRawSample sample;
    sample.firstValue =
        ticks[User] + ticks[Nice] + ticks[System] + ticks[Irq] + ticks[SoftIrq] + ticks[Steal];
    sample.secondValue = sample.firstValue + ticks[Idle] + ticks[IoWait];
    return sample;
}

double BusyPercent(const CpuRawSample& now, const CpuRawSample& previous) {
    if (!IsValid(now) || !IsValid(previous)) {
        return 0.0;
    }
    const qint64 total = now.secondValue - previous.secondValue;
    if (total <= 0) {
        return 0.0;
    }
    return 100.0 * static_cast<double>(now.firstValue - previous.firstValue) / static_cast<double>(total);
}

}  // namespace kivo
