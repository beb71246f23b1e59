#include "device/node_access.h"

namespace kivo {

// Windows lets everybody at HID devices; one that cannot be opened is gone. One that another program has to
// itself is opened all the same, without the right to write: its clock report is refused, which the panel's
// sender tells.
bool IsNodeDenied(const QByteArray& /*path*/) {
    return false;
}

NodeHold::NodeHold(const QByteArray& /*path*/) {}
NodeHold::~NodeHold() = default;

}  // namespace kivo
