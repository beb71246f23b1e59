// Stands in for other people's programs while the installer is tried: window_stand_in.exe TITLE FLAG [HELD].
// Shows a window with that title, such as a folder window has, and keeps the file HELD open for itself. Makes
// the file FLAG once all that stands, and ends with 0 when FLAG is gone, or with 3 as soon as somebody tells
// its window that the session ends.
#include <windows.h>

namespace {

constexpr int kBadArguments = 1;
constexpr int kWasEnded = 3;
constexpr UINT kPollMs = 50;

LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ENDSESSION && wParam != 0) {
        PostQuitMessage(kWasEnded);
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HANDLE Open(const wchar_t* path, DWORD disposition) {
    return CreateFileW(path, GENERIC_READ | (disposition == CREATE_ALWAYS ? GENERIC_WRITE : 0), 0, nullptr,
                       disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc < 3) {
        return kBadArguments;
    }
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &OnMessage;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"KivoTestFolderWindow";
    RegisterClassW(&windowClass);
    const HWND window = CreateWindowW(windowClass.lpszClassName, argv[1], WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                      0, 200, 100, nullptr, nullptr, windowClass.hInstance, nullptr);
    if (window == nullptr || (argc > 3 && Open(argv[3], OPEN_EXISTING) == INVALID_HANDLE_VALUE)) {
        return kBadArguments;
    }
    CloseHandle(Open(argv[2], CREATE_ALWAYS));
    SetTimer(window, 1, kPollMs, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (message.message == WM_TIMER && GetFileAttributesW(argv[2]) == INVALID_FILE_ATTRIBUTES) {
            return 0;
        }
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}
