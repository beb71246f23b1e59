#include <dlfcn.h>
#include <fcntl.h>
#include <libudev.h>
#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <unistd.h>
#include <cerrno>
#include <cstring>

#include "device/node_access.h"

// Stands before libudev's own function, for hidapi too. hidapi 0.13 measures the length of a device's
// "uevent" without asking whether there is one, and there is none when any HID device is pulled out while all
// are listed. An empty one is refused there as it should be.
extern "C" [[gnu::visibility("default")]] const char* udev_device_get_sysattr_value(udev_device* device,
                                                                                    const char* name) {
    static const auto libudev = reinterpret_cast<decltype(&udev_device_get_sysattr_value)>(
        ::dlsym(RTLD_NEXT, "udev_device_get_sysattr_value"));
    const char* const value = libudev(device, name);
    return value == nullptr && std::strcmp(name, "uevent") == 0 ? "" : value;
}

namespace kivo {

bool IsNodeDenied(const QByteArray& path) {
    return ::access(path.constData(), R_OK | W_OK) != 0 && (errno == EACCES || errno == EPERM);
}

// The kernel's first opening of a USB node sleeps for 50 ms. hidapi 0.13 asks the open node for the size of
// its report descriptor, and when the device went meanwhile, it frees the handle and then writes to it.
NodeHold::NodeHold(const QByteArray& path) : m_descriptor(::open(path.constData(), O_RDWR | O_CLOEXEC)) {
    int size = 0;
    m_isGone = m_descriptor >= 0 && ::ioctl(m_descriptor, HIDIOCGRDESCSIZE, &size) < 0 && errno == ENODEV;
}

NodeHold::~NodeHold() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

}  // namespace kivo
