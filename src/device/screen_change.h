#pragma once

// What becomes of the device table and of the open screen when an interface arrives or goes. For worker
// threads: closing a screen that hangs waits for its write, on Linux inside the kernel.

#include "device/hotplug.h"

namespace kivo {

class ScreenSession;

struct ScreenChangeOutcome {
    bool dataArrived = false;  // the screen's data interface is there, and opening it was tried
    bool closed = false;       // the screen counts as gone
};

// suspended: the table is kept true, but nothing is opened or closed.
ScreenChangeOutcome ApplyScreenChange(ScreenSession& session, const DeviceChange& change, bool suspended,
                                      ArrivalPath pathFrom);

}  // namespace kivo
