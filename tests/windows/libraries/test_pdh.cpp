// A pdh.dll for tests: its counter goes through the utilisations named in KIVO_TEST_UTILISATIONS (percent,
// parted by blanks, the last one repeats), one a collection. What it hands out are true raw counters: only
// the difference of two of them gives a utilisation, and only one that comes back as it was handed out. The
// counter has run for years before, with 77 % on the average. KIVO_TEST_PDH_FAILS names calls that fail and
// leave what they were given: open, add, collect, raw, calculate, array. KIVO_TEST_PDH_LOG names a file that
// gets one line for each query opened and closed.
//
// KIVO_TEST_COUNTERS lists counters with instances, "path|instance=value|instance=value;path|...", as they
// are at each collection; "none" for a value is an instance whose data are not valid. A rate ("...\\Power")
// is 0 after a single collection.

// clang-format off
#include <windows.h>
#include <pdh.h>
#include <pdhmsg.h>
// clang-format on

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <list>
#include <mutex>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr wchar_t kExpectedPath[] = L"\\Processor Information(_Total)\\% Processor Utility";
// Raw counters count hundredths of a percent, so that 37.99 is a whole number.
constexpr double kHundredths = 100;

constexpr LONGLONG kEarlierCollections = 1'000'000'000;
constexpr LONGLONG kEarlierTotal = kEarlierCollections * 7'700;

// 100 ns since 1601, of some day of which the low half has its highest bit set; one collection a second.
constexpr ULONGLONG kFirstTime = 0x01DC'5A3B'FEDC'BA98;
constexpr ULONGLONG kSecond = 10'000'000;

// The system's may be called on several threads at once.
std::mutex guard;

int counterToken = 0;
LONGLONG total = kEarlierTotal;
LONGLONG collections = 0;
bool isCollected = false;
std::vector<PDH_RAW_COUNTER> handedOut;

struct Instance {
    std::wstring name;
    double value = 0;
    bool isValid = true;
};
struct Counter {
    std::wstring path;
    std::vector<Instance> instances;
};
struct Query {
    std::list<Counter> counters;  // with instances; the handles are their addresses
    int collections = 0;
};
std::list<Query> queries;

std::vector<std::string> Split(const std::string& text, char mark) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, mark);) {
        parts.push_back(part);
    }
    return parts;
}

// The counter as it is now; nothing listed under that path: there is none.
bool LookUp(Counter& counter) {
    const char* text = std::getenv("KIVO_TEST_COUNTERS");
    for (const std::string& line : Split(text == nullptr ? "" : text, ';')) {
        std::vector<std::string> parts = Split(line, '|');
        if (std::wstring(parts[0].begin(), parts[0].end()) != counter.path) {
            continue;
        }
        counter.instances.clear();
        for (size_t i = 1; i < parts.size(); ++i) {
            const size_t sign = parts[i].rfind('=');
            const std::string value = parts[i].substr(sign + 1);
            counter.instances.push_back({std::wstring(parts[i].begin(), parts[i].begin() + long(sign)),
                                         std::atof(value.c_str()), value != "none"});
        }
        return true;
    }
    return false;
}

Query* FindQuery(PDH_HQUERY handle) {
    const auto found = std::find_if(queries.begin(), queries.end(),
                                    [handle](const Query& query) { return &query == handle; });
    return found == queries.end() ? nullptr : &*found;
}

std::vector<double> Utilisations() {
    std::vector<double> values;
    const char* text = std::getenv("KIVO_TEST_UTILISATIONS");
    std::istringstream stream(text == nullptr ? "" : text);
    for (double value = 0; stream >> value;) {
        values.push_back(value);
    }
    if (values.empty()) {
        values.push_back(0);
    }
    return values;
}

bool Fails(const char* call) {
    const char* text = std::getenv("KIVO_TEST_PDH_FAILS");
    std::istringstream stream(text == nullptr ? "" : text);
    for (std::string name; stream >> name;) {
        if (name == call) {
            return true;
        }
    }
    return false;
}

