#include <malloc.h>

#include "session/freed_memory.h"

namespace kivo {

void ReturnFreedMemory() {
    static_cast<void>(_heapmin());
}

// All threads have the process's heap anyway.
void ShareMemoryPool() {}

}  // namespace kivo
