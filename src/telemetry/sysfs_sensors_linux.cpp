#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

#include "telemetry/small_file.h"
#include "telemetry/sysfs_sensors.h"

namespace kivo {
namespace {

// A module that is loaded later, or loaded again under another number, is found after this many samples.
constexpr int kSamplesBetweenSearches = 10;

constexpr double kMicrojoulesPerJoule = 1e6;
constexpr qint64 kThousandthsPerDegree = 1000;

std::chrono::nanoseconds SteadyNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

// The number of "package-0" or "package-0-die-1"; nothing for what is no package, as "psys" or "dram".
std::optional<int> PackageNumber(const QByteArray& name) {
    constexpr char kPrefix[] = "package-";
    if (!name.startsWith(kPrefix)) {
        return std::nullopt;
    }
    QByteArray number = name.mid(int(std::strlen(kPrefix)));
    const int die = number.indexOf("-die-");
    if (die >= 0) {
        number.truncate(die);
    }
    bool isNumber = false;
    const int package = number.toInt(&isNumber);
    return isNumber ? std::make_optional(package) : std::nullopt;
}

// The input of a hwmon folder that carries this label.
QString InputWithLabel(const QString& folder, const char* label) {
    constexpr int kMostInputs = 16;  // package and dies come first, cores after them
    for (int i = 1; i <= kMostInputs; ++i) {
        const QString input = QStringLiteral("%1/temp%2_").arg(folder).arg(i);
        if (ReadSmallFile(input + QLatin1String("label")) == QByteArray(label)) {
            return input + QLatin1String("input");
        }
    }
    return {};
}

QStringList AllInputs(const QString& folder) {
    QStringList inputs;
    const QStringList names = QDir(folder).entryList({QStringLiteral("temp*_input")}, QDir::Files);
    for (const QString& name : names) {
        inputs.append(folder + QLatin1Char('/') + name);
    }
    return inputs;
}

// The drivers that know the package's temperature, and the labels it may have there, the best one first.
// Tctl may be shifted for the fan control's sake, Tdie never is. Without such a label there are the cores
// alone, or a single sensor.
struct Driver {
    const char* name;
    std::array<const char*, 2> labels;
};
constexpr std::array<Driver, 3> kDrivers{{
    {"coretemp", {"Package id 0", "Physical id 0"}},
    {"k10temp", {"Tdie", "Tctl"}},
    {"zenpower", {"Tdie", "Tctl"}},
}};

}  // namespace

EnergyCounter::EnergyCounter(const QString& folder)
    : m_file(folder + QLatin1String("/energy_uj")),
      m_range(ReadNumberFile(folder + QLatin1String("/max_energy_range_uj")).value_or(0)) {}

std::optional<double> EnergyCounter::Sample() {
    const auto line = ReadSmallFile(m_file);
    m_error = line ? 0 : errno;
    const auto now = line ? WholeNumber(*line) : std::nullopt;
    const auto last = std::exchange(m_last, now);
    if (!now || !last) {
        return std::nullopt;
    }
    if (*now >= *last) {
        return double(*now) - double(*last);
    }
    // Begun anew. A counter that was beyond its range was not read right.
    if (*last > m_range) {
        return std::nullopt;
    }
    return double(m_range) - double(*last) + double(*now);
}

std::vector<EnergyCounter> FindEnergyCounters(const QString& powercap) {
    std::vector<EnergyCounter> counters;
    int package = std::numeric_limits<int>::max();
    const QStringList folders = NumberedFolders(powercap, QStringLiteral("intel-rapl:"));
    for (const QString& folder : folders) {
        const auto number =
            PackageNumber(ReadSmallFile(folder + QLatin1String("/name")).value_or(QByteArray()));
        if (!number || *number > package) {
            continue;
        }
        if (*number < package) {
            counters.clear();
            package = *number;
        }
        counters.emplace_back(folder);
    }
    return counters;
}

QStringList FindTemperatureFiles(const QString& hwmon) {
    QStringList withoutLabel;
    const QStringList folders = NumberedFolders(hwmon, QStringLiteral("hwmon"));
    for (const QString& folder : folders) {
        const QByteArray name = ReadSmallFile(folder + QLatin1String("/name")).value_or(QByteArray());
        const auto* const driver = std::find_if(kDrivers.begin(), kDrivers.end(),
                                                [&name](const Driver& known) { return name == known.name; });
        if (driver == kDrivers.end()) {
            continue;
        }
        for (const char* label : driver->labels) {
            QString input = InputWithLabel(folder, label);
            if (!input.isEmpty()) {
                return {input};
            }
        }
        if (withoutLabel.isEmpty()) {
            withoutLabel = AllInputs(folder);
        }
    }
    return withoutLabel;
}

SysfsSensors::SysfsSensors(SysfsPlaces places, Clock clock)
    : m_places(std::move(places)), m_clock(clock ? std::move(clock) : Clock(SteadyNow)) {}

bool SysfsSensors::Load() {
    FindWhatIsMissing();
    const bool isCounterReadable =
        std::any_of(m_counters.begin(), m_counters.end(),
                    [](const EnergyCounter& counter) { return ReadNumberFile(counter.File()).has_value(); });
    if (isCounterReadable || !m_temperatureFiles.isEmpty()) {
        return true;
    }
    m_error = QStringLiteral("No energy counter that can be read in %1, no temperature sensor in %2.")
                  .arg(m_places.powercap, m_places.hwmon);
    return false;
}

void SysfsSensors::FindWhatIsMissing() {
    if (m_counters.empty()) {
        m_counters = FindEnergyCounters(m_places.powercap);
    }
    if (m_temperatureFiles.isEmpty()) {
        m_temperatureFiles = FindTemperatureFiles(m_places.hwmon);
    }
}

void SysfsSensors::ReadSample() {
    if (++m_samples % kSamplesBetweenSearches == 0) {
        FindWhatIsMissing();
    }
    SampleEnergy();
    SampleTemperature();
}

void SysfsSensors::SampleEnergy() {
    const auto now = m_clock();
    const std::chrono::duration<double> passed = now - std::exchange(m_sampledAt, now);
    m_power = 0.0;
    if (m_counters.empty()) {
        return;
    }
    double microjoules = 0.0;
    bool isWhole = passed.count() > 0.0;
    bool isGone = false;
    for (EnergyCounter& counter : m_counters) {
        const auto used = counter.Sample();
        isGone = isGone || counter.Error() == ENOENT;
        if (!counter.IsReadable() && !std::exchange(m_toldUnreadable, true)) {
            const QString reason =
                counter.Error() != 0 ? qt_error_string(counter.Error()) : QStringLiteral("it is no number.");
            qWarning("The processor's power is not known. %s: %s", qUtf8Printable(counter.File()),
                     qUtf8Printable(reason));
        }
        microjoules += used.value_or(0.0);
        isWhole = isWhole && used.has_value();
    }
    if (isWhole) {
        m_power = microjoules / kMicrojoulesPerJoule / passed.count();
    }
    if (isGone) {
        m_counters.clear();
    }
}

void SysfsSensors::SampleTemperature() {
    m_temperature = 0;
    std::optional<qint64> hottest;
    bool isGone = !m_temperatureFiles.isEmpty();
    for (const QString& file : qAsConst(m_temperatureFiles)) {
        const auto thousandths = ReadNumberFile(file);
        if (thousandths) {
            hottest = std::max(hottest.value_or(*thousandths), *thousandths);
        }
        isGone = isGone && !thousandths && !QFile::exists(file);
    }
    if (hottest) {
        const qint64 degrees = *hottest / kThousandthsPerDegree;
        m_temperature = degrees == int(degrees) ? int(degrees) : 0;
    }
    if (isGone) {
        m_temperatureFiles.clear();
    }
}

}  // namespace kivo
