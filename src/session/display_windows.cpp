#include "session/display.h"

namespace kivo {

// A window station is always there.
bool HasDisplay() {
    return true;
}

QByteArray PlatformsWithDisplay(const QByteArray&) {
    return {};
}

}  // namespace kivo
