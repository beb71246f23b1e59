// clang-format off
#include <windows.h>
#include <tlhelp32.h>
// clang-format on

#include <array>

#include "telemetry/hwinfo_source.h"

namespace kivo {
namespace {

constexpr std::array<const wchar_t*, 2> kKeys{L"Software\\HWiNFO64\\VSB", L"Software\\HWiNFO32\\VSB"};
// HWiNFO64.exe, HWiNFO32.exe, HWiNFO.exe.
constexpr char kProgram[] = "hwinfo";

// Five values a sensor, more sensors than anybody ticks.
constexpr DWORD kMostValues = 20'000;
// In characters. Longer names and texts are none of HWiNFO's.
constexpr DWORD kLongestName = 64;
constexpr DWORD kLongestText = 512;

// Without the zeros at its end, of which there may be any number.
QString TextOf(const std::array<wchar_t, kLongestText>& text, DWORD bytes) {
    const QString whole = QString::fromWCharArray(text.data(), static_cast<int>(bytes / sizeof(wchar_t)));
    return whole.left(whole.indexOf(QChar::Null));
}

std::vector<NamedText> TextsOf(HKEY key) {
    std::vector<NamedText> texts;
    for (DWORD i = 0; i < kMostValues; ++i) {
        std::array<wchar_t, kLongestName> name{};
        std::array<wchar_t, kLongestText> text{};
        DWORD nameLength = kLongestName;
        DWORD size = sizeof(text);
        DWORD type = REG_NONE;
        const LSTATUS status = RegEnumValueW(key, i, name.data(), &nameLength, nullptr, &type,
                                             reinterpret_cast<BYTE*>(text.data()), &size);
        if (status == ERROR_MORE_DATA) {
            continue;
        }
        if (status != ERROR_SUCCESS) {
            break;
        }
        if (type == REG_SZ) {
            texts.push_back(
                {QString::fromWCharArray(name.data(), static_cast<int>(nameLength)), TextOf(text, size)});
        }
    }
    return texts;
}

std::vector<NamedText> ReadValues() {
    for (const wchar_t* path : kKeys) {
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) {
            continue;
        }
        std::vector<NamedText> texts = TextsOf(key);
        RegCloseKey(key);
        if (!texts.empty()) {
            return texts;
        }
    }
    return {};
}

bool IsRunning() {
    const HANDLE processes = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (processes == INVALID_HANDLE_VALUE) {
        return false;
    }
    PROCESSENTRY32W process{};
    process.dwSize = sizeof(process);
    bool isFound = false;
    for (BOOL isThere = Process32FirstW(processes, &process); isThere != FALSE && !isFound;
         isThere = Process32NextW(processes, &process)) {
        isFound = QString::fromWCharArray(process.szExeFile)
                      .startsWith(QLatin1String(kProgram), Qt::CaseInsensitive);
    }
    CloseHandle(processes);
    return isFound;
}

}  // namespace

HwInfoSystem SystemHwInfo() {
    return {ReadValues, IsRunning};
}

}  // namespace kivo
