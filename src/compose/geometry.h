#pragma once

// Places on the panel: canvas rectangles, the panel's wire coordinates and the picture area they are cut
// from. Pure values, used on every thread.
//
//   landscape canvas, 320 x 170: canvas (x, y) is wire (x, y)
//   portrait canvas, 170 x 320: turned by 270 degrees clockwise, canvas (x, y) is wire (y, 169 - x)

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>

#include "device/reports.h"
#include "model/corners.h"

namespace kivo {

// The numbers are the stored ones ("Config/Hor").
enum class Orientation { Landscape = 0, Portrait = 1 };

constexpr QSize CanvasSize(Orientation orientation) {
    return orientation == Orientation::Landscape ? QSize(kPanelWidth, kPanelHeight)
                                                 : QSize(kPanelHeight, kPanelWidth);
}

// Where a canvas rectangle lies in the panel's wire coordinates.
QRect WireRect(const QRect& canvasRect, Orientation orientation);

// The left and right halves as the panel gets them: floor(width / 2) columns each. The last column of an odd
// width belongs to neither; EvenPart is what both cover.
QVector<QRect> Halves(const QRect& rect);
QRect EvenPart(const QRect& rect);

// Bytes of a rectangle's pixels, and whether one positioned report carries all of them to the panel.
constexpr int CutBytes(const QRect& rect) {
    return rect.width() * rect.height() * 2;
}
constexpr bool FitsOneReport(const QRect& rect) {
    return FitsAreaReport(rect.width(), rect.height());
}

// rect as the fewest equal columns (up to four) that fit one report each; columns differ by a pixel at most.
// What does not fit in four columns is left in four, for the caller's own check to refuse.
QVector<QRect> ColumnsThatFit(const QRect& rect);

// The picture area of the window is larger than the screen it shows: landscape works at 1.35 times the panel,
// portrait at 1.0. The frame is the part of that size.
constexpr double kLandscapeScale = 1.35;
constexpr QSize AreaFrameSize(Orientation orientation) {
    return orientation == Orientation::Landscape ? QSize(433, 230) : QSize(170, 320);
}
constexpr double AreaScale(Orientation orientation) {
    return orientation == Orientation::Landscape ? kLandscapeScale : 1.0;
}

// The rectangle moved, not cut, so that it lies within the bounds, in any coordinates. They may have no room
// for it, by a rounding or in a very small window: it begins where they do then.
QRectF KeptIn(QRectF rect, const QRectF& bounds);

}  // namespace kivo
