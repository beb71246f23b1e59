#include <QByteArrayList>

#include "session/display.h"

namespace kivo {

bool HasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// As Qt chooses, but that it tries one only.
QByteArray PlatformsWithDisplay(const QByteArray& asked) {
    QByteArrayList platforms;
    if (!asked.isEmpty()) {
        platforms.append(asked);
    } else {
        if (!qEnvironmentVariableIsEmpty("DISPLAY")) {
            platforms.append("xcb");
        }
        if (qgetenv("XDG_SESSION_TYPE") == "wayland") {
            platforms.prepend("wayland");
        } else if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
            platforms.append("wayland");
        }
    }
    platforms.append(kPlatformWithoutWindows);
    return platforms.join(';');
}

void LeaveOutOpenGl() {
    constexpr char kIntegration[] = "QT_XCB_GL_INTEGRATION";
    if (qEnvironmentVariableIsEmpty(kIntegration)) {
        qputenv(kIntegration, "none");
    }
}

}  // namespace kivo
