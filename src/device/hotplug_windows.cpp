#include <windows.h>

#include <dbt.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <utility>

#include "device/hid_interfaces_windows.h"
#include "device/hotplug.h"
#include "device/native_result.h"

namespace kivo {

namespace {

// Messages of other kinds may carry anything in lParam; it is looked at for these two only.
QString InterfaceOf(LPARAM parameter) {
    const auto* const header = reinterpret_cast<const DEV_BROADCAST_HDR*>(parameter);
    if (header == nullptr || header->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE) {
        return {};
    }
    return QString::fromWCharArray(
        reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(header)->dbcc_name);
}

// Notifications are messages to the window. They are read before Qt hands them on, and none is taken away.
class WindowsHotplug final : public Hotplug, public QAbstractNativeEventFilter {
public:
    ~WindowsHotplug() override {
        if (m_notification != nullptr) {
            UnregisterDeviceNotification(m_notification);
        }
        if (m_resume != nullptr) {
            UnregisterSuspendResumeNotification(m_resume);
        }
    }

    bool Register(const std::function<quintptr()>& nativeWindow, Listener listener,
                  WakeUpListener onWakeUp) override {
        m_listener = std::move(listener);
        m_wakeUpListener = std::move(onWakeUp);
        m_window = reinterpret_cast<HWND>(nativeWindow());
        QCoreApplication::instance()->installNativeEventFilter(this);
        DEV_BROADCAST_DEVICEINTERFACE_W filter = {};
        static_assert(sizeof filter == 32);
        filter.dbcc_size = sizeof filter;
        filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        filter.dbcc_classguid = kHidInterfaces;
        m_notification = RegisterDeviceNotificationW(m_window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
        // A machine that is never quite off (modern standby) tells only those who asked; any other tells
        // everybody, and a second message does no harm.
        m_resume = RegisterSuspendResumeNotification(m_window, DEVICE_NOTIFY_WINDOW_HANDLE);
        return m_notification != nullptr;
    }

    ArrivalPath PathOfArrival() const override { return ArrivalPath::Name; }

    bool nativeEventFilter(const QByteArray& eventType, void* message, NativeResult* /*result*/) override {
        if (eventType == "windows_generic_MSG" && message != nullptr) {
            Read(*static_cast<const MSG*>(message));
        }
        return false;
    }

private:
    void Read(const MSG& message) const {
        if (message.hwnd != m_window) {
            return;  // what everybody is told, each of the program's windows is
        }
        if (message.message == WM_DEVICECHANGE && message.wParam == DBT_DEVICEARRIVAL) {
            m_listener({InterfaceOf(message.lParam), true});
        } else if (message.message == WM_DEVICECHANGE && message.wParam == DBT_DEVICEREMOVECOMPLETE) {
            m_listener({InterfaceOf(message.lParam), false});
        } else if (message.message == WM_POWERBROADCAST && message.wParam == PBT_APMRESUMEAUTOMATIC) {
            m_wakeUpListener();
        }
    }

    Listener m_listener;
    WakeUpListener m_wakeUpListener;
    HWND m_window = nullptr;
    HDEVNOTIFY m_notification = nullptr;
    HPOWERNOTIFY m_resume = nullptr;
};

}  // namespace

std::unique_ptr<Hotplug> MakeSystemHotplug() {
    return std::make_unique<WindowsHotplug>();
}

}  // namespace kivo
