#include "session/display.h"

#include <QGuiApplication>

namespace kivo {

QByteArray PlatformWithoutDisplay(const QByteArray& asked) {
    const bool needsDisplay = asked.isEmpty() || asked.startsWith("xcb") || asked.startsWith("wayland");
    return needsDisplay ? QByteArray(kPlatformWithoutWindows) : asked;
}

bool DesktopPlacesWindows() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

}  // namespace kivo
