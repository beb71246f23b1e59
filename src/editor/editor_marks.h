#pragma once

// The editor's marks over the preview: outlines of what can be dragged, and the trim frame. All rectangles in
// widget pixels. Pure.

#include <QRectF>

class QPainter;

namespace kivo {

enum class Mark {
    Idle,    // can be taken hold of, or takes what is dropped
    Active,  // hovered or dragged
};
void DrawOutline(QPainter& painter, const QRectF& rect, double radius, Mark mark);

// Darkens what the frame leaves out of shown, and draws the frame with its handles; these stay inside bounds,
// also where the frame reaches them.
void DrawTrimFrame(QPainter& painter, const QRectF& frame, const QRectF& shown, const QRectF& bounds);

}  // namespace kivo
