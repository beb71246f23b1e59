#pragma once

namespace kivo {

// Gives memory that the program has freed back to the system: allocators keep it for what comes next, and
// after a window full of pictures nothing comes. Takes a few milliseconds. Any thread.
void ReturnFreedMemory();

// Has all threads allocate from the same memory. By itself each gets a pool of its own, in which what it
// frees stays; here threads read a picture or compose a frame and then do nothing for hours. To be called
// first of all in main.
void ShareMemoryPool();

}  // namespace kivo
