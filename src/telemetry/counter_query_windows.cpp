// clang-format off
#include <windows.h>
#include <pdh.h>
#include <pdhmsg.h>
// clang-format on

#include "telemetry/counter_query.h"

namespace kivo {
namespace {

// Hundreds of times what a machine with many processors has.
constexpr DWORD kLongestArray = 4 * 1024 * 1024;

bool IsValid(DWORD status) {
    return status == PDH_CSTATUS_VALID_DATA || status == PDH_CSTATUS_NEW_DATA;
}

class PdhQuery final : public CounterQuery {
public:
    PdhQuery() { PdhOpenQueryW(nullptr, 0, &m_query); }
    ~PdhQuery() override { PdhCloseQuery(m_query); }

    // The English name works under every display language of Windows. False where there is no such counter.
    bool Add(const QString& path) {
        PDH_HCOUNTER counter = nullptr;
        const bool isAdded = PdhAddEnglishCounterW(m_query, reinterpret_cast<const wchar_t*>(path.utf16()), 0,
                                                   &counter) == ERROR_SUCCESS;
        m_counters.push_back(isAdded ? counter : nullptr);
        return isAdded;
    }

    void Collect() override { m_isCollected = PdhCollectQueryData(m_query) == ERROR_SUCCESS; }

    std::vector<CounterValue> Values(std::size_t counter) override {
        std::vector<CounterValue> values;
        if (!m_isCollected || m_counters[counter] == nullptr) {
            return values;
        }
        // The first call tells the length, which holds the names too.
        DWORD size = 0;
        DWORD count = 0;
        constexpr DWORD kFormat = PDH_FMT_DOUBLE | PDH_FMT_NOCAP100;
        PdhGetFormattedCounterArrayW(m_counters[counter], kFormat, &size, &count, nullptr);
        if (size == 0 || size > kLongestArray) {
            return values;
        }
        std::vector<PDH_FMT_COUNTERVALUE_ITEM_W> items(size / sizeof(PDH_FMT_COUNTERVALUE_ITEM_W) + 1);
        if (PdhGetFormattedCounterArrayW(m_counters[counter], kFormat, &size, &count, items.data()) !=
            ERROR_SUCCESS) {
            return values;
        }
        for (DWORD i = 0; i < count && i < items.size(); ++i) {
            if (IsValid(items[i].FmtValue.CStatus)) {
                values.push_back({QString::fromWCharArray(items[i].szName), items[i].FmtValue.doubleValue});
            }
        }
        return values;
    }

private:
    PDH_HQUERY m_query = nullptr;
    std::vector<PDH_HCOUNTER> m_counters;  // null: not there
    bool m_isCollected = false;
};

}  // namespace

std::unique_ptr<CounterQuery> OpenCounterQuery(const std::vector<QString>& paths) {
    auto query = std::make_unique<PdhQuery>();
    bool hasAny = false;
    for (const QString& path : paths) {
        hasAny = query->Add(path) || hasAny;
    }
    return hasAny ? std::move(query) : nullptr;
}

}  // namespace kivo
