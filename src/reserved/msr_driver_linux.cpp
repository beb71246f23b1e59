#include "reserved/msr_driver_platform.h"

// The driver is one for Windows; here there is never one to open.
namespace kivo {

bool IsWow64() {
    return false;
}

bool FileExists(const QString& /*path*/) {
    return false;
}

bool OpenDriver() {
    return false;
}

void InstallDriverService() {}

void UninstallDriver() {}

bool StopDriverService(void* /*scm*/, const QString& /*name*/) {
    return false;
}

bool RemoveDriverService(void* /*scm*/, const QString& /*name*/) {
    return false;
}

QString OwnProgramPath() {
    return {};
}

bool AskDriver(void* /*driver*/, const MsrRequest& /*request*/, MsrAnswer* /*answer*/) {
    return false;
}

}  // namespace kivo
