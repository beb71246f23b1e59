// A pdh.dll for tests: its counter goes through the utilisations named in KIVO_TEST_UTILISATIONS (percent,
// parted by blanks, the last one repeats), one a collection. What it hands out are true raw counters: only
// the difference of two of them gives a utilisation, and only one that comes back as it was handed out. The
// counter has run for years before, with 77 % on the average. KIVO_TEST_PDH_FAILS names calls that fail and
// leave what they were given: open, add, collect, raw, calculate. KIVO_TEST_PDH_LOG names a file that gets
// one line for each query opened and closed.

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

int queryToken = 0;
int counterToken = 0;
LONGLONG total = kEarlierTotal;
LONGLONG collections = 0;
bool isCollected = false;
std::vector<PDH_RAW_COUNTER> handedOut;

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
    if (Fails("open")) {
        return static_cast<PDH_STATUS>(PDH_MEMORY_ALLOCATION_FAILURE);
    }
    *query = &queryToken;
    Note("opened");
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI
    PdhAddEnglishCounterW(PDH_HQUERY query, LPCWSTR path, DWORD_PTR, PDH_HCOUNTER* counter) {
    if (query != &queryToken || std::wcscmp(path, kExpectedPath) != 0 || Fails("add")) {
        return static_cast<PDH_STATUS>(PDH_CSTATUS_NO_COUNTER);
    }
    *counter = &counterToken;
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI PdhCollectQueryData(PDH_HQUERY query) {
    if (query != &queryToken) {
        return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
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

__declspec(dllexport) PDH_STATUS WINAPI PdhCloseQuery(PDH_HQUERY query) {
    if (query != &queryToken) {
        return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
    }
    Note("closed");
    return ERROR_SUCCESS;
}

}  // extern "C"
