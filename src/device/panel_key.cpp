#include "device/panel_key.h"

#include <QList>

namespace kivo {

QByteArray PropertyOfUevent(const QByteArray& uevent, const QByteArray& name) {
    const QByteArray start = name + '=';
    const QList<QByteArray> lines = uevent.split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(start)) {
            return line.mid(start.size()).trimmed();
        }
    }
    return {};
}

QByteArray PanelKeyOfUevent(const QByteArray& uevent) {
    QByteArray key = PropertyOfUevent(uevent, "HID_UNIQ");
    if (key.isEmpty()) {
        const QByteArray port = PropertyOfUevent(uevent, "HID_PHYS");
        const int end = port.lastIndexOf('/');
        key = end < 0 ? port : port.left(end);
    }
    return key;
}

QByteArray PanelKeyOfInterfacePath(const QByteArray& path) {
    constexpr int kInstance = 2;
    return path.split('#').value(kInstance).toLower();
}

}  // namespace kivo
