#include "telemetry/thermal_zone_linux.h"

#include <QStringList>

#include "telemetry/small_file.h"
#include "telemetry/sysfs_sources.h"
#include "telemetry/thermal_zone.h"

namespace kivo {
namespace {

constexpr double kThousandthsPerDegree = 1000.0;

enum Rank { Other, Firmware, Processor };

Rank RankOf(const QByteArray& type) {
    if (IsProcessorZone(type)) {
        return Processor;
    }
    return type == "acpitz" ? Firmware : Other;
}

QStringList ListZones(const QString& folder) {
    return NumberedFolders(folder, QStringLiteral("thermal_zone"));
}

QByteArray TypeOf(const QString& zone) {
    return ReadSmallFile(zone + QLatin1String("/type")).value_or(QByteArray());
}

}  // namespace

bool IsProcessorZone(const QByteArray& type) {
    if (type == "x86_pkg_temp") {
        return true;
    }
    // Boards' own names, as "cpu-thermal", "cpu0_thermal", "soc_thermal".
    return (type.startsWith("cpu") || type.startsWith("soc")) && type.contains("thermal");
}

QStringList FindProcessorZoneFiles(const QString& thermal) {
    QStringList files;
    const QStringList zones = ListZones(thermal);
    for (const QString& zone : zones) {
        if (IsProcessorZone(TypeOf(zone))) {
            files.append(zone + QLatin1String("/temp"));
        }
    }
    return files;
}

QString ReadThermalZones(const QString& folder) {
    QString result = NoThermalText();
    Rank best = Other;
    const QStringList zones = ListZones(folder);
    for (const QString& zone : zones) {
        const Rank rank = RankOf(TypeOf(zone));
        const auto thousandths = ReadNumberFile(zone + QLatin1String("/temp"));
        const double degrees = double(thousandths.value_or(0)) / kThousandthsPerDegree;
        if (rank >= best && thousandths && IsZoneTemperature(degrees)) {
            best = rank;
            result = ThermalText(degrees);
        }
    }
    return result;
}

QString ReadThermalZoneTemperature(const StopAsked& isStopAsked) {
    Q_UNUSED(isStopAsked)
    return ReadThermalZones(QStringLiteral("/sys/class/thermal"));
}

}  // namespace kivo
