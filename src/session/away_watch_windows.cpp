#include <windows.h>

#include <wtsapi32.h>

#include <QTimer>
#include <utility>

#include "session/away_watch.h"

namespace kivo {

namespace {

// The system gives a program about two seconds to prepare for a sleep.
constexpr std::chrono::milliseconds kLongestInSleeping{1700};
// Nobody tells other programs of a screen saver.
constexpr std::chrono::milliseconds kSaverEvery{1000};
constexpr wchar_t kClassName[] = L"KivoAwayWatch";

// Listens with a window of its own that is never shown. Deliberate: no message-only window, which gets no
// broadcasts.
class WindowsAwayWatch final : public AwayWatch {
public:
    WindowsAwayWatch() {
        const HINSTANCE instance = GetModuleHandleW(nullptr);
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof windowClass;
        windowClass.lpfnWndProc = &WindowsAwayWatch::HandleMessage;
        windowClass.hInstance = instance;
        windowClass.lpszClassName = kClassName;
        RegisterClassExW(&windowClass);
        m_window = CreateWindowExW(0, kClassName, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr, instance,
                                   nullptr);
        if (m_window != nullptr) {
            SetWindowLongPtrW(m_window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
            m_isRegistered = WTSRegisterSessionNotification(m_window, NOTIFY_FOR_THIS_SESSION) != FALSE;
            // A machine that is never quite off (modern standby) tells only those who asked.
            m_power = RegisterSuspendResumeNotification(m_window, DEVICE_NOTIFY_WINDOW_HANDLE);
        }
        connect(&m_saverTimer, &QTimer::timeout, this, &WindowsAwayWatch::LookForSaver);
        m_saverTimer.start(kSaverEvery);
    }

    ~WindowsAwayWatch() override {
        if (m_power != nullptr) {
            UnregisterSuspendResumeNotification(m_power);
        }
        if (m_isRegistered) {
            WTSUnRegisterSessionNotification(m_window);
        }
        if (m_window != nullptr) {
            DestroyWindow(m_window);
        }
    }

    Q_DISABLE_COPY(WindowsAwayWatch)

    // It waits for the message's handler in any case.
    void HoldSleep(bool /*hold*/) override {}
    void LetSleep() override {}
    std::chrono::milliseconds LongestInSleeping() const override { return kLongestInSleeping; }

private:
    static LRESULT CALLBACK HandleMessage(HWND window, UINT message, WPARAM what, LPARAM parameter) {
        auto* const watch = reinterpret_cast<WindowsAwayWatch*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (watch != nullptr && message == WM_WTSSESSION_CHANGE) {
            watch->OnSession(what);
        } else if (watch != nullptr && message == WM_POWERBROADCAST) {
            watch->OnPower(what);
        }
        return DefWindowProcW(window, message, what, parameter);
    }

    void OnSession(WPARAM what) {
        if (what == WTS_SESSION_LOCK) {
            SetLocked(true);
        } else if (what == WTS_SESSION_UNLOCK) {
            SetLocked(false);
        }
    }

    // Broadcast and notification may both come.
    void OnPower(WPARAM what) {
        const bool isAsleep = what == PBT_APMSUSPEND;
        if (!isAsleep && what != PBT_APMRESUMEAUTOMATIC && what != PBT_APMRESUMESUSPEND) {
            return;
        }
        if (std::exchange(m_isAsleep, isAsleep) == isAsleep) {
            return;
        }
        if (isAsleep) {
            Q_EMIT sleeping();
        } else {
            Q_EMIT awake();
        }
    }

    void LookForSaver() {
        BOOL isRunning = FALSE;
        if (SystemParametersInfoW(SPI_GETSCREENSAVERRUNNING, 0, &isRunning, 0) == FALSE) {
            return;
        }
        const bool isOn = isRunning != FALSE;
        if (std::exchange(m_isSaverOn, isOn) != isOn) {
            Q_EMIT saverChanged(isOn);
        }
    }

    void SetLocked(bool isLocked) {
        if (std::exchange(m_isLocked, isLocked) != isLocked) {
            Q_EMIT lockedChanged(isLocked);
        }
    }

    HWND m_window = nullptr;
    HPOWERNOTIFY m_power = nullptr;
    bool m_isRegistered = false;
    bool m_isLocked = false;
    bool m_isAsleep = false;
    bool m_isSaverOn = false;
    QTimer m_saverTimer;
};

}  // namespace

std::unique_ptr<AwayWatch> MakeSystemAwayWatch() {
    return std::make_unique<WindowsAwayWatch>();
}

}  // namespace kivo
