#include <windows.h>

#include "session/single_instance_platform.h"

namespace kivo {

namespace {

// Deliberate: never closed, as the semaphore: it lives for as long as any copy does.
HANDLE Guard() {
    static const HANDLE guard = CreateMutexW(nullptr, FALSE, L"Kivo Screen Setting Guard");
    return guard;
}

}  // namespace

// Of a mutex the system knows who holds it, and says so when that one was killed. It can be waited for with a
// time limit besides: a copy that is stopped, not killed, keeps it.
InstanceGuard TakeInstanceGuard(std::chrono::milliseconds longest) {
    if (Guard() == nullptr) {
        return InstanceGuard::Refused;
    }
    switch (WaitForSingleObject(Guard(), static_cast<DWORD>(longest.count()))) {
        case WAIT_OBJECT_0:
            return InstanceGuard::Held;
        case WAIT_ABANDONED:
            return InstanceGuard::Abandoned;
        default:
            return InstanceGuard::Refused;
    }
}

void ReleaseInstanceGuard() {
    ReleaseMutex(Guard());
}

// Names belong to the user's session here.
QString InstanceNameSuffix() {
    return QString();
}

void LetRunningCopyComeToFront() {
    AllowSetForegroundWindow(ASFW_ANY);
}

void KeepKeyFile(const QString&) {}

}  // namespace kivo
