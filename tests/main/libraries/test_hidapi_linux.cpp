// A libhidapi for tests of the whole program: one screen with its two collections. KIVO_TEST_SCREEN names a
// folder; the screen is plugged in while there is a file "plugged" in it, and a write hangs while there is a
// file "hangs".

#include <hidapi.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

namespace {

constexpr char kControlPath[] = "/dev/hidraw-test-control";
constexpr char kDataPath[] = "/dev/hidraw-test-data";
constexpr useconds_t kLookEveryUs = 10000;

bool IsThere(const char* name) {
    const char* folder = std::getenv("KIVO_TEST_SCREEN");
    return folder != nullptr && ::access((std::string(folder) + "/" + name).c_str(), F_OK) == 0;
}

hid_device_info* Describe(const char* path, unsigned short usagePage, int interfaceNumber,
                          hid_device_info* next) {
    auto* info = new hid_device_info{};
    info->path = ::strdup(path);
    info->vendor_id = 0x04D9;
    info->product_id = 0xFD01;
    info->release_number = 0x0100;
    info->manufacturer_string = ::wcsdup(L"Test");
    info->product_string = ::wcsdup(L"Screen of the tests");
    info->usage_page = usagePage;
    info->usage = 0x0001;
    info->interface_number = interfaceNumber;
    info->next = next;
    return info;
}

int Take(size_t length) {
    while (IsThere("hangs")) {
        ::usleep(kLookEveryUs);
    }
    return IsThere("plugged") ? static_cast<int>(length) : -1;
}

}  // namespace

struct hid_device_ {};

extern "C" {

int hid_init() {
    return 0;
}

int hid_exit() {
    return 0;
}

hid_device_info* hid_enumerate(unsigned short /*vendor*/, unsigned short /*product*/) {
    return IsThere("plugged") ? Describe(kControlPath, 0x000C, 0, Describe(kDataPath, 0xFFA0, 1, nullptr))
                              : nullptr;
}

void hid_free_enumeration(hid_device_info* list) {
    while (list != nullptr) {
        hid_device_info* next = list->next;
        std::free(list->path);
        std::free(list->manufacturer_string);
        std::free(list->product_string);
        delete list;
        list = next;
    }
}

hid_device* hid_open_path(const char* /*path*/) {
    return IsThere("plugged") ? new hid_device_{} : nullptr;
}

int hid_write(hid_device* /*device*/, const unsigned char* /*data*/, size_t length) {
    return Take(length);
}

int hid_send_feature_report(hid_device* /*device*/, const unsigned char* /*data*/, size_t length) {
    return Take(length);
}

void hid_close(hid_device* device) {
    delete device;
}

}  // extern "C"
