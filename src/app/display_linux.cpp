#include <QtGlobal>

#include "app/display.h"

namespace kivo {

bool HasDisplay() {
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

}  // namespace kivo
