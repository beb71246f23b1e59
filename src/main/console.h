#pragma once

namespace kivo {

// Lets what is printed reach the console the program was started from. First thing in main. (Windows gives a
// program with windows no console of its own accord.)
void UseParentConsole();

// Lets go of that console, which its owner goes on using: neither Ctrl+C there nor its end are meant for a
// program in the tray. Once everything is said that a start has to say.
void LeaveParentConsole();

}  // namespace kivo
