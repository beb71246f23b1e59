#pragma once

// This platform's sources of sensors, and whose word counts first. Called on the thread that will read them.

#include <array>
#include <vector>

#include "telemetry/sensor_source.h"

namespace kivo {

// For each quantity (by its number) who may speak, the best first. Who is not in a quantity's list is not
// asked for it.
using SourceOrders = std::array<std::vector<SourceId>, kQuantityCount>;

// The energy library stands first for what it measures, where it is installed.
SourceOrders PlatformSourceOrders();

// One of each, but for the energy library, which is no SensorSource: it is loaded and released by whoever
// asks for the sensors.
SensorSources MakeSensorSources();

}  // namespace kivo
