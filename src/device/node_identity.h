#pragma once

// What the system says about the node behind a path, without opening it. Any thread.

#include <QByteArray>

namespace kivo {

// As HidApi::NodeStamp and HidApi::PanelKey.
QByteArray StampOfNode(const QByteArray& path);
QByteArray PanelKeyOfNode(const QByteArray& path);

}  // namespace kivo
