#pragma once

// Core Temp's temperature, from its shared memory while it runs.

#include <QByteArray>

#include <functional>
#include <optional>

#include "telemetry/sensor_source.h"

namespace kivo {

// A copy of the shared memory, as much of it as is mapped, kCoreTempMemorySize bytes at most.
struct CoreTempCopy {
    QByteArray bytes;
    bool isBusy = false;  // it is there, and Core Temp is writing
};
// Waits for Core Temp for a moment only. Nothing where there is no shared memory.
using CoreTempCopier = std::function<std::optional<CoreTempCopy>()>;

// Copies this system's; there is one on Windows only.
std::optional<CoreTempCopy> CopyCoreTempMemory();

class CoreTempSource final : public SensorSource {
public:
    explicit CoreTempSource(CoreTempCopier copy);

    SourceId Id() const override { return SourceId::CoreTemp; }
    // While Core Temp is writing the values of the copy before stand.
    SensorReadings Read(const SampleMoment& moment) override;

private:
    const CoreTempCopier m_copy;
    std::optional<SensorReadings> m_last;  // of the last copy
};

}  // namespace kivo
