#include <malloc.h>

#include "app/freed_memory.h"

namespace kivo {

void ReturnFreedMemory() {
    static_cast<void>(_heapmin());
}

}  // namespace kivo
