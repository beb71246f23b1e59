#include "session/display.h"

namespace kivo {

// A window station is always there.
bool HasDisplay() {
    return true;
}

QByteArray PlatformsWithDisplay(const QByteArray&) {
    return {};
}

// Qt loads it there when something is first drawn with it.
void LeaveOutOpenGl() {}

}  // namespace kivo
