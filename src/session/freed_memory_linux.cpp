#include <malloc.h>

#include "session/freed_memory.h"

namespace kivo {

void ReturnFreedMemory() {
    ::malloc_trim(0);
}

}  // namespace kivo
