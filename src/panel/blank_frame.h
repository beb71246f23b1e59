#pragma once

// A black frame on which nothing stands: what a panel shows that is to be dark. Any thread.

#include "panel/panel_frame.h"

namespace kivo {

SharedFrame MakeBlankFrame();

}  // namespace kivo
