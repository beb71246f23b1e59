#include "main/console.h"

namespace kivo {

// Standard output and error are the terminal's already.
void UseParentConsole() {}

// A shell waits for the program here, and Ctrl+C ends it.
void LeaveParentConsole() {}

}  // namespace kivo
