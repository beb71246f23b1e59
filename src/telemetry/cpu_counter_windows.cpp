// clang-format off
#include <windows.h>
#include <pdh.h>
// clang-format on

#include "telemetry/cpu_counter.h"

namespace kivo {
namespace {

// The English name works under every display language of Windows. It can exceed 100 on processors that run
// above their base frequency.
constexpr wchar_t kCounterPath[] = L"\\Processor Information(_Total)\\% Processor Utility";

PDH_RAW_COUNTER ToRecord(const CpuRawSample& sample) {
    PDH_RAW_COUNTER record{};
    record.CStatus = sample.status;
    record.TimeStamp.dwLowDateTime = static_cast<DWORD>(sample.timeStamp & 0xFFFFFFFF);
    record.TimeStamp.dwHighDateTime = static_cast<DWORD>((sample.timeStamp >> 32) & 0xFFFFFFFF);
    record.FirstValue = sample.firstValue;
    record.SecondValue = sample.secondValue;
    record.MultiCount = sample.multiCount;
    return record;
}

CpuRawSample FromRecord(const PDH_RAW_COUNTER& record) {
    CpuRawSample sample;
    sample.status = record.CStatus;
    const quint64 high = record.TimeStamp.dwHighDateTime;
    sample.timeStamp = static_cast<qint64>((high << 32) | record.TimeStamp.dwLowDateTime);
    sample.firstValue = record.FirstValue;
    sample.secondValue = record.SecondValue;
    sample.multiCount = record.MultiCount;
    return sample;
}

// Deliberate: no return code decides anything. Every structure starts zeroed, so that a call that fails
// leaves a 0 behind, which the panel shows as 1%; the handles are null then, which PDH refuses politely.
class PdhCounter final : public CpuCounter {
public:
    PdhCounter() {
        PdhOpenQueryW(nullptr, 0, &m_query);
        PdhAddEnglishCounterW(m_query, kCounterPath, 0, &m_counter);
    }

    ~PdhCounter() override { PdhCloseQuery(m_query); }

    CpuRawSample Collect() override {
        PDH_RAW_COUNTER record{};
        PdhCollectQueryData(m_query);
        PdhGetRawCounterValue(m_counter, nullptr, &record);
        return FromRecord(record);
    }

    double Calculate(const CpuRawSample& now, const CpuRawSample& previous) override {
        PDH_RAW_COUNTER nowRecord = ToRecord(now);
        PDH_RAW_COUNTER previousRecord = ToRecord(previous);
        PDH_FMT_COUNTERVALUE value{};
        PdhCalculateCounterFromRawValue(m_counter, PDH_FMT_DOUBLE, &nowRecord, &previousRecord, &value);
        return value.doubleValue;
    }

private:
    PDH_HQUERY m_query = nullptr;
    PDH_HCOUNTER m_counter = nullptr;
};

}  // namespace

std::unique_ptr<CpuCounter> MakeCpuCounter() {
    return std::make_unique<PdhCounter>();
}

}  // namespace kivo
