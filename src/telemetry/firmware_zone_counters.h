#pragma once

// The firmware's thermal zones from Windows' performance counters. Often the board's temperature rather than
// the processor's, and sometimes a constant.

#include <memory>
#include <vector>

#include "telemetry/counter_query.h"
#include "telemetry/sample_interval.h"
#include "telemetry/sensor_source.h"

namespace kivo {

// The zones of both counters in degrees Celsius, in their order: tenths of a kelvin where a zone tells them,
// else whole kelvins. A zone that tells neither, which is 0 kelvin, is left out.
std::vector<double> FirmwareZones(const std::vector<CounterValue>& tenthsOfKelvin,
                                  const std::vector<CounterValue>& kelvin);

// The paths of the two counters, in that order.
std::vector<QString> FirmwareZonePaths();

class FirmwareZoneCounters final : public SensorSource {
public:
    explicit FirmwareZoneCounters(CounterQueryFactory openQuery);

    SourceId Id() const override { return SourceId::FirmwareZone; }
    // The temperature is the hottest zone's.
    SensorReadings Read(const SampleMoment& moment) override;

private:
    Reading ReadTemperature(const SampleMoment& moment);

    const CounterQueryFactory m_openQuery;
    std::unique_ptr<CounterQuery> m_query;
    SeldomSearch m_search;
};

}  // namespace kivo
