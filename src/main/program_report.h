#pragma once

// The report for support of a start that does nothing else (--report).

#include <QString>

#include "session/support_report.h"
#include "telemetry/package_sensors.h"

namespace kivo {

// What a process of its own can see: system, devices, sensors (read for about two seconds), settings, and
// what lies on disk of a copy that runs. It opens no screen and changes nothing on disk. Needs a
// QGuiApplication and an installed translator.
QString WriteProgramReport(SupportFacts::Teller teller, const QString& applicationDir,
                           const PackageSensorsFactory& makeSensors = MakePackageSensors);

}  // namespace kivo
