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
    // Either alone says that it is there.
    const ReadingGap withoutProgram = values.empty() ? ReadingGap::NoSource : ReadingGap::NotRunning;
    return SensorReadings::AllWithout(isRunning ? ReadingGap::NotHandedOn : withoutProgram, SourceId::HwInfo);
}

bool HwInfoSource::IsRunning(const SampleMoment& moment) {
    if (!m_lookedAt || moment.now - *m_lookedAt >= kBetweenLooks) {
        m_lookedAt = moment.now;
        m_isRunning = m_system.isRunning();
    }
    return m_isRunning;
}

}  // namespace kivo
