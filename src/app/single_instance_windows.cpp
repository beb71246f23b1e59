#include <windows.h>

#include "app/single_instance_platform.h"

namespace kivo {

// Names belong to the user's session here.
QString InstanceNameSuffix() {
    return QString();
}

void LetRunningCopyComeToFront() {
    AllowSetForegroundWindow(ASFW_ANY);
}

void KeepKeyFile(const QString&) {}

}  // namespace kivo
