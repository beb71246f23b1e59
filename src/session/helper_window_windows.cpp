#include "session/helper_window.h"

#include <windows.h>

namespace kivo {

namespace {

constexpr UINT kLongestAnswerMs = 1000;

}  // namespace

void CloseHelperWindow() {
    const HWND window = FindWindowW(nullptr, L"GetCPUInfo");
    if (window == nullptr) {
        return;
    }
    DWORD_PTR ignored = 0;
    SendMessageTimeoutW(window, WM_CLOSE, 0, 0, SMTO_NORMAL | SMTO_ABORTIFHUNG, kLongestAnswerMs, &ignored);
}

}  // namespace kivo
