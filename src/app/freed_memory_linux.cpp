#include <malloc.h>

#include "app/freed_memory.h"

namespace kivo {

void ReturnFreedMemory() {
    ::malloc_trim(0);
}

}  // namespace kivo
