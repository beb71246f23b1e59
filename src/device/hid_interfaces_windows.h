#pragma once

#include <windows.h>

namespace kivo {

// GUID_DEVINTERFACE_HID, here so that no import library is needed for it.
inline constexpr GUID kHidInterfaces = {
    0x4D1E55B2, 0xF16F, 0x11CF, {0x88, 0xCB, 0x00, 0x11, 0x11, 0x00, 0x00, 0x30}};

}  // namespace kivo
