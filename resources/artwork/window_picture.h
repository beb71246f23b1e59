#pragma once

#include <QColor>
#include <QImage>

#include <vector>

namespace kivo::artwork {

// Colours of the window, as far as they are not in the drawings.
namespace window {
constexpr QRgb kGroundTop = 0xFF141B23;
constexpr QRgb kGroundFoot = 0xFF0C1116;
constexpr QRgb kCard = 0xFF171F28;
constexpr QRgb kCardEdge = 0xFF2A3643;
constexpr QRgb kWell = 0xFF0D1319;
constexpr QRgb kWellEdge = 0xFF222C36;
constexpr QRgb kTrack = 0xFF10161D;
constexpr QRgb kTextHigh = 0xFFF2F5F8;
constexpr QRgb kTextMid = 0xFFAEB9C4;
constexpr QRgb kTextLow = 0xFF84919E;
constexpr QRgb kIconQuiet = 0xFF828C96;
constexpr QRgb kAccent = 0xFF4FE0C0;
constexpr QRgb kDelete = 0xFFFF6B5E;
constexpr QRgb kDeletePressed = 0xFFD0483C;
constexpr QRgb kQuietText = 0xFFC3CCD5;
}  // namespace window

// One picture of the window: what it is drawn from, and the colour of its state where the drawing takes one.
// In the drawings outlines lie on half pixels, filled edges on whole ones, so that both scales are crisp.
struct WindowPicture {
    const char* name;  // of the file, without ".png"
    const char* drawing;
    QColor colour = {};
};

// All of them but the ground.
std::vector<WindowPicture> WindowPictures();

// The picture at 1 or 2 device pixels a window pixel.
QImage Render(const WindowPicture& picture, int scale);

// The program's icon, on a plate from 32 pixels on. Small ones do not scale, so each has a drawing of its
// own; from 64 on there is one for all.
QImage DrawLogo(int side);

// The window's ground, 1920 x 1176 for 960 x 588: the style sheet stretches it.
QImage DrawGround();

}  // namespace kivo::artwork
