#include "session/helper_window.h"

namespace kivo {

// The helper exists on Windows only.
void CloseHelperWindow() {}

}  // namespace kivo
