#pragma once

// Power and temperature of the first processor package as the Linux kernel tells them, in files: energy
// counters under powercap (Intel and AMD alike), temperatures under hwmon. The files are described in the
// kernel's Documentation/power/powercap and Documentation/hwmon. Lives on the poller's thread.

#include <QStringList>

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "telemetry/package_sensors.h"

namespace kivo {

struct SysfsPlaces {
    QString powercap = QStringLiteral("/sys/class/powercap");
    QString hwmon = QStringLiteral("/sys/class/hwmon");
};

// One energy counter of the package: "package-0", or a die of it ("package-0-die-1").
class EnergyCounter {
public:
    // folder holds energy_uj and max_energy_range_uj (both microjoules).
    explicit EnergyCounter(const QString& folder);

    // Microjoules since the sample before; nothing at the first one, or where either could not be read.
    std::optional<double> Sample();
    const QString& File() const { return m_file; }
    // Of the last sample; where it was not readable, the system's error number, or 0 where it was no number.
    bool IsReadable() const { return m_last.has_value(); }
    int Error() const { return m_error; }

private:
    QString m_file;
    qint64 m_range = 0;  // the counter begins at 0 again after this one; 0: not known
    std::optional<qint64> m_last;
    int m_error = 0;
};

// The counters of the package with the lowest number; none where there are no counters.
std::vector<EnergyCounter> FindEnergyCounters(const QString& powercap);

// Files with the package's temperature (thousandths of a degree Celsius): its own sensor's, or where it has
// none all of the first driver that knows one; the hottest of them counts. Empty where there is none.
QStringList FindTemperatureFiles(const QString& hwmon);

class SysfsSensors final : public PackageSensors {
public:
    using Clock = std::function<std::chrono::nanoseconds()>;  // monotonic

    // An empty clock stands for the steady one.
    explicit SysfsSensors(SysfsPlaces places = {}, Clock clock = {});

    // True where there is a temperature or a counter that may be read: a counter alone that is root's has
    // nothing to tell.
    bool Load() override;
    QString ErrorString() const override { return m_error; }
    void ReadSample() override;
    int Temperature() override { return m_temperature; }
    double Power() override { return m_power; }

private:
    void FindWhatIsMissing();
    void SampleEnergy();
    void SampleTemperature();

    const SysfsPlaces m_places;
    const Clock m_clock;
    std::vector<EnergyCounter> m_counters;
    QStringList m_temperatureFiles;
    std::chrono::nanoseconds m_sampledAt{0};
    double m_power = 0.0;
    int m_temperature = 0;
    int m_samples = 0;
    bool m_toldUnreadable = false;
    QString m_error;
};

}  // namespace kivo
