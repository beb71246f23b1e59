#pragma once

// A frame in the light that the panel is to have. Any thread.

#include "panel/panel_frame.h"

namespace kivo {

// Black, without a place for any value. One frame, and so one id, for all.
const SharedFrame& BlackFrame();

// What the panel shows of the frame in this light. Black needs no frame; null where there is none otherwise.
SharedFrame InLight(const SharedFrame& frame, PanelLight light);
// Its id; empty where it is null.
QByteArray IdInLight(const SharedFrame& frame, PanelLight light);

}  // namespace kivo
