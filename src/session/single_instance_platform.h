#pragma once

// What the systems do their own way about a second copy of the program; for single_instance.cpp.

#include <QString>
#include <chrono>

namespace kivo {

// What the shared names end in so that two users never meet; empty where the system sees to it.
QString InstanceNameSuffix();

enum class InstanceGuard {
    Refused,  // another copy kept it for the whole time, or the system has none to give
    Held,
    Abandoned,  // held; whoever held it before was killed, perhaps with the semaphore in hand
};

// Stands around the semaphore: it is taken first and released last, on one thread. Unlike Qt's semaphore it
// can be waited for with a limit, and the system gives it back for a copy that is killed. On Linux it is a
// file; where there can be none it counts as held, and the semaphore alone has to do.
InstanceGuard TakeInstanceGuard(std::chrono::milliseconds longest);
void ReleaseInstanceGuard();

// Called by the second copy, which the user has just started, before it wakes the first: without the leave
// of the process in front a window may not come to the front by itself.
void LetRunningCopyComeToFront();

// Where the memory is found through a file in the folder for temporary files: marks that file as used, so
// that it is not cleaned away under a program that runs for weeks.
void KeepKeyFile(const QString& nativeKey);

}  // namespace kivo
