#pragma once

// What the systems do their own way about a second copy of the program; for single_instance.cpp.

#include <QString>

namespace kivo {

// What the shared names end in so that two users never meet; empty where the system sees to it.
QString InstanceNameSuffix();

// Called by the second copy, which the user has just started, before it wakes the first: without the leave
// of the process in front a window may not come to the front by itself.
void LetRunningCopyComeToFront();

// Where the memory is found through a file in the folder for temporary files: marks that file as used, so
// that it is not cleaned away under a program that runs for weeks.
void KeepKeyFile(const QString& nativeKey);

}  // namespace kivo
