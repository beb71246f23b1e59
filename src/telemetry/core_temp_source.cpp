#include "telemetry/core_temp_source.h"

#include <utility>

#include "telemetry/core_temp_memory.h"

namespace kivo {
namespace {

constexpr std::chrono::seconds kSilence{10};

SensorReadings Without(ReadingGap gap) {
    SensorReadings readings;
    readings[Quantity::Power] = Reading::Without(ReadingGap::NoSource, SourceId::CoreTemp);
    readings[Quantity::Temperature] = Reading::Without(gap, SourceId::CoreTemp);
    readings[Quantity::FanSpeed] = Reading::Without(ReadingGap::NoSource, SourceId::CoreTemp);
    return readings;
}

}  // namespace

CoreTempSource::CoreTempSource(CoreTempCopier copy) : m_copy(std::move(copy)) {}

SensorReadings CoreTempSource::Read(const SampleMoment& moment) {
    const std::optional<CoreTempCopy> copy = m_copy();
    if (!copy) {
        // One that was there has ended; of any other nothing is known.
        return Without(m_copiedAt ? ReadingGap::NotRunning : ReadingGap::NoSource);
    }
    if (!copy->isBusy) {
        m_last = ReadCoreTempMemory(copy->bytes);
        m_copiedAt = moment.now;
        return m_last;
    }
    if (!m_copiedAt) {
        return Without(ReadingGap::NotRead);
    }
    return moment.now - *m_copiedAt < kSilence ? m_last : Without(ReadingGap::Silent);
}

}  // namespace kivo
