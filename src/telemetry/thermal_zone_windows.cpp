#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <QProcess>

#include <array>

#include "telemetry/thermal_zone_windows.h"

namespace kivo {
namespace {

// Empty where it cannot be told.
QString SystemFolder() {
    std::array<wchar_t, MAX_PATH> path{};
    const UINT length = GetSystemDirectoryW(path.data(), static_cast<UINT>(path.size()));
    return length < path.size() ? QString::fromWCharArray(path.data(), static_cast<int>(length)) : QString();
}

}  // namespace

Command ThermalClient() {
    QStringList words = QProcess::splitCommand(ThermalCommand());
    const QString name = words.takeFirst();
    const QString folder = SystemFolder();
    return {folder.isEmpty() ? QString() : QStringLiteral("%1/wbem/%2.exe").arg(folder, name), words};
}

QString ReadThermalZoneWith(const Command& command, const StopAsked& isStopAsked) {
    return command.program.isEmpty() ? NoThermalText()
                                     : ParseThermalZones(ReadCommandOutput(command, {}, isStopAsked));
}

QString ReadThermalZoneTemperature(const StopAsked& isStopAsked) {
    return ReadThermalZoneWith(ThermalClient(), isStopAsked);
}

}  // namespace kivo
