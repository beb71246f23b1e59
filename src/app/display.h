#pragma once

namespace kivo {

// Whether there is a display to open windows on, asked before the application object exists.
bool HasDisplay();

// Qt's platform to use without a display, given the one that was asked for (QT_QPA_PLATFORM): one that opens
// windows on a display would end the program.
const char* PlatformWithoutDisplay(const char* asked);

// Whether the desktop alone decides where a window stands and what is in front (Wayland): a window cannot
// move itself, raise itself, or come back once it is minimised. Asked with an application object.
bool DesktopPlacesWindows();

}  // namespace kivo
