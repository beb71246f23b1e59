#pragma once

#include <QString>

namespace kivo {

// The reading of the best thermal zone below a folder made like /sys/class/thermal: the processor's own, else
// the firmware's ("acpitz", on many boards the same number for ever), else any. Of several of a kind the last
// one counts, as it does with WMI. The text is that of ReadThermalZoneTemperature.
QString ReadThermalZones(const QString& folder);

}  // namespace kivo
