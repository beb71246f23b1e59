#include "telemetry/thermal_zone.h"

namespace kivo {

QString ReadThermalZoneTemperature(const StopAsked& isStopAsked) {
    constexpr std::chrono::seconds kLongest{30};
    return ParseThermalZones(ReadCommandOutput(ThermalCommand(), kLongest, isStopAsked));
}

}  // namespace kivo
