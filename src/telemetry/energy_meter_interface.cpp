#include "telemetry/energy_meter_interface.h"

#include "telemetry/byte_fields.h"

namespace kivo {
namespace {

constexpr quint32 kPicowattHours = 0;  // the only unit there is
// A picowatt-hour is 3.6e-9 joules, a unit of time 1e-7 seconds.
constexpr double kWattsOfRatio = 0.036;

namespace v1 {
constexpr int kUnit = 0;
constexpr int kNameBytes = 70;
constexpr int kName = 72;
}  // namespace v1

namespace v2 {
constexpr int kChannelCount = 66;
constexpr int kChannels = 68;
// In a channel.
constexpr int kUnit = 0;
constexpr int kNameBytes = 4;
constexpr int kName = 6;
}  // namespace v2

// A name of that many bytes, which ends at its first zero.
QString NameAt(const QByteArray& bytes, int offset, int size) {
    QString name;
    for (int i = 0; i + 1 < size; i += 2) {
        const QChar character(NumberAt<quint16>(bytes, offset + i));
        if (character.isNull()) {
            break;
        }
        name.append(character);
    }
    return name;
}

std::vector<QString> ReadOnlyChannel(const QByteArray& metadata) {
    if (metadata.size() < v1::kName) {
        return {};
    }
    const int nameBytes = NumberAt<quint16>(metadata, v1::kNameBytes);
    if (nameBytes > metadata.size() - v1::kName) {
        return {};
    }
    return {NumberAt<quint32>(metadata, v1::kUnit) == kPicowattHours ? NameAt(metadata, v1::kName, nameBytes)
                                                                     : QString()};
}

std::vector<QString> ReadChannels(const QByteArray& metadata) {
    if (metadata.size() < v2::kChannels) {
        return {};
    }
    std::vector<QString> names;
    int begin = v2::kChannels;
    for (int left = NumberAt<quint16>(metadata, v2::kChannelCount); left > 0; --left) {
        if (metadata.size() - begin < v2::kName) {
            return {};
        }
        const int nameBytes = NumberAt<quint16>(metadata, begin + v2::kNameBytes);
        if (nameBytes > metadata.size() - begin - v2::kName) {
            return {};
        }
        names.push_back(NumberAt<quint32>(metadata, begin + v2::kUnit) == kPicowattHours
                            ? NameAt(metadata, begin + v2::kName, nameBytes)
                            : QString());
        begin += v2::kName + nameBytes;
    }
    return names;
}

}  // namespace

std::optional<quint16> ReadEnergyMeterVersion(const QByteArray& answer) {
    return answer.size() < kEnergyMeterVersionSize ? std::nullopt
                                                   : std::optional<quint16>(NumberAt<quint16>(answer, 0));
}

std::optional<quint32> ReadEnergyMeterMetadataSize(const QByteArray& answer) {
    return answer.size() < kEnergyMeterMetadataSizeSize
               ? std::nullopt
               : std::optional<quint32>(NumberAt<quint32>(answer, 0));
}

std::vector<QString> ReadEnergyMeterChannels(quint16 version, const QByteArray& metadata) {
    switch (version) {
        case 1:
            return ReadOnlyChannel(metadata);
        case 2:
            return ReadChannels(metadata);
        default:
            return {};
    }
}

std::optional<EnergyMeasurement> ReadEnergyMeasurement(const QByteArray& answer, int channel) {
    const int begin = channel * kEnergyMeasurementSize;
    if (channel < 0 || answer.size() - begin < kEnergyMeasurementSize) {
        return std::nullopt;
    }
    return EnergyMeasurement{NumberAt<quint64>(answer, begin), NumberAt<quint64>(answer, begin + 8)};
}

std::optional<double> WattsBetween(const EnergyMeasurement& earlier, const EnergyMeasurement& later) {
    if (later.time <= earlier.time || later.picowattHours < earlier.picowattHours) {
        return std::nullopt;
    }
    return kWattsOfRatio * static_cast<double>(later.picowattHours - earlier.picowattHours) /
           static_cast<double>(later.time - earlier.time);
}

}  // namespace kivo
