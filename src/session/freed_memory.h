#pragma once

namespace kivo {

// Gives memory that the program has freed back to the system: allocators keep it for what comes next, and
// after a window full of pictures nothing comes. Takes a few milliseconds. Any thread.
void ReturnFreedMemory();

}  // namespace kivo
