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

constexpr std::array<Quantity, kQuantityCount> kQuantities{Quantity::Power, Quantity::Temperature,
                                                           Quantity::FanSpeed};

// Power of a shorter while says little: counters are renewed about every millisecond.
constexpr std::chrono::milliseconds kShortestInterval{500};
// The kernel makes up a long file for it.
constexpr std::chrono::seconds kBetweenLoads{30};

constexpr int kFirstPackage = 0;
constexpr int kPackageMeter = 1;

// Deliberate: nothing asks whether a call succeeded. The temperature of a failed one is 0, its power what the
// call before left behind.
class LibraryMeter {
public:
    explicit LibraryMeter(EnergyLibrary::Parts parts) : m_library(std::move(parts)) {}

    bool Load() { return m_isLoaded = m_library.Load(); }
    bool IsLoaded() const { return m_isLoaded; }
    QString ErrorString() const { return m_library.errorString; }

    void ReadSample() {
        m_library.ReadSample();
        m_hasTwoSamples = std::exchange(m_hasSample, true);
    }

    // Asks for the numbers between the last two samples.
    void ReadNumbers() {
        m_temperature = 0;
        m_library.GetTemperature(kFirstPackage, &m_temperature);
        int count = 0;
        m_library.GetPowerData(kFirstPackage, kPackageMeter, m_power.data(), &count);
    }
    bool HasNumbers() const { return m_hasTwoSamples; }
    int Temperature() const { return m_temperature; }
    double Power() const { return m_power[0]; }

    Reading Says(Quantity quantity) const {
        if (!m_isLoaded || quantity == Quantity::FanSpeed) {
            return Reading::Without(ReadingGap::NoSource);
        }
        if (!m_hasTwoSamples) {
            return Reading::Without(ReadingGap::NotRead, SourceId::EnergyLibrary);
        }
        const double value = quantity == Quantity::Power ? m_power[0] : m_temperature;
        return Checked(quantity, value, SourceId::EnergyLibrary);
    }

private:
    EnergyLibrary m_library;
    bool m_isLoaded = false;
    bool m_hasSample = false;
    bool m_hasTwoSamples = false;
    int m_temperature = 0;
    std::array<double, 3> m_power{};
};

std::function<int()> CounterLoad() {
    auto sampler = std::make_shared<CpuUsageSampler>();
    sampler->SetMode(0);
    sampler->Sample();
    return [sampler] { return sampler->Sample(); };
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

    bool Load() override {
        if (m_library.Load()) {
            return true;
        }
        const SystemClocks clocks = ReadClocks();
        NoteLibrary();
        SampleSources(clocks);
        return std::any_of(m_choosers.begin(), m_choosers.end(),
                           [](const SourceChooser& chooser) { return chooser.IsAnybodyThere(); });
    }

    QString ErrorString() const override { return m_library.ErrorString(); }

    void ReadSample() override {
        const SystemClocks clocks = ReadClocks();
        // A library that is installed later is found beside the sources that speak meanwhile.
        if (!m_library.IsLoaded() && IsDue(SourceId::EnergyLibrary)) {
            m_library.Load();
            NoteLibrary();
        }
        if (m_library.IsLoaded()) {
            m_library.ReadSample();
        }
        SampleSources(clocks);
    }

    SensorReadings Readings() override {
        if (m_library.HasNumbers()) {
            m_library.ReadNumbers();
        }
        if (m_library.IsLoaded()) {
            NoteLibrary();
        }
        for (const Quantity quantity : kQuantities) {
            m_readings[quantity] = ChooserOf(quantity).Choose(m_now);
        }
        return m_readings;
    }

    int Temperature() override {
        return CountsLibrary(Quantity::Temperature)
                   ? m_library.Temperature()
                   : static_cast<int>(m_readings[Quantity::Temperature].value.value_or(0.0));
    }
    double Power() override {
        return CountsLibrary(Quantity::Power) ? m_library.Power()
                                              : m_readings[Quantity::Power].value.value_or(0.0);
    }

private:
    struct Asked {
        std::unique_ptr<SensorSource> source;
        bool hasSlept = false;  // the machine, since this one was read
    };

    SourceChooser& ChooserOf(Quantity quantity) { return m_choosers[static_cast<std::size_t>(quantity)]; }

    // The library's number is told as it is, unless somebody else speaks.
    bool CountsLibrary(Quantity quantity) {
        const SourceId speaker = ChooserOf(quantity).Speaker();
        return m_library.HasNumbers() && (speaker == SourceId::EnergyLibrary || speaker == SourceId::None);
    }

    SystemClocks ReadClocks() {
        const SystemClocks clocks = m_clocks();
        m_now = clocks.awake;
        return clocks;
    }

    bool IsDue(SourceId source) const {
        return std::any_of(m_choosers.begin(), m_choosers.end(),
                           [&](const SourceChooser& chooser) { return chooser.IsDue(source, m_now); });
    }

    void NoteLibrary() {
        for (const Quantity quantity : kQuantities) {
            ChooserOf(quantity).Note(SourceId::EnergyLibrary, m_library.Says(quantity), m_load, m_now);
        }
    }

    void SampleSources(const SystemClocks& clocks) {
        if (m_sampledAt && m_now - *m_sampledAt < kShortestInterval) {
            return;
        }
        m_sampledAt = m_now;
        ReadLoad();
        const bool hasSlept = m_sleepWatch.HasSlept(clocks.asleep);
        for (Asked& asked : m_sources) {
            asked.hasSlept = asked.hasSlept || hasSlept;
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

    LibraryMeter m_library;
    std::vector<Asked> m_sources;
    const std::function<SystemClocks()> m_clocks;
    const std::function<int()> m_cpuLoad;
    std::array<SourceChooser, kQuantityCount> m_choosers;
    SleepWatch m_sleepWatch;
    std::chrono::nanoseconds m_now{0};
    std::optional<std::chrono::nanoseconds> m_sampledAt;  // of the sources
    std::optional<std::chrono::nanoseconds> m_loadSince;
    std::optional<int> m_load;
    SensorReadings m_readings;
};

}  // namespace

std::unique_ptr<PackageSensors> MakeSensorsFrom(SensorParts parts) {
    return std::make_unique<ChosenSensors>(std::move(parts));
}

std::unique_ptr<PackageSensors> MakeLibrarySensors(const TerminationGate& allowTermination,
                                                   EnvironmentReader environment,
                                                   const QString& defaultFolder) {
    SensorParts parts;
    parts.library.defaultFolder = defaultFolder;
    parts.library.environment = std::move(environment);
    parts.library.allowTermination = allowTermination;
    return MakeSensorsFrom(std::move(parts));
}

std::unique_ptr<PackageSensors> MakePackageSensors(const TerminationGate& allowTermination) {
    SensorParts parts;
    parts.library.allowTermination = allowTermination;
    parts.sources = MakeSensorSources();
    return MakeSensorsFrom(std::move(parts));
}

}  // namespace kivo
