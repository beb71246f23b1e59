#include <QDir>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <utility>

#include "telemetry/small_file.h"
#include "telemetry/sysfs_sources.h"

namespace kivo {
namespace {

constexpr double kMicrojoulesPerJoule = 1e6;
// Two files of one counter are read one after the other. Counters of two dies are as close by chance only,
// and not twice in a row.
constexpr qint64 kMirroredWithin = 1000000;

// The number behind a prefix; nothing where there is none.
std::optional<int> NumberBehind(const QByteArray& name, const char* prefix) {
    if (!name.startsWith(prefix)) {
        return std::nullopt;
    }
    const QByteArray digits = name.mid(int(std::strlen(prefix)));
    bool isNumber = std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    const int number = isNumber ? digits.toInt(&isNumber) : 0;
    return isNumber ? std::make_optional(number) : std::nullopt;
}

// Gathers the files of the lowest number.
class LowestNumber {
public:
    void Add(std::optional<int> number, const QString& file) {
        if (!number || *number > m_lowest) {
            return;
        }
        if (*number < m_lowest) {
            m_files.clear();
            m_lowest = *number;
        }
        m_files.append(file);
    }
    const QStringList& Files() const { return m_files; }

private:
    int m_lowest = std::numeric_limits<int>::max();
    QStringList m_files;
};

QStringList PackageFiles(const QString& powercap, const QString& prefix) {
    LowestNumber lowest;
    const QStringList zones = NumberedFolders(powercap, prefix, NumberBase::Hexadecimal);
    for (const QString& zone : zones) {
        const auto name = ReadSmallFile(zone + QLatin1String("/name"));
        lowest.Add(PackageNumber(name.value_or(QByteArray())), zone + QLatin1String("/energy_uj"));
    }
    return lowest.Files();
}

bool AreClose(qint64 one, qint64 other) {
    return std::llabs(one - other) <= kMirroredWithin;
}

}  // namespace

std::optional<int> PackageNumber(const QByteArray& name) {
    const int die = name.indexOf("-die-");
    return NumberBehind(die < 0 ? name : name.left(die), "package-");
}

Reading EnergyMeter::Sample(const SampleMoment& moment) {
    const QStringList& files = m_search.Files(moment.now);
    if (m_files != files) {
        m_files = files;
        m_counters.clear();
        for (const QString& file : files) {
            m_counters.push_back({file});
        }
    }
    if (m_counters.empty()) {
        return Reading::Without(ReadingGap::NoSource);
    }
    const auto passed = m_interval.Note(moment);
    const auto gap = ReadCounters();
    if (gap == ReadingGap::NoSource) {
        m_search.Lose();
        m_files.clear();
        m_counters.clear();
        return Reading::Without(ReadingGap::NoSource);
    }
    if (gap) {
        return Reading::Without(*gap, m_id);
    }
    const auto microjoules = Microjoules();
    if (!microjoules || !passed) {
        return Reading::Without(ReadingGap::NotRead, m_id);
    }
    const double seconds = std::chrono::duration<double>(*passed).count();
    return Checked(Quantity::Power, *microjoules / kMicrojoulesPerJoule / seconds, m_id);
}

// What is wrong with the last one that cannot be read.
std::optional<ReadingGap> EnergyMeter::ReadCounters() {
    std::optional<ReadingGap> gap;
    for (Counter& counter : m_counters) {
        const auto line = ReadSmallFile(counter.file);
        const int error = line ? 0 : errno;
        const auto number = line ? WholeNumber(*line) : std::nullopt;
        counter.last = std::exchange(counter.now, number && *number >= 0 ? number : std::nullopt);
        if (!counter.now) {
            gap = GapOfError(error);
            if (gap != ReadingGap::NoSource) {
                TellOnce(counter.file, error);
            }
        }
    }
    return gap;
}

void EnergyMeter::TellOnce(const QString& file, int error) {
    if (!std::exchange(m_hasTold, true)) {
        const QString reason = error == 0 ? QStringLiteral("it is no number.") : qt_error_string(error);
        qWarning("The energy counter cannot be read. %s: %s", qUtf8Printable(file), qUtf8Printable(reason));
    }
}

std::optional<double> EnergyMeter::Microjoules() const {
    double sum = 0.0;
    for (auto counter = m_counters.begin(); counter != m_counters.end(); ++counter) {
        if (!counter->last || *counter->now < *counter->last) {
            return std::nullopt;
        }
        const bool isMirror = std::any_of(m_counters.begin(), counter, [&](const Counter& former) {
            return AreClose(*former.now, *counter->now) && AreClose(*former.last, *counter->last);
        });
        sum += isMirror ? 0.0 : double(*counter->now) - double(*counter->last);
    }
    return sum;
}

QStringList FindPowerCapFiles(const QString& powercap) {
    const QStringList files = PackageFiles(powercap, QStringLiteral("intel-rapl:"));
    return files.isEmpty() ? PackageFiles(powercap, QStringLiteral("intel-rapl-mmio:")) : files;
}

QStringList FindSocketEnergyFiles(const QString& hwmon) {
    LowestNumber lowest;
    const QStringList folders = NumberedFolders(hwmon, QStringLiteral("hwmon"));
    for (const QString& folder : folders) {
        const auto driver = ReadSmallFile(folder + QLatin1String("/name"));
        if (driver != QByteArray("zenergy") && driver != QByteArray("amd_energy")) {
            continue;
        }
        const QString suffix = QStringLiteral("_label");
        const QStringList labels = QDir(folder).entryList({QStringLiteral("energy*_label")}, QDir::Files);
        for (const QString& label : labels) {
            const QString path = folder + QLatin1Char('/') + label;
            lowest.Add(NumberBehind(ReadSmallFile(path).value_or(QByteArray()), "Esocket"),
                       path.left(path.size() - suffix.size()) + QLatin1String("_input"));
        }
    }
    // A socket of two drivers is one socket.
    return lowest.Files().mid(0, 1);
}

}  // namespace kivo
