#include "virtualscreen/virtual_hotplug.h"

#include <QStringList>
#include <utility>

namespace kivo {

namespace {

// As a Windows system would name them.
QString InterfaceName(int number) {
    return QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_%1#virtual#{4d1e55b2-f16f-11cf-88cb-001111000030})")
        .arg(number, 2, 10, QLatin1Char('0'));
}

}  // namespace

VirtualHotplug::VirtualHotplug(VirtualHidApi& screen) : m_screen(screen) {}

VirtualHotplug::~VirtualHotplug() {
    if (m_screenListener != 0) {
        m_screen.RemoveListener(m_screenListener);
    }
}

bool VirtualHotplug::Register(const std::function<quintptr()>& /*nativeWindow*/, Listener listener,
                              WakeUpListener /*onWakeUp*/) {
    m_listener = std::move(listener);
    m_screenListener = m_screen.AddListener([this](VirtualScreenEvent event) {
        if (event != VirtualScreenEvent::Plugged && event != VirtualScreenEvent::Unplugged) {
            return;
        }
        const bool arrived = event == VirtualScreenEvent::Plugged;
        QMetaObject::invokeMethod(
            &m_context, [this, arrived] { Tell(arrived); }, Qt::QueuedConnection);
    });
    return true;
}

// The interfaces come in their order, as a system finds them, and the data interface goes first.
void VirtualHotplug::Tell(bool arrived) const {
    for (const int number : {arrived ? 0 : 1, arrived ? 1 : 0}) {
        m_listener({InterfaceName(number), arrived});
    }
}

}  // namespace kivo
