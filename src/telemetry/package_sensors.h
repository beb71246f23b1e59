#pragma once

// Where power and temperature of the processor package come from. Made, used and destroyed on the poller's
// thread.

#include <QString>

#include <functional>
#include <memory>

#include "telemetry/energy_library.h"

namespace kivo {

class PackageSensors {
public:
    PackageSensors() = default;
    PackageSensors(const PackageSensors&) = delete;
    PackageSensors& operator=(const PackageSensors&) = delete;
    virtual ~PackageSensors() = default;

    // Finds the sensors. False where there are none; may then be called again, for they may come later, and
    // has to be cheap.
    virtual bool Load() = 0;
    // Why Load failed last.
    virtual QString ErrorString() const = 0;

    // Takes a sample: power is the average between the last two.
    virtual void ReadSample() = 0;
    // Of the last sample, in degrees Celsius; 0 where it cannot be read.
    virtual int Temperature() = 0;
    // In watts. What cannot be read is 0; a library may leave its last number, or any, behind.
    virtual double Power() = 0;
};

// Makes the sensors on the thread that will use them; the gate is that thread's.
using PackageSensorsFactory = std::function<std::unique_ptr<PackageSensors>(const TerminationGate&)>;

// This platform's sensors: the energy library on Windows. On Linux the energy library too, where the
// environment names one; else the kernel's energy counter (powercap) and temperature sensors (hwmon).
std::unique_ptr<PackageSensors> MakePackageSensors(const TerminationGate& allowTermination);

// The energy library alone, found as EnergyLibrary finds it.
std::unique_ptr<PackageSensors> MakeLibrarySensors(
    const TerminationGate& allowTermination, EnvironmentReader environment = {},
    const QString& defaultFolder = EnergyLibrary::DefaultFolder());

}  // namespace kivo
