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

}  // namespace kivo::artwork
