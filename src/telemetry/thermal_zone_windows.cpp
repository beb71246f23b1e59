#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <QFileInfo>
#include <QProcess>

#include <array>

#include "telemetry/firmware_zone_counters.h"
#include "telemetry/thermal_zone_windows.h"

namespace kivo {
namespace {

// Empty where it cannot be told.
QString SystemFolder() {
    std::array<wchar_t, MAX_PATH> path{};
    const UINT length = GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
    return length < path.size() ? QString::fromWCharArray(path.data(), static_cast<int>(length)) : QString();
}

QString ReadCounters(const CounterQueryFactory& openQuery) {
    const std::unique_ptr<CounterQuery> query = openQuery(FirmwareZonePaths());
    if (query == nullptr) {
        return NoThermalText();
    }
    query->Collect();
    const std::vector<double> zones = FirmwareZones(query->Values(0), query->Values(1));
    return zones.empty() || !IsZoneTemperature(zones.back()) ? NoThermalText() : ThermalText(zones.back());
}

}  // namespace

Command ThermalClient() {
    QStringList words = QProcess::splitCommand(ThermalCommand());
    const QString name = words.takeFirst();
    const QString folder = SystemFolder();
    return {folder.isEmpty() ? QString() : QStringLiteral("%1/wbem/%2.exe").arg(folder, name), words};
}

QString ReadThermalZoneWith(const Command& command, const CounterQueryFactory& openQuery,
                            const StopAsked& isStopAsked) {
    if (QFileInfo::exists(command.program)) {
        const auto zone = LastThermalZone(ReadCommandOutput(command, {}, isStopAsked));
        if (zone && IsZoneTemperature(*zone)) {
            return ThermalText(*zone);
        }
    }
    return ReadCounters(openQuery);
}

QString ReadThermalZoneTemperature(const StopAsked& isStopAsked) {
    return ReadThermalZoneWith(ThermalClient(), OpenCounterQuery, isStopAsked);
}

}  // namespace kivo
