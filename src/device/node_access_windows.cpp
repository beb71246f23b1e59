#include "device/node_access.h"

namespace kivo {

// Windows lets everybody at HID devices; one that cannot be opened is gone, or another program's alone.
bool IsNodeDenied(const QByteArray& /*path*/) {
    return false;
}

}  // namespace kivo
