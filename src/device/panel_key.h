#pragma once

// What tells one panel from another of its kind, as the systems put it. Pure functions; empty when the text
// does not say.

#include <QByteArray>

namespace kivo {

// The value of one property of a uevent file; empty where there is none of that name.
QByteArray PropertyOfUevent(const QByteArray& uevent, const QByteArray& name);

// From the uevent file of a HID device on Linux: HID_UNIQ, its serial number, else HID_PHYS, the port with
// the interface ("usb-0000:00:14.0-2/input1"), up to the last '/'.
QByteArray PanelKeyOfUevent(const QByteArray& uevent);

// From an interface path on Windows, "\\?\hid#vid_04d9&pid_fd01&mi_01#7&2a3b4c&0&0000#{...}": the third part
// in small letters, which stands for the port.
QByteArray PanelKeyOfInterfacePath(const QByteArray& path);

}  // namespace kivo
