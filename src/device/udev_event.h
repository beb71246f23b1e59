#pragma once

// What udev says about a hidraw node, put into the form in which the program knows interfaces. Pure.

#include <QByteArray>
#include <optional>

#include "device/hotplug.h"

namespace kivo {

// Properties of one event, empty where it has none.
struct UdevEvent {
    QByteArray action;      // ACTION: "add", "remove", "change", ...
    QByteArray devicePath;  // DEVPATH, below /sys
    QByteArray node;        // DEVNAME
};

// The change that a hidraw event stands for; none when it is about no USB device or changes nothing. The
// device path alone tells ids and interface, so a removal is understood although the parents are gone. A
// "change" counts as an arrival: the node's rights may be new, as they are after `udevadm trigger`.
std::optional<DeviceChange> InterpretUdevEvent(const UdevEvent& event);

}  // namespace kivo
