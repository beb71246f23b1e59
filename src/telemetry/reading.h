#pragma once

// What a sensor says: a value, or the reason why there is none, and who says it. Values only; any thread.

#include <QMetaType>
#include <QString>

#include <array>
#include <cstddef>
#include <optional>

namespace kivo {

// What sensors measure.
enum class Quantity : std::size_t {
    Power,        // of the processor package, in watts
    Temperature,  // of the processor package, in degrees Celsius
    FanSpeed,     // of the processor's fan, in revolutions a minute
};
inline constexpr std::size_t kQuantityCount = 3;

// Who measures. The order says nothing; each platform lists its own (sensor_lists.h).
enum class SourceId {
    None,
    EnergyLibrary,
    PowerCap,              // the kernel's energy counters
    EnergyDriver,          // a driver with an energy sensor for the socket
    HardwareMonitor,       // the kernel's hwmon
    ProcessorZone,         // the processor's own thermal zone
    EnergyMeterCounters,   // Windows' performance counters
    EnergyMeterInterface,  // Windows' devices of energy meters
    HwInfo,
    LibreHardwareMonitor,
    CoreTemp,
    FirmwareZone,  // a thermal zone of the firmware's, often the board's
};

// Why there is no value.
enum class ReadingGap {
    None,          // there is one
    NotRead,       // nobody has asked yet
    NoSource,      // nothing that is there measures it
    NoRight,       // it is measured, but this user has no right to read it
    NotRunning,    // the program that measures it does not run, or does not hand it on
    Silent,        // it was measured, and no answer has come for ten seconds
    Unbelievable,  // what is told cannot be
};

struct Reading {
    std::optional<double> value;  // in the quantity's unit
    ReadingGap gap = ReadingGap::NotRead;
    // Whose value it is; without a value, who came nearest to one.
    SourceId source = SourceId::None;
    // It has not changed for ten minutes, though the load has.
    bool isStuck = false;

    static Reading Of(double value, SourceId source) { return {value, ReadingGap::None, source, false}; }
    static Reading Without(ReadingGap gap, SourceId source = SourceId::None) {
        return {std::nullopt, gap, source, false};
    }
    bool operator==(const Reading& other) const {
        return value == other.value && gap == other.gap && source == other.source && isStuck == other.isStuck;
    }
};

// One for each quantity.
class SensorReadings {
public:
    Reading& operator[](Quantity quantity) { return m_readings[static_cast<std::size_t>(quantity)]; }
    const Reading& operator[](Quantity quantity) const {
        return m_readings[static_cast<std::size_t>(quantity)];
    }
    bool operator==(const SensorReadings& other) const { return m_readings == other.m_readings; }

private:
    std::array<Reading, kQuantityCount> m_readings;
};

// Whether a value can be one: over 0 and under 130 degrees; 0 to 998 watts; 0 to 20,000 revolutions. What is
// no finite number cannot.
bool IsBelievable(Quantity quantity, double value);

// The value as a reading of that source, or Unbelievable.
Reading Checked(Quantity quantity, double value, SourceId source);

}  // namespace kivo

Q_DECLARE_METATYPE(kivo::SensorReadings)
