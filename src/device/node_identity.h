#pragma once

// What the system says about the nodes of HID devices, without opening them. Any thread.

#include <optional>
#include <vector>

#include "device/hid_api.h"

namespace kivo {

// As HidApi::NodeStamp and HidApi::PanelKey.
QByteArray StampOfNode(const QByteArray& path);
QByteArray PanelKeyOfNode(const QByteArray& path);

// As HidApi::Identify. Null where it takes hidapi to ask.
std::optional<std::vector<HidDeviceInfo>> CollectionsOfNode(const QByteArray& path);

}  // namespace kivo
