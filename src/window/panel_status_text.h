#pragma once

// What the window and the tray say about the panel, in the language of the translator that is installed. No
// state; GUI thread, which installs the translator.

#include <QString>

#include "panel/panel_light.h"
#include "panel/panel_status.h"

namespace kivo {

// One short phrase, never empty and without a full stop.
QString PanelStatusText(const PanelStatus& status);

// The same of a panel that is not as bright as usual; empty where there is no reason for that.
QString DarkText(DarkReasons reasons);

// Whether something is still owed to the panel and cannot be sent at this moment.
bool IsPanelOwed(const PanelStatus& status);

}  // namespace kivo
