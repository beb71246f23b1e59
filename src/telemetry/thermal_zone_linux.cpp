#include "telemetry/thermal_zone_linux.h"

#include <QStringList>

#include "telemetry/small_file.h"
#include "telemetry/thermal_zone.h"

namespace kivo {
namespace {

constexpr double kThousandthsPerDegree = 1000.0;
constexpr qint64 kAbsoluteZero = -273150;  // thousandths; firmware without a sensor tells what is below

enum Rank { Other, Package, Firmware };

Rank RankOf(const QByteArray& type) {
    if (type == "acpitz") {
        return Firmware;
    }
    return type == "x86_pkg_temp" ? Package : Other;
}

}  // namespace

QString ReadThermalZones(const QString& folder) {
    QString result = NoThermalText();
    Rank best = Other;
    const QStringList zones = NumberedFolders(folder, QStringLiteral("thermal_zone"));
    for (const QString& zone : zones) {
        const Rank rank = RankOf(ReadSmallFile(zone + QLatin1String("/type")).value_or(QByteArray()));
        const auto thousandths = ReadNumberFile(zone + QLatin1String("/temp"));
        if (rank >= best && thousandths && *thousandths >= kAbsoluteZero) {
            best = rank;
            result = ThermalText(double(*thousandths) / kThousandthsPerDegree);
        }
    }
    return result;
}

QString ReadThermalZoneTemperature(const StopAsked& isStopAsked) {
    Q_UNUSED(isStopAsked)
    return ReadThermalZones(QStringLiteral("/sys/class/thermal"));
}

}  // namespace kivo
