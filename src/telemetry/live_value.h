#pragma once

namespace kivo {

// What the panel can show. The numbers are the live-value indices, the item kinds of a layout and the
// suffixes of the item keys in Config.ini at once. OtherText and OtherText2 are the free texts: they have no
// live value.
enum LiveValue : int {
    CpuTemperature = 0,
    CpuUsage = 1,
    MemoryUsage = 2,
    Time = 3,
    CpuPower = 4,
    Date = 5,
    FanSpeed = 6,
    OtherText = 7,
    OtherText2 = 8,
};

inline constexpr int kLiveValueCount = 9;

}  // namespace kivo
