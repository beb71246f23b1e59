#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QSize>

#include <functional>
#include <vector>

namespace kivo::artwork {

// Colours of the window.
namespace window {
constexpr QRgb kGroundTop = 0xFF141B23;
constexpr QRgb kGroundFoot = 0xFF0C1116;
constexpr QRgb kCard = 0xFF171F28;
constexpr QRgb kCardEdge = 0xFF2A3643;
constexpr QRgb kRaised = 0xFF1E2832;
constexpr QRgb kRaisedEdge = 0xFF32404E;
constexpr QRgb kWell = 0xFF0D1319;
constexpr QRgb kWellEdge = 0xFF222C36;
constexpr QRgb kTrack = 0xFF10161D;
constexpr QRgb kTextHigh = 0xFFF2F5F8;
constexpr QRgb kTextMid = 0xFFAEB9C4;
constexpr QRgb kTextLow = 0xFF84919E;
constexpr QRgb kIconQuiet = 0xFF828C96;
constexpr QRgb kAccent = 0xFF4FE0C0;
constexpr QRgb kDarkOnAccent = 0xFF06231D;
constexpr QRgb kWarning = 0xFFFFB45A;
constexpr QRgb kDelete = 0xFFFF6B5E;
constexpr QRgb kOutline = 0xFF66737F;
constexpr QRgb kQuietFill = 0xFF121920;
constexpr QRgb kQuietEdge = 0xFF33414E;
constexpr QRgb kQuietText = 0xFFC3CCD5;
constexpr QRgb kPressedFill = 0xFF22303C;
}  // namespace window

// One picture of the window: size in window pixels, and how it is drawn in window coordinates with
// antialiasing on. Outlines lie on half pixels, filled edges on whole ones, so that both scales are crisp.
struct WindowPicture {
    const char* name;  // of the file, without ".png"
    QSize size;
    std::function<void(QPainter&)> draw;
};

// All of them but the ground.
std::vector<WindowPicture> WindowPictures();

// The picture at 1 or 2 device pixels a window pixel.
QImage Render(const WindowPicture& picture, int scale);

// The window's ground, 1920 x 1176 for 960 x 588: the style sheet stretches it.
QImage DrawGround();

}  // namespace kivo::artwork
