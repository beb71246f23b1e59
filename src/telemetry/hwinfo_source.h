#pragma once

// HWiNFO's values, while it runs and hands them on. They stay in the registry when it has ended, and a steady
// value looks like a forgotten one, so the program itself is looked for.

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "telemetry/hwinfo_values.h"
#include "telemetry/sensor_source.h"

namespace kivo {

// The seam to the system.
struct HwInfoSystem {
    std::function<std::vector<NamedText>()> values;  // empty where none are handed on
    std::function<bool()> isRunning;                 // looks through the list of processes
};

// This system's; there is one on Windows only.
HwInfoSystem SystemHwInfo();

class HwInfoSource final : public SensorSource {
public:
    explicit HwInfoSource(HwInfoSystem system);

    SourceId Id() const override { return SourceId::HwInfo; }
    SensorReadings Read(const SampleMoment& moment) override;

private:
    bool IsRunning(const SampleMoment& moment);

    const HwInfoSystem m_system;
    std::optional<std::chrono::nanoseconds> m_lookedAt;
    bool m_isRunning = false;
};

}  // namespace kivo
