#pragma once

// The processor's own among the many sensors that a hardware monitor names: chosen by their labels, as HWiNFO
// and LibreHardwareMonitor write them. Any thread.

#include <QString>

#include <array>
#include <optional>

#include "telemetry/reading.h"

namespace kivo {

class LabelledSensors {
public:
    explicit LabelledSensors(SourceId source);

    // One sensor, in the order of the monitor's list: of equals the first one counts. The device is the
    // monitor's name for what the sensor belongs to. Without a value it is a sensor whose value is no number.
    void Add(Quantity quantity, const QString& device, const QString& label, std::optional<double> value);

    // Power and temperature of the processor package; the processor's fan, else the first one that turns,
    // else the first. A sensor whose value cannot be counts only where no other one would do.
    const SensorReadings& Readings() const { return m_readings; }

private:
    const SourceId m_source;
    SensorReadings m_readings;
    std::array<int, kQuantityCount> m_ranks;
};

}  // namespace kivo
