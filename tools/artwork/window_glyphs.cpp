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

void DrawMark(QPainter& painter, const Mark& mark) {
    using namespace window;
    QPainterPath inside;
    const double inset = mark.stroke / 2;
    inside.addRoundedRect(mark.screen.adjusted(inset, inset, -inset, -inset), mark.radius, mark.radius);
    painter.fillPath(inside, mark.fill);
    DrawOutline(painter, mark.screen, mark.radius, QColor::fromRgb(kTextHigh), mark.stroke);
    const auto fillRounded = [&](const QRectF& rect, QRgb colour) {
        const double radius = qMin(rect.width(), rect.height()) / 2;
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(colour));
        painter.drawRoundedRect(rect, radius, radius);
    };
    const double middle = mark.screen.center().x();
    fillRounded(QRectF(middle - mark.footWidth / 2, mark.footTop, mark.footWidth, mark.stroke), kTextHigh);
    for (const int side : {-1, 0, 1}) {
        const double height = side == 0 ? mark.middleTick : mark.sideTick;
        fillRounded(QRectF(middle + side * mark.tickStep - mark.tickWidth / 2, mark.tickFoot - height,
                           mark.tickWidth, height),
                    kAccent);
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
    // An open hand; the fingers stand a pixel apart, so that ink shows between them.
    QPainterPath hand;
    hand.addRoundedRect(QRectF(11.7, 15.4, 11.6, 7.4), 3.4, 3.4);
    hand = hand.united(Bar(QPointF(12.9, 12), QPointF(12.9, 17), 2.2));
    hand = hand.united(Bar(QPointF(16, 10.2), QPointF(16, 17), 2.2));
    hand = hand.united(Bar(QPointF(19.1, 10.4), QPointF(19.1, 17), 2.2));
    hand = hand.united(Bar(QPointF(22.2, 12.4), QPointF(22.2, 18), 2.2));
    hand = hand.united(Bar(QPointF(9.3, 16.6), QPointF(13.5, 20.6), 2.4));
    DrawInked(painter, shape.united(hand));
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
