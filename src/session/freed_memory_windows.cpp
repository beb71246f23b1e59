#include <malloc.h>

#include "session/freed_memory.h"

namespace kivo {

void ReturnFreedMemory() {
    static_cast<void>(_heapmin());
}

}  // namespace kivo
