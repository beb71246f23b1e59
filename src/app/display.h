#pragma once

namespace kivo {

// Whether there is a display to open windows on, asked before the application object exists.
bool HasDisplay();

}  // namespace kivo
