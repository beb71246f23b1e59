#include "telemetry/package_sensors.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "telemetry/cpu_usage_sampler.h"
#include "telemetry/sleep_watch.h"
#include "telemetry/source_chooser.h"

namespace kivo {
namespace {

// The kernel makes up a long file for it.
constexpr std::chrono::seconds kBetweenLoads{30};

std::function<int()> CounterLoad() {
    auto sampler = std::make_shared<CpuUsageSampler>();
    sampler->SetMode(0);
    sampler->Sample();
    return [sampler] { return sampler->Sample(); };
}

// The value of a reading as it is told: as a number, 0 where there is none.
double NumberOf(const Reading& reading) {
    return reading.value.value_or(0.0);
}

class ChosenSensors final : public PackageSensors {
public:
    explicit ChosenSensors(SensorParts parts)
        : m_library(std::move(parts.library)),
          m_clocks(std::move(parts.clocks)),
          m_cpuLoad(parts.cpuLoad ? std::move(parts.cpuLoad) : CounterLoad()),
          m_choosers{SourceChooser(parts.orders[0]), SourceChooser(parts.orders[1]),
                     SourceChooser(parts.orders[2])} {
        for (auto& source : parts.sources) {
            m_sources.push_back({std::move(source), false});
        }
    }

    bool Load() override { return m_library.Load(); }
    QString ErrorString() const override { return m_library.ErrorString(); }

    void ReadSample() override {
        const SystemClocks clocks = m_clocks();
        const SampleMoment moment{clocks.awake, m_sleepWatch.HasSlept(clocks.asleep)};
        m_now = moment.now;
        ReadLoad();
        SampleLibrary(moment);
        SampleSources(moment);
    }

    SensorReadings Readings() override {
        for (const Quantity quantity : kQuantities) {
            m_readings[quantity] = ChooserOf(quantity).Choose(m_now);
        }
        return m_readings;
    }

    std::optional<PackageNumbers> Numbers() override {
        const Reading& power = m_readings[Quantity::Power];
        const Reading& temperature = m_readings[Quantity::Temperature];
        if (!m_numbers && !power.value && !temperature.value) {
            return std::nullopt;
        }
        PackageNumbers numbers{NumberOf(power), static_cast<int>(NumberOf(temperature))};
        if (CountsLibrary(Quantity::Power)) {
            numbers.watts = m_numbers->watts;
        }
        if (CountsLibrary(Quantity::Temperature)) {
            numbers.degreesCelsius = m_numbers->degreesCelsius;
        }
        return numbers;
    }

private:
    struct Asked {
        std::unique_ptr<SensorSource> source;
        bool hasSlept = false;  // the machine, since this one was read
    };

    SourceChooser& ChooserOf(Quantity quantity) { return m_choosers[static_cast<std::size_t>(quantity)]; }

    // The library's number is told as it is, unless another source speaks.
    bool CountsLibrary(Quantity quantity) {
        const SourceId speaker = ChooserOf(quantity).Speaker();
        return m_numbers && (speaker == SourceId::EnergyLibrary || speaker == SourceId::None);
    }

    void SampleLibrary(const SampleMoment& moment) {
        const bool hasAnswered = m_library.ReadSample();
        m_numbers = hasAnswered ? m_library.Numbers() : std::nullopt;
        Reading power = Reading::Without(ReadingGap::NoSource);
        Reading temperature = power;
        if (m_numbers) {
            power = Checked(Quantity::Power, m_numbers->watts, SourceId::EnergyLibrary);
            temperature = Checked(Quantity::Temperature, m_numbers->degreesCelsius, SourceId::EnergyLibrary);
        } else if (m_library.IsLoaded()) {
            power = Reading::Without(hasAnswered ? ReadingGap::NotRead : ReadingGap::Silent,
                                     SourceId::EnergyLibrary);
            temperature = power;
        }
        // The average of a sleep is no power. One sample of an answering library ends it.
        m_hasSlept = m_hasSlept || moment.hasSlept;
        if (m_numbers && std::exchange(m_hasSlept, false)) {
            power = Reading::Without(ReadingGap::NotRead, SourceId::EnergyLibrary);
        }
        ChooserOf(Quantity::Power).Note(SourceId::EnergyLibrary, power, m_load, m_now);
        ChooserOf(Quantity::Temperature).Note(SourceId::EnergyLibrary, temperature, m_load, m_now);
    }

    bool IsDue(SourceId source) const {
        return std::any_of(m_choosers.begin(), m_choosers.end(),
                           [&](const SourceChooser& chooser) { return chooser.IsDue(source, m_now); });
    }

    void SampleSources(const SampleMoment& moment) {
        for (Asked& asked : m_sources) {
            asked.hasSlept = asked.hasSlept || moment.hasSlept;
            if (!IsDue(asked.source->Id())) {
                continue;
            }
            const SensorReadings said = asked.source->Read({m_now, std::exchange(asked.hasSlept, false)});
            for (const Quantity quantity : kQuantities) {
                ChooserOf(quantity).Note(asked.source->Id(), said[quantity], m_load, m_now);
            }
        }
    }

    void ReadLoad() {
        if (!m_loadSince) {
            m_loadSince = m_now;
        } else if (m_now - *m_loadSince >= kBetweenLoads) {
            m_loadSince = m_now;
            m_load = m_cpuLoad();
        }
    }

    EnergyLibraryThread m_library;
    std::vector<Asked> m_sources;
    const std::function<SystemClocks()> m_clocks;
    const std::function<int()> m_cpuLoad;
    std::array<SourceChooser, kQuantityCount> m_choosers;
    SleepWatch m_sleepWatch;
    std::chrono::nanoseconds m_now{0};
    std::optional<std::chrono::nanoseconds> m_loadSince;
    std::optional<int> m_load;
    std::optional<PackageNumbers> m_numbers;  // the library's of the last sample
    bool m_hasSlept = false;                  // the machine, since the library's last numbers
    SensorReadings m_readings;
};

}  // namespace

std::unique_ptr<PackageSensors> MakeSensorsFrom(SensorParts parts) {
    return std::make_unique<ChosenSensors>(std::move(parts));
}

std::unique_ptr<PackageSensors> MakeLibrarySensors(EnergyLibrary::Parts library) {
    SensorParts parts;
    parts.library = std::move(library);
    return MakeSensorsFrom(std::move(parts));
}

std::unique_ptr<PackageSensors> MakePackageSensors() {
    SensorParts parts;
    parts.sources = MakeSensorSources();
    return MakeSensorsFrom(std::move(parts));
}

}  // namespace kivo
