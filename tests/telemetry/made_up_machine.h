#pragma once

// A Linux machine's sensors as files, and the time on it.

#include <unistd.h>

#include "made_up_sysfs.h"
#include "model/item_table.h"
#include "telemetry/metric_snapshot.h"
#include "telemetry/package_sensors.h"
#include "telemetry/sysfs_sources.h"

namespace kivo::test {

// While it lives, the test has the rights of an ordinary user, also where it runs as root.
class AsOrdinaryUser {
public:
    AsOrdinaryUser() : m_user(::geteuid()) {
        constexpr uid_t kNobody = 65534;
        if (m_user == 0 && ::seteuid(kNobody) != 0) {
            qFatal("The test cannot give up its rights.");
        }
    }
    ~AsOrdinaryUser() {
        if (m_user == 0 && ::seteuid(m_user) != 0) {
            qFatal("The test cannot take its rights back.");
        }
    }
    Q_DISABLE_COPY(AsOrdinaryUser)

private:
    const uid_t m_user;
};

struct MadeUpMachine {
    void Counter(const char* zone, const char* name, const QByteArray& energy) const {
        const QString folder = QStringLiteral("powercap/") + QLatin1String(zone);
        sysfs.Write(folder + QStringLiteral("/name"), name);
        sysfs.Write(folder + QStringLiteral("/max_energy_range_uj"), "262143328850");
        sysfs.Write(folder + QStringLiteral("/energy_uj"), energy);
    }
    QString EnergyFile(const char* zone) const {
        return QStringLiteral("powercap/%1/energy_uj").arg(QLatin1String(zone));
    }
    void Energy(const char* zone, const QByteArray& energy) const { sysfs.Write(EnergyFile(zone), energy); }
    // As the kernel has it: for root alone.
    void Lock(const char* zone) const {
        QFile::setPermissions(sysfs.Path(EnergyFile(zone)), QFile::Permissions());
    }
    void Unlock(const char* zone) const {
        QFile::setPermissions(sysfs.Path(EnergyFile(zone)),
                              QFile::ReadGroup | QFile::ReadOther | QFile::ReadUser | QFile::WriteUser);
    }
    void Driver(int hwmon, const char* name) const {
        sysfs.Write(QStringLiteral("hwmon/hwmon%1/name").arg(hwmon), name);
    }
    // kind: "temp", "fan", "energy".
    void Input(int hwmon, const char* kind, int number, const char* label, const QByteArray& value) const {
        const QString file =
            QStringLiteral("hwmon/hwmon%1/%2%3_").arg(hwmon).arg(QLatin1String(kind)).arg(number);
        if (label != nullptr) {
            sysfs.Write(file + QLatin1String("label"), label);
        }
        sysfs.Write(file + QLatin1String("input"), value);
    }
    void Zone(int number, const char* type, const QByteArray& value) const {
        const QString zone = QStringLiteral("thermal/thermal_zone%1/").arg(number);
        sysfs.Write(zone + QLatin1String("type"), type);
        sysfs.Write(zone + QLatin1String("temp"), value);
    }

    SysfsPlaces Places() const {
        return {sysfs.Path(QStringLiteral("powercap")), sysfs.Path(QStringLiteral("hwmon")),
                sysfs.Path(QStringLiteral("thermal"))};
    }
    std::unique_ptr<PackageSensors> MakeSensors() {
        SensorParts parts;
        parts.library.environment = [](const char*) { return QString(); };
        parts.sources = MakeSysfsSources(Places());
        parts.clocks = [this] { return clocks; };
        parts.cpuLoad = [] { return 5; };
        return MakeSensorsFrom(std::move(parts));
    }

    // A sample, that much later.
    SensorReadings SampleAfter(std::chrono::milliseconds time) {
        clocks.awake += time;
        sensors->ReadSample();
        return readings = sensors->Readings();
    }
    // Power, temperature and fan as they are shown, after what the poller does each second.
    QStringList Texts() {
        snapshot.SetReadings(readings);
        if (const auto numbers = sensors->Numbers()) {
            snapshot.SetCpuPowClock(qint32(numbers->watts), numbers->degreesCelsius);
        }
        return {snapshot.GetValueText(CpuPower), snapshot.GetValueText(CpuTemperature),
                snapshot.GetValueText(FanSpeed)};
    }

    const MadeUpSysfs sysfs;
    SystemClocks clocks{std::chrono::seconds(1000), std::chrono::seconds(0)};
    const std::unique_ptr<PackageSensors> sensors = MakeSensors();
    SensorReadings readings;
    MetricSnapshot snapshot{InterfaceLanguage::English};
};

}  // namespace kivo::test
