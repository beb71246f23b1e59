#pragma once

// Names of device interfaces, as the system tells them when one arrives or goes. Windows names look like
// "\\?\HID#VID_04D9&PID_FD01&MI_01#7&2f3d7a2c&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}"; what comes from
// elsewhere is put into that form (udev_event.h). Pure functions.

#include <QByteArray>
#include <QString>

namespace kivo {

struct InterfaceName {
    bool matched = false;  // a USB HID interface with number 1, which is where the screen takes its data
    // 0 where the name tells none that is a hexadecimal number.
    quint32 vendorId = 0;
    quint32 productId = 0;
};

// Reads a name in any letter case. One that does not match has its ids read all the same, so that the other
// interfaces of the screen are told from those of other devices.
InterfaceName ParseInterfaceName(const QString& name);

// A name of that form. The instance tells devices of one kind apart; no interface number: there is none.
QString MakeInterfaceName(quint32 vendorId, quint32 productId, int interfaceNumber, const QString& instance);

// The path under which an interface of this name is opened: Latin-1, with "\\?\" in front. Names mostly come
// with that prefix; two of them could not be opened.
QByteArray InterfacePath(const QString& name);

}  // namespace kivo
