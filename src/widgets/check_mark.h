#pragma once

#include <QPointF>

class QColor;
class QPainter;

namespace kivo {

// The round-ended check that says which of several pictures or colours is the one in use, some 6 by 5 points
// large, about middle. GUI thread.
void DrawCheckMark(QPainter& painter, const QPointF& middle, const QColor& ink);

}  // namespace kivo
