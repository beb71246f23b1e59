#pragma once

// The sensors' table for the command line.

#include <QString>

#include "telemetry/package_sensors.h"

namespace kivo {

// Reads every sensor for about two seconds, as power and load are measured between two samples, and gives the
// table (SensorTableText). Needs a QCoreApplication and an installed translator, and no display.
QString ReadSensorReport(const PackageSensorsFactory& makeSensors = MakePackageSensors);

}  // namespace kivo
