#include "app/display.h"

#include <QByteArray>
#include <QGuiApplication>

namespace kivo {

const char* PlatformWithoutDisplay(const char* asked) {
    const QByteArray name(asked);
    const bool needsDisplay = name.isEmpty() || name.startsWith("xcb") || name.startsWith("wayland");
    return needsDisplay ? "offscreen" : asked;
}

bool DesktopPlacesWindows() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

}  // namespace kivo
