#pragma once

#include "telemetry/counter_query.h"
#include "telemetry/thermal_zone.h"

namespace kivo {

// ThermalCommand, run by the client that came with the system: "wbem/wmic.exe" below the system's own folder.
// By its bare name it would be looked for beside the program and in the current folder first, and anything of
// that name be run. Its program is empty where the system does not tell that folder.
Command ThermalClient();

// The reading by a command; where that gives none, for newer systems come without that client, and it may
// refuse an ordinary user, by the performance counters of the same zones. Of several zones the last one
// counts for both.
QString ReadThermalZoneWith(const Command& command, const CounterQueryFactory& openQuery,
                            const StopAsked& isStopAsked = {});

}  // namespace kivo
