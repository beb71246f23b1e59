#include "telemetry/energy_meter_devices.h"

#include <utility>

#include "telemetry/energy_meter_names.h"

namespace kivo {
namespace {

Reading Without(ReadingGap gap) {
    return Reading::Without(gap, SourceId::EnergyMeterInterface);
}

std::vector<QString> ChannelsOf(EnergyMeterDevice& device) {
    using Question = EnergyMeterQuestion;
    const auto version =
        ReadEnergyMeterVersion(device.Ask(Question::Version, kEnergyMeterVersionSize).value_or(QByteArray()));
    const auto size = ReadEnergyMeterMetadataSize(
        device.Ask(Question::MetadataSize, kEnergyMeterMetadataSizeSize).value_or(QByteArray()));
    if (!version || !size || *size > kLongestEnergyMeterMetadata) {
        return {};
    }
    const auto metadata = device.Ask(Question::Metadata, static_cast<int>(*size));
    return ReadEnergyMeterChannels(*version, metadata.value_or(QByteArray()));
}

}  // namespace

EnergyMeterDevices::EnergyMeterDevices(EnergyMeterSystem system) : m_system(std::move(system)) {}

SensorReadings EnergyMeterDevices::Read(const SampleMoment& moment) {
    SensorReadings readings =
        SensorReadings::AllWithout(ReadingGap::NoSource, SourceId::EnergyMeterInterface);
    readings[Quantity::Power] = ReadPower(moment);
    return readings;
}

std::optional<EnergyMeterDevices::Meter> EnergyMeterDevices::OpenMeter(const QString& path) {
    EnergyMeterSystem::Opened opened = m_system.open(path);
    m_isDenied = m_isDenied || opened.isDenied;
    if (opened.device == nullptr) {
        return std::nullopt;
    }
    const std::vector<QString> channels = ChannelsOf(*opened.device);
    std::optional<Meter> meter;
    int number = 0;
    for (const QString& channel : channels) {
        const std::optional<int> rank = PackageMeterRank(channel);
        if (rank && (!meter || *rank < meter->rank)) {
            meter = Meter{nullptr, number, static_cast<int>(channels.size()), *rank};
        }
        ++number;
    }
    if (meter) {
        meter->device = std::move(opened.device);
    }
    return meter;
}

void EnergyMeterDevices::FindMeter() {
    m_isDenied = false;
    for (const QString& path : m_system.list()) {
        std::optional<Meter> meter = OpenMeter(path);
        if (meter && (!m_meter || meter->rank < m_meter->rank)) {
            m_meter = std::move(meter);
        }
    }
    m_interval.Begin();
    m_before.reset();
}

Reading EnergyMeterDevices::ReadPower(const SampleMoment& moment) {
    if (!m_meter && m_search.IsDue(moment)) {
        FindMeter();
    }
    if (!m_meter) {
        return Without(m_isDenied ? ReadingGap::NoRight : ReadingGap::NoSource);
    }
    const auto answer = m_meter->device->Ask(EnergyMeterQuestion::Measurement,
                                             m_meter->channelCount * kEnergyMeasurementSize);
    const auto measurement = ReadEnergyMeasurement(answer.value_or(QByteArray()), m_meter->channel);
    if (!measurement) {
        m_meter.reset();
        return Without(ReadingGap::NoSource);
    }
    m_last = ReadMeter(moment, *measurement);
    return m_last;
}

Reading EnergyMeterDevices::ReadMeter(const SampleMoment& moment, const EnergyMeasurement& measurement) {
    const bool isInterval = m_interval.Note(moment).has_value();
    const auto before = std::exchange(m_before, measurement);
    if (!before || !isInterval) {
        m_measuredAt = moment.now;
        return Without(ReadingGap::NotRead);
    }
    // The meter has not measured since.
    if (measurement.time == before->time) {
        Reading standing = m_last.gap == ReadingGap::NotRead ? Without(ReadingGap::Silent) : m_last;
        standing.isStanding = standing.value.has_value();
        return standing;
    }
    const std::chrono::nanoseconds measuredBefore = std::exchange(m_measuredAt, moment.now);
    const std::optional<double> watts = WattsBetween(*before, measurement);
    return watts && moment.now - measuredBefore <= kLongestInterval
               ? Checked(Quantity::Power, *watts, SourceId::EnergyMeterInterface)
               : Without(ReadingGap::NotRead);
}

}  // namespace kivo
