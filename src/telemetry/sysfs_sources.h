#pragma once

// What the Linux kernel tells of the processor in files: energy counters under powercap and hwmon,
// temperatures and fans under hwmon and thermal. The files are described in the kernel's
// Documentation/power/powercap, Documentation/hwmon and Documentation/driver-api/thermal. Folders are handed
// in, so that tests can make machines up. Lives on the thread that reads the sensors.

#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "telemetry/sample_interval.h"
#include "telemetry/sensor_source.h"

namespace kivo {

struct SysfsPlaces {
    QString powercap = QStringLiteral("/sys/class/powercap");
    QString hwmon = QStringLiteral("/sys/class/hwmon");
    QString thermal = QStringLiteral("/sys/class/thermal");
};

// All of them.
SensorSources MakeSysfsSources(const SysfsPlaces& places = {});

// Files that are searched for below a folder: where there are none every ten seconds, for a module may be
// loaded later, or again under another number; and where there are some, once a minute if other folders stand
// there than before, for what comes later may have better ones.
class FileSearch {
public:
    using Find = std::function<QStringList(const QString& folder)>;
    FileSearch(const QString& folder, Find find) : m_folder(folder), m_find(std::move(find)) {}

    const QStringList& Files(std::chrono::nanoseconds now);
    // They are gone. As they may have moved, the next search is due at once.
    void Lose();

private:
    const QString m_folder;
    const Find m_find;
    QStringList m_files;
    QByteArray m_entries;                                  // of the folder when it was searched
    std::optional<std::chrono::nanoseconds> m_searchedAt;  // or looked at
};

// Why a file could not be read, by the system's error number; 0: it was read and holds no number. NoSource:
// it is gone.
ReadingGap GapOfError(int error);

// Power from counters that count microjoules, a file each, all of one package.
class EnergyMeter {
public:
    EnergyMeter(SourceId id, FileSearch search) : m_id(id), m_search(std::move(search)) {}

    // The watts between the last two samples. Nothing of an interval in which the machine slept or a counter
    // ran backwards: it went round or began anew, which nobody can tell apart. NoRight where a counter is
    // there and may not be read, which is logged once.
    Reading Sample(const SampleMoment& moment);

private:
    struct Counter {
        QString file;
        std::optional<qint64> last = {};
        std::optional<qint64> now = {};
    };

    std::optional<ReadingGap> ReadCounters();
    std::optional<double> Microjoules() const;
    void TellOnce(const QString& file, int error);

    const SourceId m_id;
    FileSearch m_search;
    QStringList m_files;  // of the counters
    std::vector<Counter> m_counters;
    SampleInterval m_interval;
    bool m_hasTold = false;
};

// A value that stands in a file; of several files the highest counts.
class FileValue {
public:
    // The number in a file is so many times the value.
    FileValue(SourceId id, Quantity quantity, double scale, FileSearch search)
        : m_id(id), m_quantity(quantity), m_scale(scale), m_search(std::move(search)) {}

    Reading Read(const SampleMoment& moment);
    // A file's first line as a value, or why it is none.
    Reading ValueOf(const QByteArray& line) const;

private:
    Reading ReadFile(const QString& file) const;

    const SourceId m_id;
    const Quantity m_quantity;
    const double m_scale;
    FileSearch m_search;
};

// The package's number in a zone's name, "package-0" or "package-0-die-1"; nothing for what is no package, as
// "psys" or "dram".
std::optional<int> PackageNumber(const QByteArray& name);

// The files of the first package's energy counters under powercap: of the one with the lowest number, and of
// all its dies. The zones that are read through the processor's registers, else those of its memory-mapped
// ones: they are the same package twice. Empty where the kernel knows no package.
QStringList FindPowerCapFiles(const QString& powercap);

// The file of the first socket's energy counter among the drivers that have one.
QStringList FindSocketEnergyFiles(const QString& hwmon);

// Files with the package's temperature (thousandths of a degree Celsius): its own sensor's, or where it has
// none all of the first driver that knows one; the hottest of them counts. Empty where there is none.
QStringList FindTemperatureFiles(const QString& hwmon);

// The file of the board's sensor that is named after the processor. Empty where there is none.
QStringList FindBoardTemperatureFiles(const QString& hwmon);

// The processor's fan (ProcessorsFan). Empty where there is none.
QStringList FindFanFiles(const QString& hwmon);

// The temperatures (thousandths of a degree Celsius) of the processor's own thermal zones.
QStringList FindProcessorZoneFiles(const QString& thermal);

// Whether that is a thermal zone's type, or a driver named after one, that stands for the processor.
bool IsProcessorZone(const QByteArray& type);

}  // namespace kivo
