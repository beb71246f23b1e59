#pragma once

// What a person runs to be allowed to open the screen on Linux.

#include <QString>

namespace kivo {

// Two commands for a shell: the first writes the udev rule, the second gives the screen that is plugged in
// its rights. They need no file of the program, so they serve a package and a checkout alike. The first ends
// in
// "&&" and the last line is not ended: a shell that they are pasted into reads both before it asks for a
// password, and runs them on Enter.
QString AccessCommands();

}  // namespace kivo
