#pragma once

// The sensors of the processor package and its fan: the energy library where it is installed, and whatever
// else the platform has (sensor_lists.h). Made, used and destroyed on one thread: the poller's, or the main
// thread where the sensors are only listed.

#include <QString>

#include <functional>
#include <memory>
#include <optional>

#include "telemetry/energy_library_thread.h"
#include "telemetry/reading.h"
#include "telemetry/sensor_lists.h"
#include "telemetry/system_clocks.h"

namespace kivo {

class PackageSensors {
public:
    PackageSensors() = default;
    PackageSensors(const PackageSensors&) = delete;
    PackageSensors& operator=(const PackageSensors&) = delete;
    virtual ~PackageSensors() = default;

    // Finds and starts the energy library, unless that has been done. False where that fails, with the reason
    // in ErrorString, or takes long; to be tried again before each sample, for it may be installed later.
    virtual bool Load() = 0;
    virtual QString ErrorString() const = 0;

    // Takes a sample: power is the average between the last two. Never waits for a library that hangs.
    virtual void ReadSample() = 0;
    // Of the last sample. The first call decides who speaks first, so it is made when all have had their say.
    virtual SensorReadings Readings() = 0;

    // What is told as numbers of what Readings answered last, 0 where there is none; of an energy library
    // that speaks, whatever it said. Nothing while neither power nor temperature is measured.
    virtual std::optional<PackageNumbers> Numbers() = 0;
};

// Makes the sensors on the thread that will use them.
using PackageSensorsFactory = std::function<std::unique_ptr<PackageSensors>()>;

// All that this platform has.
std::unique_ptr<PackageSensors> MakePackageSensors();

// The energy library alone, found as EnergyLibrary finds it.
std::unique_ptr<PackageSensors> MakeLibrarySensors(EnergyLibrary::Parts library = {});

// What sensors are made from.
struct SensorParts {
    EnergyLibrary::Parts library = {};
    SensorSources sources = {};
    SourceOrders orders = PlatformSourceOrders();
    std::function<SystemClocks()> clocks = ReadSystemClocks;
    // The load of all processors in percent since it was asked before; asked every half minute.
    std::function<int()> cpuLoad = {};  // default: the platform's counter
};
std::unique_ptr<PackageSensors> MakeSensorsFrom(SensorParts parts);

}  // namespace kivo
