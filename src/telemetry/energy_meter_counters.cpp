#include "telemetry/energy_meter_counters.h"

#include <climits>
#include <optional>
#include <utility>

#include "telemetry/energy_meter_names.h"

namespace kivo {
namespace {

constexpr double kMilliwatts = 1000;
// Behind every meter that can be believed.
constexpr int kUnbelievableRank = 10000;

Reading Without(ReadingGap gap) {
    return Reading::Without(gap, SourceId::EnergyMeterCounters);
}

}  // namespace

Reading ReadEnergyMeterCounters(const std::vector<CounterValue>& milliwatts) {
    Reading reading = Without(ReadingGap::NoSource);
    int best = INT_MAX;
    for (const CounterValue& meter : milliwatts) {
        const std::optional<int> name = PackageMeterRank(meter.instance);
        if (!name) {
            continue;
        }
        const Reading told =
            Checked(Quantity::Power, meter.value / kMilliwatts, SourceId::EnergyMeterCounters);
        const int rank = told.value ? *name : *name + kUnbelievableRank;
        if (rank < best) {
            best = rank;
            reading = told;
        }
    }
    return reading;
}

EnergyMeterCounters::EnergyMeterCounters(CounterQueryFactory openQuery) : m_openQuery(std::move(openQuery)) {}

SensorReadings EnergyMeterCounters::Read(const SampleMoment& moment) {
    SensorReadings readings = SensorReadings::AllWithout(ReadingGap::NoSource, SourceId::EnergyMeterCounters);
    readings[Quantity::Power] = ReadPower(moment);
    return readings;
}

Reading EnergyMeterCounters::ReadPower(const SampleMoment& moment) {
    if (m_query == nullptr && m_search.IsDue(moment)) {
        Open();
    }
    if (m_query == nullptr) {
        return Without(ReadingGap::NoSource);
    }
    m_query->Collect();
    // Before two samples that belong together a meter tells 0, or the average of a sleep.
    if (!m_interval.Note(moment)) {
        return Without(ReadingGap::NotRead);
    }
    const Reading reading = ReadEnergyMeterCounters(m_query->Values(0));
    // A query keeps to the counters that were there when it was opened.
    if (reading.gap == ReadingGap::NoSource && m_search.IsDue(moment)) {
        Open();
    }
    return reading;
}

void EnergyMeterCounters::Open() {
    m_query = m_openQuery({QStringLiteral("\\Energy Meter(*)\\Power")});
    m_interval.Begin();
}

}  // namespace kivo
