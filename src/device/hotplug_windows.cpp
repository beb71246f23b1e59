#include <windows.h>

#include <dbt.h>

#include "device/hotplug.h"

namespace kivo {

namespace {

// GUID_DEVINTERFACE_HID, here so that no import library is needed for it.
constexpr GUID kHidInterfaces = {
    0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};

// Notifications are messages to the window, so there is nothing to listen to here.
class WindowsHotplug final : public Hotplug {
public:
    ~WindowsHotplug() override {
        if (m_notification != nullptr) {
            UnregisterDeviceNotification(m_notification);
        }
        if (m_resume != nullptr) {
            UnregisterSuspendResumeNotification(m_resume);
        }
    }

    bool Register(const std::function<quintptr()>& nativeWindow, Listener /*listener*/) override {
        DEV_BROADCAST_DEVICEINTERFACE_W filter = {};
        static_assert(sizeof filter == 32);
        filter.dbcc_size = sizeof filter;
        filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
        filter.dbcc_classguid = kHidInterfaces;
        const auto window = reinterpret_cast<HANDLE>(nativeWindow());
        m_notification = RegisterDeviceNotificationW(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
        // A machine that is never quite off (modern standby) tells only those who asked; any other tells
        // everybody, and a second message does no harm.
        m_resume = RegisterSuspendResumeNotification(window, DEVICE_NOTIFY_WINDOW_HANDLE);
        return m_notification != nullptr;
    }

    ArrivalPath PathOfArrival() const override { return ArrivalPath::Name; }

private:
    HDEVNOTIFY m_notification = nullptr;
    HPOWERNOTIFY m_resume = nullptr;
};

// Messages of other kinds may carry anything in lParam; it is looked at for these two only.
QString InterfaceOf(LPARAM parameter) {
    const auto* const header = reinterpret_cast<const DEV_BROADCAST_HDR*>(parameter);
    if (header == nullptr || header->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE) {
        return {};
    }
    return QString::fromWCharArray(
        reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*>(header)->dbcc_name);
}

}  // namespace

std::unique_ptr<Hotplug> MakeSystemHotplug() {
    return std::make_unique<WindowsHotplug>();
}

NativeEvent ReadNativeEvent(const QByteArray& eventType, const void* message) {
    if (eventType != "windows_generic_MSG" || message == nullptr) {
        return {};
    }
    const MSG& received = *static_cast<const MSG*>(message);
    if (received.message == WM_DEVICECHANGE && received.wParam == DBT_DEVICEARRIVAL) {
        return {NativeEventKind::Arrival, InterfaceOf(received.lParam)};
    }
    if (received.message == WM_DEVICECHANGE && received.wParam == DBT_DEVICEREMOVECOMPLETE) {
        return {NativeEventKind::Removal, InterfaceOf(received.lParam)};
    }
    if (received.message == WM_POWERBROADCAST && received.wParam == PBT_APMRESUMEAUTOMATIC) {
        return {NativeEventKind::Resume, {}};
    }
    return {};
}

}  // namespace kivo
