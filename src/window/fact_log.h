#pragma once

// Logs what a start finds out and what changes later: the state of the screen, and who measures each value. A
// line for a change, none for what stays. GUI thread.

#include <QString>
#include <array>
#include <optional>

#include "panel/panel_status.h"
#include "telemetry/reading.h"

namespace kivo {

class FactLog {
public:
    // A frame on its way is told of when it was taken, or was not.
    void NotePanel(const PanelStatus& status);
    void NoteReadings(const SensorReadings& readings);

private:
    std::optional<PanelCondition> m_condition;
    std::array<QString, kQuantityCount> m_phrases;
};

}  // namespace kivo
