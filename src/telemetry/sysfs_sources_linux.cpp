#include "telemetry/sysfs_sources.h"

#include <cerrno>

#include "telemetry/small_file.h"

namespace kivo {
namespace {

constexpr std::chrono::seconds kBetweenSearches{10};
constexpr std::chrono::seconds kBetweenLooks{60};
constexpr double kThousandths = 1000.0;

// Power, by counters that are found as told.
class EnergySource final : public SensorSource {
public:
    EnergySource(SourceId id, FileSearch search) : m_id(id), m_meter(id, std::move(search)) {}

    SourceId Id() const override { return m_id; }
    SensorReadings Read(const SampleMoment& moment) override {
        SensorReadings readings = SensorReadings::AllWithout(ReadingGap::NoSource);
        readings[Quantity::Power] = m_meter.Sample(moment);
        return readings;
    }

private:
    const SourceId m_id;
    EnergyMeter m_meter;
};

// Temperatures, of files that are found as told.
class TemperatureSource final : public SensorSource {
public:
    TemperatureSource(SourceId id, FileSearch search)
        : m_id(id), m_temperature(id, Quantity::Temperature, kThousandths, std::move(search)) {}

    SourceId Id() const override { return m_id; }
    SensorReadings Read(const SampleMoment& moment) override {
        SensorReadings readings = SensorReadings::AllWithout(ReadingGap::NoSource);
        readings[Quantity::Temperature] = m_temperature.Read(moment);
        return readings;
    }

private:
    const SourceId m_id;
    FileValue m_temperature;
};

class HardwareMonitor final : public SensorSource {
public:
    explicit HardwareMonitor(const QString& hwmon)
        : m_temperature(SourceId::HardwareMonitor, Quantity::Temperature, kThousandths,
                        {hwmon, FindTemperatureFiles}),
          m_fan(SourceId::HardwareMonitor, Quantity::FanSpeed, 1.0, {hwmon, FindFanFiles}) {}

    SourceId Id() const override { return SourceId::HardwareMonitor; }
    SensorReadings Read(const SampleMoment& moment) override {
        SensorReadings readings = SensorReadings::AllWithout(ReadingGap::NoSource);
        readings[Quantity::Temperature] = m_temperature.Read(moment);
        readings[Quantity::FanSpeed] = m_fan.Read(moment);
        return readings;
    }

private:
    FileValue m_temperature;
    FileValue m_fan;
};

}  // namespace

const QStringList& FileSearch::Files(std::chrono::nanoseconds now) {
    const auto pause = m_files.isEmpty() ? kBetweenSearches : kBetweenLooks;
    if (m_searchedAt && now - *m_searchedAt < pause) {
        return m_files;
    }
    m_searchedAt = now;
    const QByteArray before = std::exchange(m_entries, FolderEntries(m_folder));
    if (m_files.isEmpty() || m_entries != before) {
        m_files = m_find(m_folder);
    }
    return m_files;
}

void FileSearch::Lose() {
    m_files.clear();
    m_searchedAt.reset();
}

ReadingGap GapOfError(int error) {
    switch (error) {
        case 0:
            return ReadingGap::Unbelievable;
        case ENOENT:
        case ENODEV:
            return ReadingGap::NoSource;
        case EACCES:
        case EPERM:
            return ReadingGap::NoRight;
        default:
            return ReadingGap::Silent;
    }
}

// A core that is switched off loses its file; the sensor is gone when all files are.
Reading FileValue::Read(const SampleMoment& moment) {
    const QStringList& files = m_search.Files(moment.now);
    Reading highest = Reading::Without(ReadingGap::NoSource);
    for (const QString& file : files) {
        const Reading reading = ReadFile(file);
        if (reading.value ? !highest.value || *reading.value > *highest.value
                          : highest.gap == ReadingGap::NoSource) {
            highest = reading;
        }
    }
    if (highest.gap == ReadingGap::NoSource && !files.isEmpty()) {
        m_search.Lose();
    }
    return highest;
}

Reading FileValue::ReadFile(const QString& file) const {
    if (const auto line = ReadSmallFile(file)) {
        return ValueOf(*line);
    }
    const ReadingGap gap = GapOfError(errno);
    return Reading::Without(gap, gap == ReadingGap::NoSource ? SourceId::None : m_id);
}

Reading FileValue::ValueOf(const QByteArray& line) const {
    const auto number = WholeNumber(line);
    return number ? Checked(m_quantity, double(*number) / m_scale, m_id)
                  : Reading::Without(ReadingGap::Unbelievable, m_id);
}

SensorSources MakeSysfsSources(const SysfsPlaces& places) {
    SensorSources sources;
    sources.push_back(
        std::make_unique<EnergySource>(SourceId::PowerCap, FileSearch(places.powercap, FindPowerCapFiles)));
    sources.push_back(std::make_unique<EnergySource>(SourceId::EnergyDriver,
                                                     FileSearch(places.hwmon, FindSocketEnergyFiles)));
    sources.push_back(std::make_unique<HardwareMonitor>(places.hwmon));
    sources.push_back(std::make_unique<TemperatureSource>(
        SourceId::ProcessorZone, FileSearch(places.thermal, FindProcessorZoneFiles)));
    sources.push_back(std::make_unique<TemperatureSource>(
        SourceId::BoardMonitor, FileSearch(places.hwmon, FindBoardTemperatureFiles)));
    return sources;
}

}  // namespace kivo
