#include "telemetry/firmware_zone_counters.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "telemetry/thermal_zone.h"

namespace kivo {
namespace {

constexpr double kTenths = 10;
constexpr double kMost = 100'000;  // no zone tells that, in either unit

Reading Without(ReadingGap gap) {
    return Reading::Without(gap, SourceId::FirmwareZone);
}

std::optional<double> ValueOf(const std::vector<CounterValue>& values, const QString& instance) {
    const auto found = std::find_if(values.begin(), values.end(), [&instance](const CounterValue& value) {
        return value.instance.compare(instance, Qt::CaseInsensitive) == 0;
    });
    // Systems that do not know the counter say 0.
    return found != values.end() && found->value > 0 && found->value < kMost
               ? std::optional<double>(found->value)
               : std::nullopt;
}

}  // namespace

std::vector<double> FirmwareZones(const std::vector<CounterValue>& tenthsOfKelvin,
                                  const std::vector<CounterValue>& kelvin) {
    std::vector<double> zones;
    // An older system has the second counter only.
    for (const CounterValue& zone : kelvin.empty() ? tenthsOfKelvin : kelvin) {
        if (const std::optional<double> tenths = ValueOf(tenthsOfKelvin, zone.instance)) {
            zones.push_back(CelsiusOfTenths(*tenths));
        } else if (const std::optional<double> whole = ValueOf(kelvin, zone.instance)) {
            zones.push_back(CelsiusOfTenths(*whole * kTenths));
        }
    }
    return zones;
}

std::vector<QString> FirmwareZonePaths() {
    return {QStringLiteral("\\Thermal Zone Information(*)\\High Precision Temperature"),
            QStringLiteral("\\Thermal Zone Information(*)\\Temperature")};
}

FirmwareZoneCounters::FirmwareZoneCounters(CounterQueryFactory openQuery)
    : m_openQuery(std::move(openQuery)) {}

SensorReadings FirmwareZoneCounters::Read(const SampleMoment& moment) {
    SensorReadings readings = SensorReadings::AllWithout(ReadingGap::NoSource, SourceId::FirmwareZone);
    readings[Quantity::Temperature] = ReadTemperature(moment);
    return readings;
}

Reading FirmwareZoneCounters::ReadTemperature(const SampleMoment& moment) {
    if (m_query == nullptr && m_search.IsDue(moment)) {
        m_query = m_openQuery(FirmwareZonePaths());
    }
    if (m_query == nullptr) {
        return Without(ReadingGap::NoSource);
    }
    m_query->Collect();
    const std::vector<double> zones = FirmwareZones(m_query->Values(0), m_query->Values(1));
    if (zones.empty()) {
        // A query keeps to the counters that were there when it was opened.
        if (m_search.IsDue(moment)) {
            m_query = m_openQuery(FirmwareZonePaths());
        }
        return Without(ReadingGap::NoSource);
    }
    std::optional<double> hottest;
    for (const double zone : zones) {
        if (IsBelievable(Quantity::Temperature, zone)) {
            hottest = std::max(hottest.value_or(zone), zone);
        }
    }
    return hottest ? Reading::Of(*hottest, SourceId::FirmwareZone) : Without(ReadingGap::Unbelievable);
}

}  // namespace kivo
