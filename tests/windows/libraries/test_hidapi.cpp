// A hidapi.dll for tests: one screen with its two collections. KIVO_TEST_SCREEN names a folder; the screen is
// plugged in while there is a file "plugged" in it, and every report it takes is appended to "reports" there:
// the length (four bytes, lowest first), then the report as it was handed over. Feature reports go to
// "features" in the same form.
//
// The screen has a mouse of another maker for company, and a third collection that is neither control nor
// data.

#include <hidapi.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <string>

namespace {

constexpr char kControlPath[] =
    "\\\\?\\HID#VID_04D9&PID_FD01&MI_00#7&1a2b3c4d&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";
constexpr char kDataPath[] =
    "\\\\?\\HID#VID_04D9&PID_FD01&MI_01#7&2b3c4d5e&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";
constexpr char kThirdPath[] =
    "\\\\?\\HID#VID_04D9&PID_FD01&MI_00&Col02#7&1a2b3c4d&0&0001#{4d1e55b2-f16f-11cf-88cb-001111000030}";
constexpr char kMousePath[] =
    "\\\\?\\HID#VID_1234&PID_5678&MI_00#8&0&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";

std::mutex mutex;  // reports of two threads do not mix in the file

std::string InFolder(const char* name) {
    const char* folder = std::getenv("KIVO_TEST_SCREEN");
    return std::string(folder == nullptr ? "." : folder) + "/" + name;
}

bool IsPlugged() {
    FILE* file = std::fopen(InFolder("plugged").c_str(), "rb");
    if (file != nullptr) {
        std::fclose(file);
    }
    return file != nullptr;
}

int Append(const char* name, const unsigned char* data, size_t length) {
    if (!IsPlugged()) {
        return -1;
    }
    const std::lock_guard<std::mutex> guard(mutex);
    FILE* file = std::fopen(InFolder(name).c_str(), "ab");
    if (file == nullptr) {
        return -1;
    }
    const unsigned char head[4] = {
        static_cast<unsigned char>(length & 0xFF), static_cast<unsigned char>((length >> 8) & 0xFF),
        static_cast<unsigned char>((length >> 16) & 0xFF), static_cast<unsigned char>((length >> 24) & 0xFF)};
    std::fwrite(head, 1, sizeof(head), file);
    std::fwrite(data, 1, length, file);
    std::fclose(file);
    return static_cast<int>(length);
}

hid_device_info* Describe(const char* path, unsigned short vendor, unsigned short product,
                          unsigned short usagePage, unsigned short usage, int interfaceNumber,
                          hid_device_info* next) {
    auto* info = new hid_device_info{};
    info->path = _strdup(path);
    info->vendor_id = vendor;
    info->product_id = product;
    info->release_number = 0x0100;
    info->usage_page = usagePage;
    info->usage = usage;
    info->interface_number = interfaceNumber;
    info->next = next;
    return info;
}

hid_device_info* DescribeData(hid_device_info* next) {
    return Describe(kDataPath, 0x04D9, 0xFD01, 0xFFA0, 0x0001, 1, next);
}

hid_device_info* DescribeControl(hid_device_info* next) {
    return Describe(kControlPath, 0x04D9, 0xFD01, 0x000C, 0x0001, 0, next);
}

}  // namespace

struct hid_device_ {
    bool isData;
    hid_device_info* info;  // without strings, as an open device of the true library has it
};

extern "C" {

__declspec(dllexport) int HID_API_CALL hid_init() {
    return 0;
}

__declspec(dllexport) int HID_API_CALL hid_exit() {
    return 0;
}

// An id of 0 stands for any.
__declspec(dllexport) hid_device_info* HID_API_CALL
    hid_enumerate(unsigned short vendor, unsigned short product) {
    hid_device_info* list = nullptr;
    const auto isWanted = [&](unsigned short ofVendor, unsigned short ofProduct) {
        return (vendor == 0 || vendor == ofVendor) && (product == 0 || product == ofProduct);
    };
    if (isWanted(0x1234, 0x5678)) {
        list = Describe(kMousePath, 0x1234, 0x5678, 0x0001, 0x0002, 0, list);
    }
    if (IsPlugged() && isWanted(0x04D9, 0xFD01)) {
        list = Describe(kThirdPath, 0x04D9, 0xFD01, 0x0001, 0x0080, 0, list);
        list = DescribeControl(DescribeData(list));
    }
    for (hid_device_info* info = list; info != nullptr; info = info->next) {
        info->manufacturer_string = _wcsdup(L"Test");
        info->product_string = _wcsdup(L"Screen of the tests");
    }
    return list;
}

__declspec(dllexport) void HID_API_CALL hid_free_enumeration(hid_device_info* list) {
    while (list != nullptr) {
        hid_device_info* next = list->next;
        std::free(list->path);
        std::free(list->manufacturer_string);
        std::free(list->product_string);
        delete list;
        list = next;
    }
}

// A path of Windows means the same in any letter case.
__declspec(dllexport) hid_device* HID_API_CALL hid_open_path(const char* path) {
    const bool isData = _stricmp(path, kDataPath) == 0;
    if (!IsPlugged() || (!isData && _stricmp(path, kControlPath) != 0)) {
        return nullptr;
    }
    return new hid_device_{isData, isData ? DescribeData(nullptr) : DescribeControl(nullptr)};
}

// The record belongs to the device.
__declspec(dllexport) hid_device_info* HID_API_CALL hid_get_device_info(hid_device* device) {
    return device->info;
}

__declspec(dllexport) int HID_API_CALL
    hid_write(hid_device* device, const unsigned char* data, size_t length) {
    return device->isData ? Append("reports", data, length) : -1;
}

__declspec(dllexport) int HID_API_CALL
    hid_send_feature_report(hid_device*, const unsigned char* data, size_t length) {
    return Append("features", data, length);
}

__declspec(dllexport) void HID_API_CALL hid_close(hid_device* device) {
    hid_free_enumeration(device->info);
    delete device;
}

}  // extern "C"
