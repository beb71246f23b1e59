#pragma once

// Where the magnified screen stands in the editor, and which part of the editor means which slot or text row.
// Pure.
//
// A canvas coordinate c (pixels of the panel in that orientation) stands at c * scale + offset in the widget,
// a size s is s * scale there. Every conversion to whole pixels truncates toward zero. Rectangles have
// inclusive corners.
//
//   landscape: scale 1.35, left 1, vertically centred; portrait: scale 1, centred both ways

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QRectF>
#include <QSize>

#include "compose/geometry.h"

namespace kivo {

struct ScreenMapping {
    double scale = 1;
    int left = 0;  // widget pixels
    int top = 0;

    QRect Mapped(const QRect& canvasRect) const;
    QPointF Mapped(QPointF canvasPoint) const { return canvasPoint * scale + QPointF(left, top); }
    QPointF OnCanvas(QPointF widgetPoint) const { return (widgetPoint - QPointF(left, top)) / scale; }
};
ScreenMapping MappingFor(Orientation orientation, QSize widget);

// A mouse position in whole widget pixels, rounded half away from zero.
QPoint WholePosition(QPointF position);

// What grabs a slot and what takes a slot that is dropped: the mapped slot with room for its caption and a
// margin. Deliberate: the two differ by a pixel of the canvas on each side.
QRect SlotPressRect(int slot, Orientation orientation, QSize widget);
QRect SlotDropRect(int slot, Orientation orientation, QSize widget);

// What grabs the free text while it stands in that row, and what takes it when it is dropped.
QRect TextPressRect(int row, Orientation orientation, QSize widget);
QRect TextDropRect(int row, Orientation orientation, QSize widget);

// Where a double-click opens text entry. Deliberate: scaled, but not moved to where the screen stands.
QRect TextDoubleClickRect(int row, Orientation orientation);

// The in-place text box of that row, and the pixel size of its text for a free-text size step (0..2).
QRect TextBoxRect(int row, Orientation orientation, QSize widget);
int TextBoxPixelSize(int sizeIndex, Orientation orientation);

// The box while a text is typed that stands in those canvas bounds: about the text, as wide as its row at
// least and never off the screen.
QRect TypingBoxRect(int row, Orientation orientation, QSize widget, const QRect& textBounds);

// While it is trimmed the whole picture is shown, about the middle of the screen: magnified as the screen is,
// or less where it would not fit into the widget. pictureRect is in panel pixels from the untrimmed view.
struct TrimMapping {
    double scale = 1;
    QPointF origin;  // of the untrimmed view, widget pixels

    QRectF Mapped(const QRectF& rect) const {
        return QRectF(origin + rect.topLeft() * scale, rect.size() * scale);
    }
};
TrimMapping TrimMappingFor(Orientation orientation, QSize widget, const QRectF& pictureRect);

}  // namespace kivo
