#include "telemetry/core_temp_source.h"

#include <utility>

#include "telemetry/core_temp_memory.h"

namespace kivo {
namespace {

SensorReadings Without(ReadingGap gap) {
    SensorReadings readings = SensorReadings::AllWithout(ReadingGap::NoSource, SourceId::CoreTemp);
    readings[Quantity::Temperature] = Reading::Without(gap, SourceId::CoreTemp);
    return readings;
}

}  // namespace

CoreTempSource::CoreTempSource(CoreTempCopier copy) : m_copy(std::move(copy)) {}

SensorReadings CoreTempSource::Read(const SampleMoment& /*moment*/) {
    const std::optional<CoreTempCopy> copy = m_copy();
    if (!copy) {
        // One that was there has ended; of any other nothing is known.
        return Without(m_last ? ReadingGap::NotRunning : ReadingGap::NoSource);
    }
    if (!copy->isBusy) {
        m_last = ReadCoreTempMemory(copy->bytes);
        return *m_last;
    }
    if (!m_last) {
        return Without(ReadingGap::NotRead);
    }
    m_last->LetStand();
    return *m_last;
}

}  // namespace kivo
