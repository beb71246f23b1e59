#include <QSystemTrayIcon>

#include "window/tray_host.h"

namespace kivo {

bool IsTrayThere() {
    return QSystemTrayIcon::isSystemTrayAvailable();
}

}  // namespace kivo
