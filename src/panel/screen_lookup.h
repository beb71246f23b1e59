#pragma once

// Whether a screen is plugged in, asked by a program that holds none.

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "device/hid_api.h"

namespace kivo {

// Lists the devices beside the calling thread, with a library object of its own, and waits for the answer no
// longer than said: on Windows a listing opens every device, and one that hangs holds it up. Nothing is
// answered then, and the listing goes on: its thread and the library stay for the rest of the process.
std::optional<bool> IsScreenPluggedIn(std::function<std::unique_ptr<HidApi>()> makeHid,
                                      std::chrono::milliseconds longest);

}  // namespace kivo
