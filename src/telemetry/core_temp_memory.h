#pragma once

// What Core Temp publishes in its shared memory "CoreTempMappingObjectEx": the structure CoreTempSharedDataEx
// of its maker's developer pages, packed to four bytes, little end first. Any thread.
//
//     offset  type        what
//       1024  u32[128]    TjMax of each processor, degrees Celsius
//       1536  u32         cores of each processor
//       1540  u32         processors
//       1544  f32[256]    temperature of each core, processor by processor
//       2684  u8          temperatures are in degrees Fahrenheit
//       2685  u8          temperatures are the distance to TjMax
//       2688  u32         version of the structure; later ones only add to its end
//
// In all 4740 bytes from version 2 on, 2692 before.

#include <QByteArray>

#include "telemetry/reading.h"

namespace kivo {

// What a copy has to hold to be of any version. No later one is read further.
inline constexpr int kCoreTempMemorySize = 4740;

// The temperature of the first processor's hottest core; the other quantities are NoSource. So is the
// temperature where the memory is shorter than its version says, where a distance comes without a TjMax, and
// where it is a distance in Fahrenheit, of which nobody says how it is converted.
SensorReadings ReadCoreTempMemory(const QByteArray& memory);

}  // namespace kivo
