#include "app/console.h"

namespace kivo {

// Standard output and error are the terminal's already.
void UseParentConsole() {}

}  // namespace kivo
