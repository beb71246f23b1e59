#include <windows.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <vector>

#include "app/autostart.h"

namespace kivo {

namespace {

constexpr wchar_t kRunKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
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

}  // namespace

bool StartsAtLogin() {
    return QFileInfo(ProgramOfCommand(Command())).isFile();
}

QString SetStartsAtLogin(bool on) {
    if (!on) {
        const LSTATUS status = RegDeleteKeyValueW(HKEY_CURRENT_USER, kRunKey, kValueName);
        return Told(status == ERROR_FILE_NOT_FOUND ? ERROR_SUCCESS : status);
    }
    const std::wstring command = RunCommand(QCoreApplication::applicationFilePath()).toStdWString();
    return Told(RegSetKeyValueW(HKEY_CURRENT_USER, kRunKey, kValueName, REG_SZ, command.c_str(),
                                static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t))));
}

}  // namespace kivo
