#include "device/panel_key.h"

#include <QList>

namespace kivo {

namespace {

// Empty where there is none of that name.
QByteArray Property(const QByteArray& uevent, const QByteArray& name) {
    const QByteArray start = name + '=';
    for (const QByteArray& line : uevent.split('\n')) {
        if (line.startsWith(start)) {
            return line.mid(start.size()).trimmed();
        }
    }
    return {};
}

}  // namespace

QByteArray PanelKeyOfUevent(const QByteArray& uevent) {
    const QByteArray serialNumber = Property(uevent, "HID_UNIQ");
    if (!serialNumber.isEmpty()) {
        return serialNumber;
    }
    const QByteArray port = Property(uevent, "HID_PHYS");
    const int end = port.lastIndexOf('/');
    return end < 0 ? port : port.left(end);
}

QByteArray PanelKeyOfInterfacePath(const QByteArray& path) {
    constexpr int kInstance = 2;
    return path.split('#').value(kInstance).toLower();
}

}  // namespace kivo
