#include "app/display.h"

namespace kivo {

// A window station is always there.
bool HasDisplay() {
    return true;
}

}  // namespace kivo
