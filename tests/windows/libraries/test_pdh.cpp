// A pdh.dll for tests: its counter goes through the utilisations named in KIVO_TEST_UTILISATIONS (percent,
// parted by blanks, the last one repeats), one a collection. What it hands out are true raw counters: only
// the difference of two of them gives a utilisation. KIVO_TEST_PDH_LOG names a file that gets one line for
// each query opened and closed.

// clang-format off
#include <windows.h>
#include <pdh.h>
#include <pdhmsg.h>
// clang-format on

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr wchar_t kExpectedPath[] = L"\\Processor Information(_Total)\\% Processor Utility";
// Raw counters count hundredths of a percent, so that 37.99 is a whole number.
constexpr double kHundredths = 100;

int queryToken = 0;
int counterToken = 0;
LONGLONG total = 0;
LONGLONG collections = 0;

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
    *query = &queryToken;
    Note("opened");
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI
    PdhAddEnglishCounterW(PDH_HQUERY query, LPCWSTR path, DWORD_PTR, PDH_HCOUNTER* counter) {
    if (query != &queryToken || std::wcscmp(path, kExpectedPath) != 0) {
        return static_cast<PDH_STATUS>(PDH_CSTATUS_NO_COUNTER);
    }
    *counter = &counterToken;
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI PdhCollectQueryData(PDH_HQUERY query) {
    if (query != &queryToken) {
        return static_cast<PDH_STATUS>(PDH_INVALID_HANDLE);
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
    value->CStatus = PDH_CSTATUS_VALID_DATA;
    value->FirstValue = total;
    value->SecondValue = collections;
    value->MultiCount = 1;
    return ERROR_SUCCESS;
}

__declspec(dllexport) PDH_STATUS WINAPI
    PdhCalculateCounterFromRawValue(PDH_HCOUNTER counter, DWORD format, PPDH_RAW_COUNTER now,
                                    PPDH_RAW_COUNTER previous, PPDH_FMT_COUNTERVALUE value) {
    if (counter != &counterToken || format != PDH_FMT_DOUBLE || now->SecondValue == previous->SecondValue) {
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
