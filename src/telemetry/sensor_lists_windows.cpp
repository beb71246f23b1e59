#include "telemetry/core_temp_source.h"
#include "telemetry/energy_meter_counters.h"
#include "telemetry/energy_meter_devices.h"
#include "telemetry/firmware_zone_counters.h"
#include "telemetry/hardware_monitor_json.h"
#include "telemetry/hardware_monitor_source.h"
#include "telemetry/hwinfo_source.h"
#include "telemetry/sensor_lists.h"

namespace kivo {

SourceOrders PlatformSourceOrders() {
    return {{
        {SourceId::EnergyLibrary, SourceId::EnergyMeterCounters, SourceId::EnergyMeterInterface,
         SourceId::HwInfo, SourceId::LibreHardwareMonitor},
        {SourceId::EnergyLibrary, SourceId::HwInfo, SourceId::LibreHardwareMonitor, SourceId::CoreTemp,
         SourceId::FirmwareZone},
        {SourceId::HwInfo, SourceId::LibreHardwareMonitor},
    }};
}

SensorSources MakeSensorSources() {
    SensorSources sources;
    sources.push_back(std::make_unique<EnergyMeterCounters>(OpenCounterQuery));
    sources.push_back(std::make_unique<EnergyMeterDevices>(SystemEnergyMeters()));
    sources.push_back(std::make_unique<HwInfoSource>(SystemHwInfo()));
    sources.push_back(std::make_unique<HardwareMonitorSource>(
        MakeLocalPage(kHardwareMonitorPort, QString::fromLatin1(kHardwareMonitorPath),
                      LocalPageLimits{kLongestMonitorPage})));
    sources.push_back(std::make_unique<CoreTempSource>(CopyCoreTempMemory));
    sources.push_back(std::make_unique<FirmwareZoneCounters>(OpenCounterQuery));
    return sources;
}

}  // namespace kivo
