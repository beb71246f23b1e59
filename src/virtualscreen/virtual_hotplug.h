#pragma once

// Tells the program when the software panel is pulled out and plugged in, whoever does it and on whatever
// thread. Made, used and destroyed on the GUI thread.

#include <QObject>

#include "device/hotplug.h"
#include "virtualscreen/virtual_hid_api.h"

namespace kivo {

class VirtualHotplug final : public Hotplug {
public:
    // The screen must outlive it.
    explicit VirtualHotplug(VirtualHidApi& screen);
    ~VirtualHotplug() override;

    bool Register(const std::function<quintptr()>& nativeWindow, Listener listener,
                  WakeUpListener onWakeUp) override;
    ArrivalPath PathOfArrival() const override { return ArrivalPath::Enumeration; }

private:
    void Tell(bool arrived) const;

    VirtualHidApi& m_screen;
    Listener m_listener;
    int m_screenListener = 0;  // 0: not registered
    QObject m_context;         // what is still on its way ends with it
};

}  // namespace kivo
