#include "telemetry/hwinfo_source.h"

#include <utility>

namespace kivo {
namespace {

constexpr std::chrono::seconds kBetweenLooks{4};

}  // namespace

HwInfoSource::HwInfoSource(HwInfoSystem system) : m_system(std::move(system)) {}

SensorReadings HwInfoSource::Read(const SampleMoment& moment) {
    const std::vector<NamedText> values = m_system.values();
    const bool isRunning = IsRunning(moment);
    if (isRunning && !values.empty()) {
        return ReadHwInfoValues(values);
    }
    // Either alone says that it is there, and what a person has to do.
    SensorReadings readings;
    for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
        readings[quantity] = Reading::Without(
            isRunning || !values.empty() ? ReadingGap::NotRunning : ReadingGap::NoSource, SourceId::HwInfo);
    }
    return readings;
}

bool HwInfoSource::IsRunning(const SampleMoment& moment) {
    if (!m_lookedAt || moment.now - *m_lookedAt >= kBetweenLooks) {
        m_lookedAt = moment.now;
        m_isRunning = m_system.isRunning();
    }
    return m_isRunning;
}

}  // namespace kivo
