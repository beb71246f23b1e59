#pragma once

// What a sensor says: a value, or the reason why there is none, and who says it. Values only; any thread.

#include <QMetaType>
#include <QString>

#include <array>
#include <chrono>
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
inline constexpr std::array<Quantity, kQuantityCount> kQuantities{Quantity::Power, Quantity::Temperature,
                                                                  Quantity::FanSpeed};

// Who measures. The order says nothing; each platform lists its own (sensor_lists.h).
enum class SourceId {
    None,
    EnergyLibrary,
    PowerCap,              // the kernel's energy counters
    EnergyDriver,          // a driver with an energy sensor for the socket
    HardwareMonitor,       // the kernel's hwmon
    ProcessorZone,         // the processor's own thermal zone
    BoardMonitor,          // a sensor of the board's that is named after the processor
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
    NotRead,       // nobody has asked yet, or only once where it takes two samples
    NoSource,      // nothing that is there measures it
    NoRight,       // it is measured, but this user has no right to read it
    NotRunning,    // the program that measures it does not run
    NotHandedOn,   // that program runs, and hands nothing on
    Silent,        // what measures it is there, or was, and does not answer
    Unbelievable,  // what is told cannot be
};

// After so long without a new value the last one does not stand any more. What counts is time awake.
inline constexpr std::chrono::seconds kLongestSilence{10};

// More watts are no processor's.
inline constexpr int kMostWatts = 998;

struct Reading {
    std::optional<double> value;  // in the quantity's unit
    ReadingGap gap = ReadingGap::NotRead;
    // Whose value it is; without a value, who came nearest to one.
    SourceId source = SourceId::None;
    // It has not changed for ten minutes, though the load has.
    bool isStuck = false;
    // A source's last word, said before: nothing newer has come since.
    bool isStanding = false;

    static Reading Of(double value, SourceId source) { return {value, ReadingGap::None, source}; }
    static Reading Without(ReadingGap gap, SourceId source = SourceId::None) {
        return {std::nullopt, gap, source};
    }
    bool operator==(const Reading& other) const {
        return value == other.value && gap == other.gap && source == other.source &&
               isStuck == other.isStuck && isStanding == other.isStanding;
    }
};

// One for each quantity.
class SensorReadings {
public:
    SensorReadings() = default;
    static SensorReadings AllWithout(ReadingGap gap, SourceId source = SourceId::None) {
        SensorReadings readings;
        readings.m_readings.fill(Reading::Without(gap, source));
        return readings;
    }

    Reading& operator[](Quantity quantity) { return m_readings[static_cast<std::size_t>(quantity)]; }
    const Reading& operator[](Quantity quantity) const {
        return m_readings[static_cast<std::size_t>(quantity)];
    }
    // The values have been told before.
    void LetStand() {
        for (Reading& reading : m_readings) {
            reading.isStanding = reading.value.has_value();
        }
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