bool IsHandedOut(const PDH_RAW_COUNTER& record) {
    return std::any_of(handedOut.begin(), handedOut.end(), [&record](const PDH_RAW_COUNTER& known) {
        return known.CStatus == record.CStatus &&
               known.TimeStamp.dwLowDateTime == record.TimeStamp.dwLowDateTime &&
               known.TimeStamp.dwHighDateTime == record.TimeStamp.dwHighDateTime &&
               known.FirstValue == record.FirstValue && known.SecondValue == record.SecondValue &&
               known.MultiCount == record.MultiCount;
    });
}

void Note(const char* line) {
    const char* path = std::getenv("KIVO_TEST_PDH_LOG");
    if (path == nullptr) {
        return;
    }
    if (FILE* file = std::fopen(path, "a")) {
        std::fprintf(file, "%s\n", line);
        std::fclose(file);
    }
}

}  // namespace

extern "C" {

__declspec(dllexport) PDH_STATUS WINAPI PdhOpenQueryW(LPCWSTR, DWORD_PTR, PDH_HQUERY* query) {
    const std::lock_guard<std::mutex> lock(guard);
    if (Fails("open")) {
        return static_cast<PDH_STATUS>(PDH_MEMORY_ALLOCATION_FAILURE);
    }
    *query = &queries.emplace_back();
    Note("opened");
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI
    PdhAddEnglishCounterW(PDH_HQUERY query, LPCWSTR path, DWORD_PTR, PDH_HCOUNTER* counter) {
    const std::lock_guard<std::mutex> lock(guard);
    Query* const opened = FindQuery(query);
    if (opened == nullptr || Fails("add")) {
        return static_cast<PDH_STATUS>(PDH_CSTATUS_NO_COUNTER);
    }
    Counter added{path, {}};
    if (LookUp(added)) {
        *counter = &opened->counters.emplace_back(added);
        return ERROR_SUCCESS;
    }
    if (std::wcscmp(path, kExpectedPath) != 0) {
        return static_cast<PDH_STATUS>(PDH_CSTATUS_NO_COUNTER);
    }
    *counter = &counterToken;
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI PdhCollectQueryData(PDH_HQUERY query) {
    const std::lock_guard<std::mutex> lock(guard);
    Query* const opened = FindQuery(query);
    if (opened == nullptr) {
        return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
    }
    if (!opened->counters.empty()) {
        ++opened->collections;
        for (Counter& counter : opened->counters) {
            counter.instances.clear();
            LookUp(counter);
        }
        return Fails("collect") ? static_cast<PDH_STATUS>(PDH_NO_DATA) : ERROR_SUCCESS;
    }
    isCollected = !Fails("collect");
    if (!isCollected) {
        return static_cast<PDH_STATUS>(PDH_NO_DATA);
    }
    // The first collection only starts the counting.
    if (collections > 0) {
        const std::vector<double> values = Utilisations();
        const auto last = static_cast<LONGLONG>(values.size()) - 1;
        const auto index = static_cast<size_t>(collections - 1 < last ? collections - 1 : last);
        total += static_cast<LONGLONG>(values[index] * kHundredths + 0.5);
    }
    ++collections;
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI
    PdhGetRawCounterValue(PDH_HCOUNTER counter, LPDWORD, PPDH_RAW_COUNTER value) {
    const std::lock_guard<std::mutex> lock(guard);
    if (counter != &counterToken) {
        return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
    }
    if (Fails("raw")) {
        return static_cast<PDH_STATUS>(PDH_INVALID_ARGUMENT);
    }
    // Without a collection there is nothing in it, and it says so itself.
    *value = {};
    value->CStatus = static_cast<DWORD>(PDH_CSTATUS_INVALID_DATA);
    if (isCollected) {
        const ULONGLONG time = kFirstTime + static_cast<ULONGLONG>(collections) * kSecond;
        // Every second one is new data, as the system says of some; both are valid.
        value->CStatus =
            static_cast<DWORD>(collections % 2 == 0 ? PDH_CSTATUS_VALID_DATA : PDH_CSTATUS_NEW_DATA);
        value->TimeStamp.dwLowDateTime = static_cast<DWORD>(time & 0xFFFFFFFF);
        value->TimeStamp.dwHighDateTime = static_cast<DWORD>(time >> 32);
        value->FirstValue = total;
        value->SecondValue = kEarlierCollections + collections;
        value->MultiCount = 0x80000000U + static_cast<DWORD>(collections);
    }
    handedOut.push_back(*value);
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI
    PdhCalculateCounterFromRawValue(PDH_HCOUNTER counter, DWORD format, PPDH_RAW_COUNTER now,
                                    PPDH_RAW_COUNTER previous, PPDH_FMT_COUNTERVALUE value) {
    const std::lock_guard<std::mutex> lock(guard);
    // What comes back from a failed call may be a record of zeros: valid, and of before the first second.
    const PDH_RAW_COUNTER zeros{};
    const auto isZeros = [&zeros](const PDH_RAW_COUNTER& record) {
        return std::memcmp(&record, &zeros, sizeof(zeros)) == 0;
    };
    if (counter != &counterToken || format != PDH_FMT_DOUBLE || now->SecondValue == previous->SecondValue ||
        !(IsHandedOut(*now) || isZeros(*now)) || !(IsHandedOut(*previous) || isZeros(*previous)) ||
        Fails("calculate")) {
        return static_cast<PDH_STATUS>(PDH_INVALID_ARGUMENT);
    }
    value->CStatus = PDH_CSTATUS_VALID_DATA;
    value->doubleValue = static_cast<double>(now->FirstValue - previous->FirstValue) / kHundredths /
                         static_cast<double>(now->SecondValue - previous->SecondValue);
    return ERROR_SUCCESS;
}

// One piece of memory holds the items and behind them their names, as the system's does.
__declspec(dllexport) PDH_STATUS WINAPI
    PdhGetFormattedCounterArrayW(PDH_HCOUNTER handle, DWORD format, LPDWORD size, LPDWORD count,
                                 PPDH_FMT_COUNTERVALUE_ITEM_W items) {
    const std::lock_guard<std::mutex> lock(guard);
    for (const Query& query : queries) {
        for (const Counter& counter : query.counters) {
            if (&counter != handle) {
                continue;
            }
            if (format != (PDH_FMT_DOUBLE | PDH_FMT_NOCAP100) || Fails("array")) {
                return static_cast<PDH_STATUS>(PDH_INVALID_ARGUMENT);
            }
            size_t needed = counter.instances.size() * sizeof(*items);
            for (const Instance& instance : counter.instances) {
                needed += (instance.name.size() + 1) * sizeof(wchar_t);
            }
            const bool fits = items != nullptr && *size >= needed;
            *size = static_cast<DWORD>(needed);
            *count = static_cast<DWORD>(counter.instances.size());
            if (!fits) {
                return static_cast<PDH_STATUS>(PDH_MORE_DATA);
            }
            const bool isRate =
                counter.path.size() > 6 && counter.path.compare(counter.path.size() - 6, 6, L"\\Power") == 0;
            auto* name = reinterpret_cast<wchar_t*>(items + counter.instances.size());
            for (const Instance& instance : counter.instances) {
                std::wcscpy(name, instance.name.c_str());
                items->szName = name;
                items->FmtValue.CStatus =
                    instance.isValid ? PDH_CSTATUS_VALID_DATA : static_cast<DWORD>(PDH_CSTATUS_INVALID_DATA);
                items->FmtValue.doubleValue = isRate && query.collections < 2 ? 0 : instance.value;
                name += instance.name.size() + 1;
                ++items;
            }
            return ERROR_SUCCESS;
        }
    }
    return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
}

__declspec(dllexport) PDH_STATUS WINAPI PdhCloseQuery(PDH_HQUERY query) {
    const std::lock_guard<std::mutex> lock(guard);
    if (FindQuery(query) == nullptr) {
        return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
    }
    queries.remove_if([query](const Query& opened) { return &opened == query; });
    Note("closed");
    return ERROR_SUCCESS;
}

}  // extern "C"
