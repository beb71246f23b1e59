#include "window_glyphs.h"

#include <QPainterPath>

namespace kivo::artwork {

QPen RoundPen(QRgb colour, double width) {
    return QPen(QColor::fromRgb(colour), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
}

void DrawOutline(QPainter& painter, const QRectF& rect, double radius, const QColor& colour, double width) {
    const double inset = width / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, width));
    painter.drawRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
}

void DrawPlate(QPainter& painter, const QRectF& rect, double radius, QRgb fill, QRgb edge, double width) {
    QPainterPath inside;
    const double inset = width / 2;
    inside.addRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
    painter.fillPath(inside, QColor::fromRgb(fill));
    DrawOutline(painter, rect, radius, QColor::fromRgb(edge), width);
}

}  // namespace kivo::artwork
