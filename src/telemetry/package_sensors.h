#pragma once

// The sensors of the processor package and its fan: the energy library where it is installed, and whatever
// else the platform has (sensor_lists.h). Made, used and destroyed on the poller's thread.

#include <QString>

#include <functional>
#include <memory>

#include "telemetry/energy_library.h"
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

    // Looks for sensors. False where nothing measures anything; may then be called again, for they may come
    // later, and has to be cheap.
    virtual bool Load() = 0;
    // Why the energy library could not be loaded last.
    virtual QString ErrorString() const = 0;

    // Takes a sample: power is the average between the last two.
    virtual void ReadSample() = 0;
    // Of the last sample; after a Load that failed, the reasons.
    virtual SensorReadings Readings() = 0;

    // What is told as numbers: the temperature in degrees Celsius and the power in watts of what Readings
    // answered last, 0 where there is none. Of an energy library that speaks, whatever it said: a call that
    // fails leaves a temperature of 0 and the power of the call before, or any.
    virtual int Temperature() = 0;
    virtual double Power() = 0;
};

// Makes the sensors on the thread that will use them; the gate is that thread's.
using PackageSensorsFactory = std::function<std::unique_ptr<PackageSensors>(const TerminationGate&)>;

// All that this platform has.
std::unique_ptr<PackageSensors> MakePackageSensors(const TerminationGate& allowTermination);

// The energy library alone, found as EnergyLibrary finds it.
std::unique_ptr<PackageSensors> MakeLibrarySensors(
    const TerminationGate& allowTermination, EnvironmentReader environment = {},
    const QString& defaultFolder = EnergyLibrary::DefaultFolder());

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
