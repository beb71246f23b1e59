#include <windows.h>

#include "reserved/msr_driver_platform.h"

namespace kivo {

namespace {

using IsWow64Function = BOOL(WINAPI*)(HANDLE, PBOOL);

std::wstring Wide(const QString& text) {
    return text.toStdWString();
}

SC_HANDLE OpenManager() {
    return OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
}

SC_HANDLE OpenService(void* scm, const QString& name) {
    return OpenServiceW(static_cast<SC_HANDLE>(scm), Wide(name).c_str(), SERVICE_ALL_ACCESS);
}

}  // namespace

static_assert(kLongestPath == MAX_PATH);
static_assert(SC_MANAGER_ALL_ACCESS == 0xF003F && SERVICE_ALL_ACCESS == 0xF01FF);

bool IsWow64() {
    static const auto isWow64Process = reinterpret_cast<IsWow64Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32"), "IsWow64Process")));
    BOOL answer = FALSE;
    return isWow64Process != nullptr && isWow64Process(GetCurrentProcess(), &answer) != FALSE &&
           answer != FALSE;
}

bool FileExists(const QString& path) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW(Wide(path).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return false;
    }
    FindClose(search);
    return true;
}

bool OpenDriver() {
    // The device is opened for one user alone: a second handle could not be had, and the first would be lost.
    if (msrDriver.driverHandle != kNoDriver) {
        return true;
    }
    msrDriver.driverHandle = CreateFileW(Wide(kDriverDevice).c_str(), GENERIC_READ | GENERIC_WRITE, 0,
                                         nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return msrDriver.driverHandle != INVALID_HANDLE_VALUE;
}

void InstallDriverService() {
    const SC_HANDLE scm = OpenManager();
    if (scm == nullptr) {
        return;
    }
    const std::wstring name = Wide(kDriverService);
    // Where it fails the service is usually there already; the next step tells by opening it.
    const SC_HANDLE created =
        CreateServiceW(scm, name.c_str(), name.c_str(), SERVICE_ALL_ACCESS, SERVICE_KERNEL_DRIVER,
                       SERVICE_DEMAND_START, SERVICE_ERROR_NORMAL, Wide(msrDriver.driverPath).c_str(),
                       nullptr, nullptr, nullptr, nullptr, nullptr);
    if (created != nullptr) {
        CloseServiceHandle(created);
    }
    const SC_HANDLE service = OpenService(scm, kDriverService);
    if (service != nullptr) {
        StartServiceW(service, 0, nullptr);
        CloseServiceHandle(service);
    }
    CloseServiceHandle(scm);
}

void UninstallDriver() {
    const SC_HANDLE scm = OpenManager();
    if (scm == nullptr) {
        return;
    }
    StopDriverService(scm, kDriverService);
    RemoveDriverService(scm, kDriverService);
    CloseServiceHandle(scm);
}

bool StopDriverService(void* scm, const QString& name) {
    const SC_HANDLE service = OpenService(scm, name);
    if (service == nullptr) {
        return false;
    }
    SERVICE_STATUS status{};
    const bool stopped = ControlService(service, SERVICE_CONTROL_STOP, &status) != FALSE;
    CloseServiceHandle(service);
    return stopped;
}

bool RemoveDriverService(void* scm, const QString& name) {
    const SC_HANDLE service = OpenService(scm, name);
    if (service == nullptr) {
        return true;
    }
    const bool removed = DeleteService(service) != FALSE;
    CloseServiceHandle(service);
    return removed;
}

QString OwnProgramPath() {
    std::array<wchar_t, kLongestPath> path{};
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    // A path that fills the whole buffer has been cut: the folder may not be the program's.
    return length < path.size() ? QString::fromWCharArray(path.data(), static_cast<int>(length)) : QString();
}

bool AskDriver(void* driver, const MsrRequest& request, MsrAnswer* answer) {
    // The system takes the request's buffer as writable.
    MsrRequest sent = request;
    DWORD received = 0;
    return DeviceIoControl(driver, kReadMsrControlCode, sent.data(), static_cast<DWORD>(sent.size()),
                           answer->data(), static_cast<DWORD>(answer->size()), &received, nullptr) != FALSE;
}

}  // namespace kivo
