#include "device/hid_api_hidapi.h"

#include <hidapi.h>

#include <memory>
#include <optional>
#include <utility>

#include "device/node_access.h"
#include "device/node_identity.h"

namespace kivo {

namespace {

class HidapiHandle final : public HidHandle {
public:
    HidapiHandle(hid_device* opened, QByteArray openedPath) : device(opened), path(std::move(openedPath)) {}

    hid_device* const device;
    const QByteArray path;
};

hid_device* DeviceOf(HidHandle* handle) {
    return static_cast<HidapiHandle*>(handle)->device;
}

// hidapi leaves a string null that the device does not have.
QString TextOrEmpty(const wchar_t* text) {
    return text == nullptr ? QString() : QString::fromWCharArray(text);
}

// Without the strings.
HidDeviceInfo NumbersFromHidapi(const hid_device_info& info) {
    HidDeviceInfo device;
    device.path = info.path;
    device.vendorId = info.vendor_id;
    device.productId = info.product_id;
    device.releaseNumber = info.release_number;
    device.usagePage = info.usage_page;
    device.usage = info.usage;
    device.interfaceNumber = info.interface_number;
    return device;
}

HidDeviceInfo FromHidapi(const hid_device_info& info) {
    HidDeviceInfo device = NumbersFromHidapi(info);
    device.manufacturer = TextOrEmpty(info.manufacturer_string);
    device.product = TextOrEmpty(info.product_string);
    return device;
}

}  // namespace

int HidapiHidApi::Init() {
    return hid_init();
}

std::vector<HidDeviceInfo> HidapiHidApi::Enumerate(quint16 vendorId, quint16 productId) {
    const std::unique_ptr<hid_device_info, decltype(&hid_free_enumeration)> list(
        hid_enumerate(vendorId, productId), &hid_free_enumeration);
    std::vector<HidDeviceInfo> devices;
    for (const hid_device_info* info = list.get(); info != nullptr; info = info->next) {
        devices.push_back(FromHidapi(*info));
    }
    return devices;
}

HidHandle* HidapiHidApi::OpenPath(const QByteArray& path) {
    const NodeHold hold(path);
    if (hold.IsGone()) {
        return nullptr;
    }
    hid_device* const device = hid_open_path(path.constData());
    return device == nullptr ? nullptr : std::make_unique<HidapiHandle>(device, path).release();
}

bool HidapiHidApi::IsDenied(const QByteArray& path) {
    return IsNodeDenied(path);
}

std::vector<HidDeviceInfo> HidapiHidApi::Identify(HidHandle* handle) {
    if (const auto known = CollectionsOfNode(static_cast<HidapiHandle*>(handle)->path)) {
        return *known;
    }
    std::vector<HidDeviceInfo> collections;
    // The list belongs to the device.
    for (const hid_device_info* info = hid_get_device_info(DeviceOf(handle)); info != nullptr;
         info = info->next) {
        collections.push_back(NumbersFromHidapi(*info));
    }
    return collections;
}

QByteArray HidapiHidApi::NodeStamp(const QByteArray& path) {
    return StampOfNode(path);
}

QByteArray HidapiHidApi::PanelKey(const QByteArray& path) {
    return PanelKeyOfNode(path);
}

int HidapiHidApi::Write(HidHandle* handle, const quint8* data, std::size_t length) {
    return hid_write(DeviceOf(handle), data, length);
}

int HidapiHidApi::SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) {
    return hid_send_feature_report(DeviceOf(handle), data, length);
}

void HidapiHidApi::Close(HidHandle* handle) {
    const std::unique_ptr<HidHandle> owned(handle);
    hid_close(DeviceOf(handle));
}

int HidapiHidApi::Exit() {
    return hid_exit();
}

}  // namespace kivo
