#pragma once

namespace kivo {

// Asks the top-level window titled "GetCPUInfo", which belongs to a helper process, to close. Nothing happens
// where there is none; one that does not answer holds the caller up for a second at most. GUI thread, as the
// main window goes.
void CloseHelperWindow();

}  // namespace kivo
