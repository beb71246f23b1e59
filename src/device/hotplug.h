#pragma once

// The seam to whoever knows that devices come and go: the system (hotplug_windows.cpp, hotplug_linux.cpp) or
// the software panel (virtualscreen/virtual_hotplug.h). GUI thread.

#include <QByteArray>
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
    QString name;  // of the interface, in the form of interface_name.h
    bool arrived = false;
};

// Tells of HID interfaces, of the screen and of others, from Register until it is destroyed.
class Hotplug {
public:
    using Listener = std::function<void(const DeviceChange&)>;

    Hotplug() = default;
    Hotplug(const Hotplug&) = delete;
    Hotplug& operator=(const Hotplug&) = delete;
    virtual ~Hotplug() = default;

    // Once. The window's native handle is asked for only where messages come through it; they are then for
    // ReadNativeEvent, and the listener, which is called by the event loop, stays unused. False when the
    // system refuses.
    virtual bool Register(const std::function<quintptr()>& nativeWindow, Listener listener) = 0;

    virtual ArrivalPath PathOfArrival() const = 0;
};

// The one of the system this is built for.
std::unique_ptr<Hotplug> MakeSystemHotplug();

enum class NativeEventKind {
    Other,
    Arrival,
    Removal,
    Resume,  // the system woke up
};

struct NativeEvent {
    NativeEventKind kind = NativeEventKind::Other;
    QString interfaceName;  // empty when what came or went is no interface
};

// What QWidget::nativeEvent was handed. Only Windows tells anything this way.
NativeEvent ReadNativeEvent(const QByteArray& eventType, const void* message);

}  // namespace kivo
