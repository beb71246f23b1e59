#include "telemetry/sensor_lists.h"

namespace kivo {

SourceOrders PlatformSourceOrders() {
    return {{
        {SourceId::EnergyLibrary},
        {SourceId::EnergyLibrary},
        {},
    }};
}

SensorSources MakeSensorSources() {
    return {};
}

}  // namespace kivo
