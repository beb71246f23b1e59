#pragma once

#include <QColor>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <QRectF>

// Small drawings that the window's pictures share. Coordinates are the painter's.

namespace kivo::artwork {

QPen RoundPen(QRgb colour, double width);

// A rounded plate whose edge is a stroke of that width wholly inside rect.
void DrawPlate(QPainter& painter, const QRectF& rect, double radius, QRgb fill, QRgb edge, double width = 1);

// The edge alone.
void DrawOutline(QPainter& painter, const QRectF& rect, double radius, const QColor& colour, double width);

// Two strokes of equal length, crossed at the centre; extent is the width and height of their middle lines.
void DrawCross(QPainter& painter, QPointF centre, double extent, const QPen& pen);

// The program's mark: a screen on its foot with three ticks inside. Small ones do not scale, so each size has
// its own numbers, on whole pixels.
struct Mark {
    QRectF screen;
    double radius;
    double stroke;  // of the outline; the foot is as thick
    double footTop;
    double footWidth;
    double tickWidth;
    double tickStep;
    double tickFoot;    // y the three stand on
    double middleTick;  // heights
    double sideTick;
    QColor fill = Qt::transparent;
};
void DrawMark(QPainter& painter, const Mark& mark);

// 16 x 16 at the origin.
void DrawTrimIcon(QPainter& painter, QRgb colour);
void DrawBackIcon(QPainter& painter, QRgb colour);

// 32 x 32 at the origin, white with an ink edge, hot spot in the middle.
void DrawHandCursor(QPainter& painter);
void DrawBeamCursor(QPainter& painter);

}  // namespace kivo::artwork
