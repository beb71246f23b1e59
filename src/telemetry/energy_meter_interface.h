#pragma once

// The bytes that Windows' Energy Meter Interface (emi.h of its driver kit) answers with; every device is a
// piece of metering hardware with one channel (version 1) or more (version 2). Natural packing, little end
// first. Any thread.

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace kivo {

// The device's control codes.
enum class EnergyMeterQuestion : quint32 {
    Version = 0x224000,       // answered with two bytes
    MetadataSize = 0x224004,  // four
    Metadata = 0x224008,      // as many as those say
    Measurement = 0x22400C,   // sixteen for each channel
};
inline constexpr int kEnergyMeterVersionSize = 2;
inline constexpr int kEnergyMeterMetadataSizeSize = 4;
inline constexpr int kEnergyMeasurementSize = 16;
// Longer metadata are not asked for.
inline constexpr quint32 kLongestEnergyMeterMetadata = 256 * 1024;

struct EnergyMeasurement {
    quint64 picowattHours = 0;
    quint64 time = 0;  // by the meter's clock, in units of 100 ns
};

std::optional<quint16> ReadEnergyMeterVersion(const QByteArray& answer);
std::optional<quint32> ReadEnergyMeterMetadataSize(const QByteArray& answer);

// The names of the channels, in the order of their measurements; one that counts in another unit has none.
// Empty where the bytes are not whole.
std::vector<QString> ReadEnergyMeterChannels(quint16 version, const QByteArray& metadata);

// Of one channel; nothing where the answer ends before it.
std::optional<EnergyMeasurement> ReadEnergyMeasurement(const QByteArray& answer, int channel);

// The average between two measurements; nothing where no time has passed or either figure ran backwards.
std::optional<double> WattsBetween(const EnergyMeasurement& earlier, const EnergyMeasurement& later);

}  // namespace kivo
