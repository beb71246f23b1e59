#pragma once

// What the kernel of a Linux system says about a HID device, read from its files. hidapi knows it too, but
// its version 0.13 reads through a null pointer when the device is pulled out meanwhile. Files that vanish in
// the middle only leave their values out here.

#include <vector>

#include "device/hid_api.h"

namespace kivo {

constexpr char kHidrawFolder[] = "/sys/class/hidraw";

// As HidApi::Identify, of a node's name ("hidraw5"). Empty when it is gone, or its ids cannot be read.
std::vector<HidDeviceInfo> DescribeHidraw(const QString& classFolder, const QString& node);

// As HidApi::PanelKey.
QByteArray PanelKeyOfHidraw(const QString& classFolder, const QString& node);

}  // namespace kivo
