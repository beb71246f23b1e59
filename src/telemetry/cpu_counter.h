#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>
#include <string_view>

namespace kivo {

// One raw reading of the utilisation counter, shaped like the record of Windows' performance counters. What
// the two values count is the counter's own business: only CpuCounter::Calculate looks inside.
struct CpuRawSample {
    quint32 status = 0;      // 0: valid (Windows: 1 too, valid and new).
    qint64 timeStamp = 0;    // 100 ns units (Windows), unused on Linux.
    qint64 firstValue = 0;   // Linux: busy time, in clock ticks since boot.
    qint64 secondValue = 0;  // Linux: busy and idle time, in clock ticks since boot.
    quint32 multiCount = 0;
};

// Whether it was read.
inline bool IsValid(const CpuRawSample& sample) {
    return sample.status <= 1;
}

// What `status` says on Linux when /proc/stat could not be read.
inline constexpr quint32 kCpuSampleNoData = 0x800007D5;

// The whole machine's utilisation counter, opened by its constructor and closed by its destructor. No call
// reports failure: what cannot be read is a sample whose status says so, what cannot be calculated is 0.
class CpuCounter {
public:
    CpuCounter() = default;
    CpuCounter(const CpuCounter&) = delete;
    CpuCounter& operator=(const CpuCounter&) = delete;
    virtual ~CpuCounter() = default;

    virtual CpuRawSample Collect() = 0;
    // Utilisation between two samples in percent; may exceed 100, may be anything after a failure.
    virtual double Calculate(const CpuRawSample& now, const CpuRawSample& previous) = 0;
};

using CpuCounterFactory = std::function<std::unique_ptr<CpuCounter>()>;

// This platform's counter: PDH's "% Processor Utility" on Windows, /proc/stat on Linux.
std::unique_ptr<CpuCounter> MakeCpuCounter();

// The first line of /proc/stat ("cpu  user nice system idle iowait irq softirq steal guest guest_nice",
// clock ticks) as a sample. `text` may go on after that line or, where the kernel is old, have fewer columns
// (four at least).
CpuRawSample ParseProcStat(std::string_view text);

// Share of busy time between two samples of ParseProcStat, in percent; 0 where either is no data or no time
// passed.
double BusyPercent(const CpuRawSample& now, const CpuRawSample& previous);

}  // namespace kivo
