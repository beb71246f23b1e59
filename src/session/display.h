#pragma once

#include <QByteArray>

namespace kivo {

// Whether a display is named to open windows on, asked before the application object exists.
bool HasDisplay();

// Qt's platform to use without a display, given the one that was asked for: one that opens windows on a
// display would end the program.
QByteArray PlatformWithoutDisplay(const QByteArray& asked);

// Qt's platforms to try one after the other where a display is named, between semicolons, given the one that
// was asked for. The last one needs no display: without it a display that refuses would end the program.
// Empty: what Qt chooses by itself can only work.
QByteArray PlatformsWithDisplay(const QByteArray& asked);

// Has Qt load no OpenGL, which nothing here is drawn with: on X11 it comes with a software renderer of 10 MB
// as soon as the first window is made. Whoever asks for an integration by Qt's own variable gets it. Before
// the application object exists.
void LeaveOutOpenGl();

// The platform that needs no display.
constexpr char kPlatformWithoutWindows[] = "offscreen";

// Whether the desktop alone decides where a window stands and what is in front (Wayland): a window cannot
// move itself, raise itself, or come back once it is minimised. Asked with an application object.
bool DesktopPlacesWindows();

}  // namespace kivo
