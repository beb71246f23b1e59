#pragma once

// The processor's own among the many sensors that a board or a hardware monitor names: chosen by their
// labels, as kernel drivers, HWiNFO and LibreHardwareMonitor write them. Any thread.

#include <QString>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "telemetry/reading.h"

namespace kivo {

struct NamedFan {
    QString device;               // the driver's name, or the monitor's for what the fan belongs to
    QString label;                // empty: none
    std::optional<double> speed;  // in revolutions a minute; nothing: no number
};

// The place of the fan that is shown, the same rule for every platform: the processor's, the one of its first
// header before the others, those that turn before those that stand still; else the first of any that turns;
// else a single one, for a header without a fan says 0, and a board has several. One whose speed cannot be
// counts where no other would do. Pumps are none, nor are the fans of graphics cards and power supplies.
std::optional<std::size_t> ProcessorsFan(const std::vector<NamedFan>& fans);

class LabelledSensors {
public:
    explicit LabelledSensors(SourceId source);

    // One sensor, in the order of the monitor's list: of equals the first one counts. The device is the
    // monitor's name for what the sensor belongs to. Without a value it is a sensor whose value is no number.
    void Add(Quantity quantity, const QString& device, const QString& label, std::optional<double> value);

    // Power and temperature of the processor package; ProcessorsFan. A sensor whose value cannot be counts
    // only where no other one would do.
    SensorReadings Readings() const;

private:
    Reading ReadingOf(Quantity quantity, std::optional<double> value) const;

    const SourceId m_source;
    SensorReadings m_readings;
    std::array<int, kQuantityCount> m_ranks;
    std::vector<NamedFan> m_fans;
};

}  // namespace kivo
