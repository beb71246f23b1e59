#pragma once

// The editor's marks over the preview: outlines of what can be dragged, and the trim frame. Rectangles
// are widget pixels unless said otherwise. Pure.

#include <QRectF>

class QPainter;

namespace kivo {

enum class Mark {
    Idle,    // can be taken hold of, or takes what is dropped
    Active,  // hovered or dragged
};
void DrawOutline(QPainter& painter, const QRectF& rect, double radius, Mark mark);

// What a dragged item stands on, so that it can be read over whatever it is held. Canvas pixels.
void DrawGhostChip(QPainter& painter, const QRect& chip);

// Darkens what the frame leaves out of shown, and draws the frame with its handles; these stay inside bounds,
// also where the frame reaches them.
void DrawTrimFrame(QPainter& painter, const QRectF& frame, const QRectF& shown, const QRectF& bounds);

}  // namespace kivo
