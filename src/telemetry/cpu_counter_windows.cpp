// clang-format off
#include <windows.h>
#include <pdh.h>
#include <pdhmsg.h>
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

static_assert(PDH_CSTATUS_VALID_DATA == 0 && PDH_CSTATUS_NEW_DATA == 1, "IsValid relies on it");

// Deliberate: no return code decides anything. What a call is to fill in starts as what its failure means:
// a record as one without data, a utilisation as 0, which the panel shows as 1%. The handles are null after
// a failure, which PDH refuses politely.
class PdhCounter final : public CpuCounter {
public:
    PdhCounter() {
        PdhOpenQueryW(nullptr, 0, &m_query);
        PdhAddEnglishCounterW(m_query, kCounterPath, 0, &m_counter);
    }

    ~PdhCounter() override { PdhCloseQuery(m_query); }

    CpuRawSample Collect() override {
        // Zeroed alone it would be a valid sample of the moment the machine was started, and the next one
        // would show the average since then.
        PDH_RAW_COUNTER record{};
        record.CStatus = PDH_CSTATUS_INVALID_DATA;
        PdhCollectQueryData(m_query);
        PdhGetRawCounterValue(m_counter, nullptr, &record);
        return FromRecord(record);
    }

    double Calculate(const CpuRawSample& now, const CpuRawSample& previous) override {
        if (!IsValid(now) || !IsValid(previous)) {
            return 0.0;
        }
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
