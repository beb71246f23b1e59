#pragma once

// The page "data.json" of LibreHardwareMonitor's web server: a tree whose leaves are sensors, each with
// "Text" (its label), "SensorId" ("/amdcpu/0/temperature/2"), "Type", "Value" (a text with unit, in the
// system's locale and the units chosen there) and from 0.9.5 on "RawValue" (first such a text, always in
// degrees Celsius, later a number). Any thread.

#include <QByteArray>

#include "telemetry/reading.h"

namespace kivo {

// Longer pages are not looked at; those of large machines have a tenth of that.
inline constexpr int kLongestMonitorPage = 4 * 1024 * 1024;

// What is wanted and not on the page is NoSource; so is everything where it is no such page.
SensorReadings ReadHardwareMonitorPage(const QByteArray& json);

}  // namespace kivo
