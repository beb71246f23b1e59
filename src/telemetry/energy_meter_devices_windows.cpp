// clang-format off
#include <windows.h>
#include <setupapi.h>
// clang-format on

#include <cstddef>

#include "telemetry/energy_meter_devices.h"

namespace kivo {
namespace {

// GUID_DEVICE_ENERGY_METER of the driver kit's emi.h.
constexpr GUID kEnergyMeters{0x45BD8344, 0x7ED6, 0x49CF, {0xA4, 0x40, 0xC2, 0x76, 0xC9, 0x33, 0xB0, 0x53}};

constexpr DWORD kMostDevices = 1024;
constexpr DWORD kLongestPath = 4096;  // in bytes

class Device final : public EnergyMeterDevice {
public:
    explicit Device(HANDLE handle) : m_handle(handle) {}
    ~Device() override { CloseHandle(m_handle); }

    std::optional<QByteArray> Ask(EnergyMeterQuestion question, int size) override {
        QByteArray answer(size, '\0');
        DWORD length = 0;
        if (DeviceIoControl(m_handle, static_cast<DWORD>(question), nullptr, 0, answer.data(),
                            static_cast<DWORD>(size), &length, nullptr) == FALSE) {
            return std::nullopt;
        }
        return answer.left(static_cast<int>(length));
    }

private:
    const HANDLE m_handle;
};

// Empty where it cannot be told.
QString PathOf(HDEVINFO devices, SP_DEVICE_INTERFACE_DATA& device) {
    DWORD size = 0;
    SetupDiGetDeviceInterfaceDetailW(devices, &device, nullptr, 0, &size, nullptr);
    if (size < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) || size > kLongestPath) {
        return {};
    }
    // Elements as large as the structure are aligned for it.
    std::vector<SP_DEVICE_INTERFACE_DETAIL_DATA_W> room(size / sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W) + 1);
    room[0].cbSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W);
    return SetupDiGetDeviceInterfaceDetailW(devices, &device, room.data(), size, nullptr, nullptr) == FALSE
               ? QString()
               : QString::fromWCharArray(room[0].DevicePath);
}

std::vector<QString> ListDevices() {
    std::vector<QString> paths;
    const HDEVINFO devices =
        SetupDiGetClassDevsW(&kEnergyMeters, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE);
    if (devices == INVALID_HANDLE_VALUE) {
        return paths;
    }
    SP_DEVICE_INTERFACE_DATA device{};
    device.cbSize = sizeof(device);
    for (DWORD i = 0; i < kMostDevices &&
                      SetupDiEnumDeviceInterfaces(devices, nullptr, &kEnergyMeters, i, &device) != FALSE;
         ++i) {
        paths.push_back(PathOf(devices, device));
    }
    SetupDiDestroyDeviceInfoList(devices);
    return paths;
}

EnergyMeterSystem::Opened OpenDevice(const QString& path) {
    const HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return {nullptr, GetLastError() == ERROR_ACCESS_DENIED};
    }
    return {std::make_unique<Device>(handle), false};
}

}  // namespace

EnergyMeterSystem SystemEnergyMeters() {
    return {ListDevices, OpenDevice};
}

}  // namespace kivo
