#include "device/node_identity.h"
#include "device/panel_key.h"

namespace kivo {

// A path of Windows names one interface of one device and is never another's.
QByteArray StampOfNode(const QByteArray& /*path*/) {
    return {};
}

QByteArray PanelKeyOfNode(const QByteArray& path) {
    return PanelKeyOfInterfacePath(path);
}

std::optional<std::vector<HidDeviceInfo>> CollectionsOfNode(const QByteArray& /*path*/) {
    return std::nullopt;
}

}  // namespace kivo
