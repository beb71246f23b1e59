#pragma once

// What surrounds the program on Windows: messages of the system, windows of others, the user's folders.

// clang-format off
#include <windows.h>
#include <dbt.h>
// clang-format on

#include <QDir>
#include <QString>
#include <cstring>
#include <string>

namespace kivo::test {

// What Windows sends when one of a device's interfaces comes or goes.
inline void SendDeviceChange(HWND window, WPARAM event, const wchar_t* name) {
    const std::size_t nameBytes = (wcslen(name) + 1) * sizeof(wchar_t);
    QByteArray bytes(static_cast<int>(sizeof(DEV_BROADCAST_DEVICEINTERFACE_W) + nameBytes), '\0');
    auto* message = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_W*>(bytes.data());
    message->dbcc_size = static_cast<DWORD>(bytes.size());
    message->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    std::memcpy(message->dbcc_name, name, nameBytes);
    SendMessageW(window, WM_DEVICECHANGE, event, reinterpret_cast<LPARAM>(message));
}

// A person's click at a point of the screen.
inline void ClickAt(int x, int y) {
    SetCursorPos(x, y);
    INPUT press = {};
    press.type = INPUT_MOUSE;
    press.mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
    INPUT release = press;
    release.mi.dwFlags = MOUSEEVENTF_LEFTUP;
    SendInput(1, &press, sizeof(press));
    SendInput(1, &release, sizeof(release));
}

inline int helperCloseMessages = 0;

inline LRESULT CALLBACK HelperProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE) {
        helperCloseMessages += (wParam == 0 && lParam == 0) ? 1 : 1000;
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

// The window of the helper program, on the test's own thread.
struct HelperWindow {
    HelperWindow() {
        WNDCLASSW helperClass{};
        helperClass.lpfnWndProc = &HelperProcedure;
        helperClass.hInstance = GetModuleHandleW(nullptr);
        helperClass.lpszClassName = L"KivoTestHelper";
        RegisterClassW(&helperClass);
        window = CreateWindowW(L"KivoTestHelper", L"GetCPUInfo", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr,
                               nullptr, helperClass.hInstance, nullptr);
        helperCloseMessages = 0;
    }
    ~HelperWindow() { DestroyWindow(window); }
    Q_DISABLE_COPY(HelperWindow)

    HWND window = nullptr;
};

// Where the system says that one of the user's folders lies, changed for as long as it lives.
class MovedFolder {
public:
    MovedFolder(const wchar_t* name, const QString& path) : m_name(name) {
        wchar_t former[MAX_PATH] = {};
        DWORD bytes = sizeof(former) - sizeof(wchar_t);
        m_hasFormer = RegGetValueW(HKEY_CURRENT_USER, kFolders, m_name, RRF_RT_ANY | RRF_NOEXPAND, nullptr,
                                   former, &bytes) == ERROR_SUCCESS;
        m_former = former;
        Set(QDir::toNativeSeparators(path).toStdWString());
    }
    ~MovedFolder() {
        if (m_hasFormer) {
            Set(m_former);
        } else {
            RegDeleteKeyValueW(HKEY_CURRENT_USER, kFolders, m_name);
        }
    }
    Q_DISABLE_COPY(MovedFolder)

private:
    static constexpr wchar_t kFolders[] =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

    void Set(const std::wstring& path) const {
        RegSetKeyValueW(HKEY_CURRENT_USER, kFolders, m_name, REG_EXPAND_SZ, path.c_str(),
                        DWORD((path.size() + 1) * sizeof(wchar_t)));
    }

    const wchar_t* const m_name;
    bool m_hasFormer = false;
    std::wstring m_former;
};

}  // namespace kivo::test
