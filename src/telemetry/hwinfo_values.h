#pragma once

// What HWiNFO leaves in the registry for gadgets, in HKEY_CURRENT_USER\Software\HWiNFO64\VSB: a text each for
// a sensor's group ("Sensor7"), its name ("Label7"), its value as HWiNFO shows it ("Value7", "84.2 °F") and
// that value's plain number ("ValueRaw7"). Only the sensors that the user ticked are there, so the numbers
// have holes. Any thread.

#include <QString>

#include <vector>

#include "telemetry/reading.h"

namespace kivo {

struct NamedText {
    QString name;
    QString text;
};

// In any order. What is wanted and not among them is NoSource.
SensorReadings ReadHwInfoValues(const std::vector<NamedText>& values);

}  // namespace kivo
