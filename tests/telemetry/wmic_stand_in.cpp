// Stands in for the WMI client: appends what it was started with, in UTF-8, to the file that
// KIVO_TEST_WMIC_LOG names, a line each: its command line, its working folder. Then it writes a reading as
// the client does: KIVO_TEST_WMIC_TENTHS, in tenths of a kelvin, else 3012. Without the first variable it
// refuses.

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>

namespace {

void Note(FILE* file, const wchar_t* text) {
    std::array<char, 4096> utf8{};
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), int(utf8.size()), nullptr, nullptr);
    std::fprintf(file, "%s\n", utf8.data());
}

}  // namespace

int main() {
    const wchar_t* log = _wgetenv(L"KIVO_TEST_WMIC_LOG");
    FILE* file = log != nullptr ? _wfopen(log, L"ab") : nullptr;
    if (file == nullptr) {
        return 2;
    }
    std::array<wchar_t, MAX_PATH> folder{};
    GetCurrentDirectoryW(DWORD(folder.size()), folder.data());
    Note(file, GetCommandLineW());
    Note(file, folder.data());
    std::fclose(file);
    const char* tenths = std::getenv("KIVO_TEST_WMIC_TENTHS");
    // On standard output each LF becomes CR LF: the client's lines end with CR CR LF.
    std::printf("\r\n\r\nCurrentTemperature=%s\r\n\r\n", tenths != nullptr ? tenths : "3012");
    return 0;
}
