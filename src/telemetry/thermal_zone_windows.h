#pragma once

#include "telemetry/thermal_zone.h"

namespace kivo {

// ThermalCommand, run by the client that came with the system: "wbem/wmic.exe" below the system's own folder.
// By its bare name it would be looked for beside the program and in the current folder first, and anything of
// that name be run. Its program is empty where the system does not tell that folder.
Command ThermalClient();

// The reading by a command; "N/A" where its program is empty.
QString ReadThermalZoneWith(const Command& command, const StopAsked& isStopAsked = {});

}  // namespace kivo
