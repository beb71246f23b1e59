#pragma once

// A thermal zone, on Windows the firmware's (ACPI), on Linux the processor's own before that one: a second
// way to a temperature, without library or driver. It may take seconds, so it is read when a person asks for
// it, not every second. Any thread.

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>

namespace kivo {

// Asked now and then by what takes long; true: give up.
using StopAsked = std::function<bool()>;

// The reading as text: degrees Celsius with six decimals ("28.000000°C"), "N/A" where there is none. Blocks:
// on Windows, where the system's WMI client is run if there is one, up to kLongestReading and half a second
// more.
QString ReadThermalZoneTemperature(const StopAsked& isStopAsked = {});

// What the firmware tells, in degrees Celsius. Deliberate: freezing is at 273.2, not 273.15, for that is what
// firmware adds to its whole degrees.
double CelsiusOfTenths(double tenthsOfKelvin);

// Whether a thermal zone may be that warm. Firmware without a sensor tells about 0 kelvin.
bool IsZoneTemperature(double degreesCelsius);

// The text of a temperature. Deliberate: degree sign and C, not the single character of the live values.
QString ThermalText(double degreesCelsius);

// "N/A".
QString NoThermalText();

inline constexpr std::chrono::seconds kLongestReading{30};

// The WMI client's command line.
QString ThermalCommand();

// The last zone in what the WMI client wrote, in degrees Celsius: lines "CurrentTemperature=3012", tenths of
// a kelvin. Single-byte text, or UTF-16 (little end first) with or without its mark. Nothing where there is
// none.
std::optional<double> LastThermalZone(const QByteArray& output);

// The same as a text.
QString ParseThermalZones(const QByteArray& output);

// A program's path and what it is given.
struct Command {
    QString program;
    QStringList arguments;
};

struct CommandLimits {
    std::chrono::milliseconds run = kLongestReading;
    std::chrono::milliseconds end{500};  // for one that was killed
};

// Runs a command, its input closed, and gives what it wrote to standard output: all of it, or what came
// within the time limit, after which it is killed. Empty where it cannot be started. One that has not ended
// within the second limit either is left to the system, so that no call takes longer than both together.
QByteArray ReadCommandOutput(const Command& command, const CommandLimits& limits = {},
                             const StopAsked& isStopAsked = {});

}  // namespace kivo
