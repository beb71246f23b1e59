#include <malloc.h>

#include "session/freed_memory.h"

namespace kivo {

void ReturnFreedMemory() {
    ::malloc_trim(0);
}

void ShareMemoryPool() {
    ::mallopt(M_ARENA_MAX, 1);
}

}  // namespace kivo
