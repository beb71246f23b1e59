#include "telemetry/sysfs_sources.h"

#include <cerrno>

#include "telemetry/small_file.h"

namespace kivo {
namespace {

constexpr std::chrono::seconds kBetweenSearches{10};
constexpr double kThousandths = 1000.0;

SensorReadings NothingMeasured() {
    SensorReadings readings;
    for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
        readings[quantity] = Reading::Without(ReadingGap::NoSource);
    }
    return readings;
}

// Power, by counters that are found as told.
class EnergySource final : public SensorSource {
public:
    EnergySource(SourceId id, FileSearch::Find find) : m_id(id), m_meter(id, std::move(find)) {}

    SourceId Id() const override { return m_id; }
    SensorReadings Read(const SampleMoment& moment) override {
        SensorReadings readings = NothingMeasured();
        readings[Quantity::Power] = m_meter.Sample(moment);
        return readings;
    }

private:
    const SourceId m_id;
    EnergyMeter m_meter;
};

class HardwareMonitor final : public SensorSource {
public:
    explicit HardwareMonitor(const QString& hwmon)
        : m_temperature(SourceId::HardwareMonitor, Quantity::Temperature, kThousandths,
                        [hwmon] { return FindTemperatureFiles(hwmon); }),
          m_fan(SourceId::HardwareMonitor, Quantity::FanSpeed, 1.0, [hwmon] { return FindFanFiles(hwmon); }) {
    }

    SourceId Id() const override { return SourceId::HardwareMonitor; }
    SensorReadings Read(const SampleMoment& moment) override {
        SensorReadings readings = NothingMeasured();
        readings[Quantity::Temperature] = m_temperature.Read(moment);
        readings[Quantity::FanSpeed] = m_fan.Read(moment);
        return readings;
    }

private:
    FileValue m_temperature;
    FileValue m_fan;
};

class ProcessorZone final : public SensorSource {
public:
    explicit ProcessorZone(const QString& thermal)
        : m_zones(SourceId::ProcessorZone, Quantity::Temperature, kThousandths,
                  [thermal] { return FindProcessorZoneFiles(thermal); }) {}

    SourceId Id() const override { return SourceId::ProcessorZone; }
    SensorReadings Read(const SampleMoment& moment) override {
        SensorReadings readings = NothingMeasured();
        readings[Quantity::Temperature] = m_zones.Read(moment);
        return readings;
    }

private:
    FileValue m_zones;
};

}  // namespace

const QStringList& FileSearch::Files(std::chrono::nanoseconds now) {
    if (m_files.isEmpty() && (!m_searchedAt || now - *m_searchedAt >= kBetweenSearches)) {
        m_searchedAt = now;
        m_files = m_find();
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
    sources.push_back(std::make_unique<EnergySource>(
        SourceId::PowerCap, [folder = places.powercap] { return FindPowerCapFiles(folder); }));
    sources.push_back(std::make_unique<EnergySource>(
        SourceId::EnergyDriver, [folder = places.hwmon] { return FindSocketEnergyFiles(folder); }));
    sources.push_back(std::make_unique<HardwareMonitor>(places.hwmon));
    sources.push_back(std::make_unique<ProcessorZone>(places.thermal));
    return sources;
}

}  // namespace kivo
