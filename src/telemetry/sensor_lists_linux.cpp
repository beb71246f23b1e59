#include "telemetry/sensor_lists.h"

#include "telemetry/sysfs_sources.h"

namespace kivo {

SourceOrders PlatformSourceOrders() {
    return {{
        {SourceId::EnergyLibrary, SourceId::PowerCap, SourceId::EnergyDriver},
        {SourceId::EnergyLibrary, SourceId::HardwareMonitor, SourceId::ProcessorZone, SourceId::BoardMonitor},
        {SourceId::HardwareMonitor},
    }};
}

SensorSources MakeSensorSources() {
    return MakeSysfsSources();
}

}  // namespace kivo
