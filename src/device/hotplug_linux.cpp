#include <libudev.h>
#include <QSocketNotifier>

#include "device/hotplug.h"
#include "device/udev_event.h"

namespace kivo {

namespace {

using UdevContext = std::unique_ptr<udev, decltype(&udev_unref)>;
using UdevMonitor = std::unique_ptr<udev_monitor, decltype(&udev_monitor_unref)>;
using UdevDevice = std::unique_ptr<udev_device, decltype(&udev_device_unref)>;

class UdevHotplug final : public Hotplug {
public:
    bool Register(const std::function<quintptr()>& /*nativeWindow*/, Listener listener,
                  WakeUpListener /*onWakeUp*/) override {
        m_udev.reset(udev_new());
        if (!m_udev) {
            return false;
        }
        // Not the kernel's own events: they come before the node has its rights.
        m_monitor.reset(udev_monitor_new_from_netlink(m_udev.get(), "udev"));
        if (!m_monitor ||
            udev_monitor_filter_add_match_subsystem_devtype(m_monitor.get(), "hidraw", nullptr) < 0 ||
            udev_monitor_enable_receiving(m_monitor.get()) < 0) {
            return false;
        }
        m_listener = std::move(listener);
        m_notifier =
            std::make_unique<QSocketNotifier>(udev_monitor_get_fd(m_monitor.get()), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                         [this] { TellOfNext(); });
        return true;
    }

    ArrivalPath PathOfArrival() const override { return ArrivalPath::Enumeration; }

private:
    // One event a call: the notifier comes back while there are more.
    void TellOfNext() {
        const UdevDevice device(udev_monitor_receive_device(m_monitor.get()), &udev_device_unref);
        if (!device) {
            return;
        }
        const std::optional<DeviceChange> change =
            InterpretUdevEvent({udev_device_get_action(device.get()), udev_device_get_devpath(device.get()),
                                udev_device_get_devnode(device.get())});
        if (change) {
            m_listener(*change);
        }
    }

    UdevContext m_udev{nullptr, &udev_unref};
    UdevMonitor m_monitor{nullptr, &udev_monitor_unref};
    Listener m_listener;
    std::unique_ptr<QSocketNotifier> m_notifier;  // before the socket that it watches goes
};

}  // namespace

std::unique_ptr<Hotplug> MakeSystemHotplug() {
    return std::make_unique<UdevHotplug>();
}

}  // namespace kivo
