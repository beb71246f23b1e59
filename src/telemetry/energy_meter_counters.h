#pragma once

// The package's power from Windows' performance counters "Energy Meter": on Windows 11 the processor's own
// counters, without a driver or a right of ours.

#include <memory>

#include "telemetry/counter_query.h"
#include "telemetry/sample_interval.h"
#include "telemetry/sensor_source.h"

namespace kivo {

// The package's meter among the counter's instances, in milliwatts there. NoSource where there is none.
Reading ReadEnergyMeterCounters(const std::vector<CounterValue>& milliwatts);

class EnergyMeterCounters final : public SensorSource {
public:
    explicit EnergyMeterCounters(CounterQueryFactory openQuery);

    SourceId Id() const override { return SourceId::EnergyMeterCounters; }
    SensorReadings Read(const SampleMoment& moment) override;

private:
    Reading ReadPower(const SampleMoment& moment);
    void Open();

    const CounterQueryFactory m_openQuery;
    std::unique_ptr<CounterQuery> m_query;
    SampleInterval m_interval;
    SeldomSearch m_search;
};

}  // namespace kivo
