#include "widgets/compositor.h"

#include <QGuiApplication>

#include "widgets/x11_selection_linux.h"

namespace kivo {

// On X11 a compositor owns a selection (Extended Window Manager Hints); Wayland is one.
bool BlendsWindows() {
    return QGuiApplication::platformName() != QLatin1String("xcb") || IsScreenSelectionOwned("_NET_WM_CM_S");
}

}  // namespace kivo
