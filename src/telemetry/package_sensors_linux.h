#pragma once

#include "telemetry/package_sensors.h"
#include "telemetry/sysfs_sensors.h"

namespace kivo {

// What MakePackageSensors makes, with an environment and places of the caller's choice.
std::unique_ptr<PackageSensors> MakeLibraryElseSysfs(const TerminationGate& allowTermination,
                                                     EnvironmentReader environment, SysfsPlaces places);

}  // namespace kivo
