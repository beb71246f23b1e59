#pragma once

// Readings in words, and moments in seconds, for the tests of sources.

#include <QString>

#include <array>

#include "telemetry/sensor_source.h"

namespace kivo::test {

// The value with up to six digits ("45 still" where nothing newer has come), or why there is none.
inline QString Said(const Reading& reading) {
    static const std::array<const char*, 8> kGaps{"no gap",   "not read",    "no source",
                                                  "no right", "not running", "not handed on",
                                                  "silent",   "unbelievable"};
    if (!reading.value) {
        return QLatin1String(kGaps[static_cast<std::size_t>(reading.gap)]);
    }
    const QString value = QString::number(*reading.value, 'g', 6);
    return reading.isStanding ? value + QLatin1String(" still") : value;
}

// Power, temperature and fan: "65.2, 46.9, no source".
inline QString Said(const SensorReadings& readings) {
    return Said(readings[Quantity::Power]) + QLatin1String(", ") + Said(readings[Quantity::Temperature]) +
           QLatin1String(", ") + Said(readings[Quantity::FanSpeed]);
}

// The same, whether the values are new or stand.
inline QString Values(const SensorReadings& readings) {
    return Said(readings).remove(QLatin1String(" still"));
}

inline SampleMoment At(double seconds) {
    return {std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)),
            false};
}
inline SampleMoment AfterSleepAt(double seconds) {
    SampleMoment moment = At(seconds);
    moment.hasSlept = true;
    return moment;
}

inline QString Power(SensorSource& source, const SampleMoment& moment) {
    return Said(source.Read(moment)[Quantity::Power]);
}
inline QString Temperature(SensorSource& source, const SampleMoment& moment) {
    return Said(source.Read(moment)[Quantity::Temperature]);
}

// Whether every reading says whose it is.
inline bool AreAllOf(const SensorReadings& readings, SourceId source) {
    return readings[Quantity::Power].source == source && readings[Quantity::Temperature].source == source &&
           readings[Quantity::FanSpeed].source == source;
}

}  // namespace kivo::test
