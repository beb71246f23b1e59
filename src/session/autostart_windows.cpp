#include <windows.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <vector>

#include "session/autostart.h"

namespace kivo {

namespace {

constexpr wchar_t kRunKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
// Where the task manager and the system's settings note that an entry of that key is switched off. The key's
// layout is not documented; an odd first byte is what every tool takes for off.
constexpr wchar_t kApprovedKey[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run";
constexpr wchar_t kValueName[] = L"Kivo Screen";

QString Told(LSTATUS status) {
    return status == ERROR_SUCCESS
               ? QString()
               : QStringLiteral("The registry refused it (code %1).").arg(static_cast<long>(status));
}

// The command that stands there; empty where there is none.
QString Command() {
    DWORD bytes = 0;
    if (RegGetValueW(HKEY_CURRENT_USER, kRunKey, kValueName, RRF_RT_REG_SZ, nullptr, nullptr, &bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    std::vector<wchar_t> text(bytes / sizeof(wchar_t) + 1, L'\0');
    bytes = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (RegGetValueW(HKEY_CURRENT_USER, kRunKey, kValueName, RRF_RT_REG_SZ, nullptr, text.data(), &bytes) !=
        ERROR_SUCCESS) {
        return {};
    }
    return QString::fromWCharArray(text.data());
}

bool IsSwitchedOffBySystem() {
    BYTE bytes[64] = {};
    DWORD size = sizeof(bytes);
    return RegGetValueW(HKEY_CURRENT_USER, kApprovedKey, kValueName, RRF_RT_REG_BINARY, nullptr, bytes,
                        &size) == ERROR_SUCCESS &&
           size > 0 && bytes[0] % 2 != 0;
}

LSTATUS Remove(const wchar_t* key) {
    const LSTATUS status = RegDeleteKeyValueW(HKEY_CURRENT_USER, key, kValueName);
    return status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status;
}

}  // namespace

bool StartsAtLogin() {
    return !IsSwitchedOffBySystem() && QFileInfo(ProgramOfCommand(Command())).isFile();
}

QString SetStartsAtLogin(bool on) {
    LSTATUS status = ERROR_SUCCESS;
    const QString program = QCoreApplication::applicationFilePath();
    // A command that starts it already may have options of a person's own.
    const bool isThere = QFileInfo(ProgramOfCommand(Command())) == QFileInfo(program);
    if (on && !isThere) {
        const std::wstring command = RunCommand(program).toStdWString();
        status = RegSetKeyValueW(HKEY_CURRENT_USER, kRunKey, kValueName, REG_SZ, command.c_str(),
                                 static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t)));
    } else if (!on) {
        status = Remove(kRunKey);
    }
    // Also when switching on: what the system has switched off stays off, whatever stands under the Run key.
    return Told(status == ERROR_SUCCESS ? Remove(kApprovedKey) : status);
}

}  // namespace kivo
