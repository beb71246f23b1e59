#pragma once

namespace kivo {

// Lets what is printed reach the console the program was started from. First thing in main. (Windows gives a
// program with windows no console of its own accord.)
void UseParentConsole();

}  // namespace kivo
