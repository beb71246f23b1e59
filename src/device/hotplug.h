#pragma once

// The seam to whoever knows that devices come and go: the system (hotplug_windows.cpp, hotplug_linux.cpp) or
// the software panel (virtualscreen/virtual_hotplug.h). GUI thread.

#include <QString>
#include <functional>
#include <memory>

namespace kivo {

// Where the data path of a screen that arrived comes from.
enum class ArrivalPath {
    Name,         // the interface's name is what is opened
    Enumeration,  // the devices have to be listed afresh: a replug may have changed all paths
};

struct DeviceChange {
    // Of the interface, in the form of interface_name.h; empty when what came or went is no interface.
    QString name;
    bool arrived = false;
};

// Tells of HID interfaces, of the screen and of others, from Register until it is destroyed.
class Hotplug {
public:
    using Listener = std::function<void(const DeviceChange&)>;
    using WakeUpListener = std::function<void()>;

    Hotplug() = default;
    Hotplug(const Hotplug&) = delete;
    Hotplug& operator=(const Hotplug&) = delete;
    virtual ~Hotplug() = default;

    // Once. Both listeners are called by the event loop. Only Windows asks for the window's native handle, to
    // which it sends its messages, and tells of a wake-up. False when the system refuses.
    virtual bool Register(const std::function<quintptr()>& nativeWindow, Listener listener,
                          WakeUpListener onWakeUp) = 0;

    virtual ArrivalPath PathOfArrival() const = 0;
};

// The one of the system this is built for.
std::unique_ptr<Hotplug> MakeSystemHotplug();

}  // namespace kivo
