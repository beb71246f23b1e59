#pragma once

namespace kivo {

// Whether the desktop blends windows at this moment: without that the see-through corners of a pop-up are
// black. GUI thread, with an application object; may ask the display's server.
bool BlendsWindows();

}  // namespace kivo
