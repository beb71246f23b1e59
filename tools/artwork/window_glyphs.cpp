#include "window_glyphs.h"

#include "skin_parts.h"
#include "window_picture.h"

#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPolygonF>
#include <QTransform>

namespace kivo::artwork {

namespace {

// Ink round a white drawing, so that it is seen over any picture.
void DrawInked(QPainter& painter, const QPainterPath& shape) {
    QPainterPathStroker edge;
    edge.setWidth(2);
    edge.setJoinStyle(Qt::RoundJoin);
    painter.fillPath(edge.createStroke(shape).united(shape), WithAlpha(kInk, 0.92));
    painter.fillPath(shape, Qt::white);
}

// A round-ended bar, for fingers.
QPainterPath Bar(QPointF from, QPointF to, double width) {
    QPainterPath line(from);
    line.lineTo(to);
    QPainterPathStroker stroker;
    stroker.setWidth(width);
    stroker.setCapStyle(Qt::RoundCap);
    return stroker.createStroke(line);
}

// An arrow head whose tip lies `reach` above the centre, turned clockwise.
QPainterPath ArrowHead(QPointF centre, double reach, double degrees) {
    QPainterPath head;
    head.addPolygon(QPolygonF({QPointF(0, -reach), QPointF(3.2, 4 - reach), QPointF(-3.2, 4 - reach)}));
    head.closeSubpath();
    QTransform place;
    place.translate(centre.x(), centre.y());
    place.rotate(degrees);
    return place.map(head);
}

}  // namespace

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

void DrawCross(QPainter& painter, QPointF centre, double extent, const QPen& pen) {
    const double half = extent / 2;
    painter.setPen(pen);
    painter.drawLine(centre - QPointF(half, half), centre + QPointF(half, half));
    painter.drawLine(centre - QPointF(half, -half), centre + QPointF(half, -half));
}

void DrawMark(QPainter& painter, const QRectF& rect, double stroke, const QColor& fill) {
    using namespace window;
    const double unit = rect.width() / 21;
    const QRectF screen(rect.x(), rect.y(), rect.width(), 15 * unit);
    QPainterPath inside;
    inside.addRoundedRect(screen.adjusted(stroke / 2, stroke / 2, -stroke / 2, -stroke / 2), 3 * unit,
                          3 * unit);
    painter.fillPath(inside, fill);
    DrawOutline(painter, screen, 4.2 * unit, QColor::fromRgb(kTextHigh), stroke);
    const double footY = rect.y() + 19 * unit - stroke / 2;
    painter.setPen(RoundPen(kTextHigh, stroke));
    painter.drawLine(QPointF(rect.center().x() - 3.6 * unit, footY),
                     QPointF(rect.center().x() + 3.6 * unit, footY));
    painter.setPen(RoundPen(kAccent, 1.9 * unit));
    for (const int side : {-1, 0, 1}) {
        const double half = (side == 0 ? 2.3 : 1.1) * unit;
        const double foot = screen.center().y() + 2.3 * unit;
        const double x = screen.center().x() + 3.7 * unit * side;
        painter.drawLine(QPointF(x, foot - 2 * half), QPointF(x, foot));
    }
}

void DrawTrimIcon(QPainter& painter, QRgb colour) {
    painter.setPen(RoundPen(colour, 1.6));
    painter.drawPolyline(QPolygonF({QPointF(4.5, 1.2), QPointF(4.5, 11.5), QPointF(14.8, 11.5)}));
    painter.drawPolyline(QPolygonF({QPointF(1.2, 4.5), QPointF(11.5, 4.5), QPointF(11.5, 14.8)}));
}

void DrawBackIcon(QPainter& painter, QRgb colour) {
    painter.setPen(RoundPen(colour, 1.6));
    QPainterPath path(QPointF(5, 13.5));
    path.lineTo(10, 13.5);
    path.arcTo(QRectF(6, 5.5, 8, 8), -90, 180);
    path.lineTo(2, 5.5);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.drawPolyline(QPolygonF({QPointF(5.2, 2.3), QPointF(2, 5.5), QPointF(5.2, 8.7)}));
}

void DrawHandCursor(QPainter& painter) {
    const QPointF centre(16, 16);
    QPainterPath shape;
    shape.setFillRule(Qt::WindingFill);
    for (const int turn : {0, 90, 180, 270}) {
        shape = shape.united(ArrowHead(centre, 15, turn));
    }
    QPainterPath hand = Bar(QPointF(12.2, 14), QPointF(12.2, 18), 2.6);
    hand = hand.united(Bar(QPointF(15, 11.8), QPointF(15, 18), 2.6));
    hand = hand.united(Bar(QPointF(17.8, 11.8), QPointF(17.8, 18), 2.6));
    hand = hand.united(Bar(QPointF(20.4, 13.6), QPointF(20.4, 18), 2.6));
    hand = hand.united(Bar(QPointF(9.6, 16.6), QPointF(12.4, 20), 2.6));
    QPainterPath palm;
    palm.addRoundedRect(QRectF(11, 16, 10.7, 6), 2.6, 2.6);
    DrawInked(painter, shape.united(hand.united(palm)));
}

void DrawBeamCursor(QPainter& painter) {
    const QPointF centre(16, 16);
    QPainterPath shape = ArrowHead(centre, 15, 0).united(ArrowHead(centre, 15, 180));
    shape = shape.united(Bar(QPointF(16, 9.8), QPointF(16, 22.2), 2));
    shape = shape.united(Bar(QPointF(13, 9.8), QPointF(19, 9.8), 2));
    shape = shape.united(Bar(QPointF(13, 22.2), QPointF(19, 22.2), 2));
    DrawInked(painter, shape);
}

}  // namespace kivo::artwork
