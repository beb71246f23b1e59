#include "icons.h"

#include <QPainterPath>
#include <QPen>
#include <QTransform>

namespace kivo::artwork {

namespace {

constexpr double kGrid = 24;

// What is stroked and what is filled.
struct Drawing {
    QPainterPath lines;
    QPainterPath solid;
};

void AddLine(QPainterPath& path, double x1, double y1, double x2, double y2) {
    path.moveTo(x1, y1);
    path.lineTo(x2, y2);
}

Drawing Thermometer() {
    Drawing drawing;
    // A bulb of radius 4.6 about (12, 16.9), met by a tube 6.2 wide whose sides leave it at 47.6 degrees.
    const QRectF bulb(7.4, 12.3, 9.2, 9.2);
    QPainterPath& path = drawing.lines;
    path.arcMoveTo(bulb, 132.4);
    path.arcTo(bulb, 132.4, 275.2);
    path.lineTo(15.1, 5.6);
    path.arcTo(QRectF(8.9, 2.5, 6.2, 6.2), 0, 180);
    path.closeSubpath();
    drawing.solid.addEllipse(QPointF(12, 16.9), 2.1, 2.1);
    drawing.solid.addRoundedRect(QRectF(11.1, 10.2, 1.8, 6), 0.9, 0.9);
    return drawing;
}

Drawing Chip() {
    Drawing drawing;
    drawing.lines.addRoundedRect(QRectF(5.8, 5.8, 12.4, 12.4), 2.5, 2.5);
    for (const double at : {9.4, 14.6}) {
        AddLine(drawing.lines, at, 2.4, at, 5.8);
        AddLine(drawing.lines, at, 18.2, at, 21.6);
        AddLine(drawing.lines, 2.4, at, 5.8, at);
        AddLine(drawing.lines, 18.2, at, 21.6, at);
    }
    drawing.solid.addRoundedRect(QRectF(9.8, 9.8, 4.4, 4.4), 0.8, 0.8);
    return drawing;
}

Drawing Memory() {
    Drawing drawing;
    drawing.lines.addRoundedRect(QRectF(1.8, 6.2, 20.4, 9.8), 2, 2);
    for (const double at : {7.2, 12.0, 16.8}) {
        AddLine(drawing.lines, at, 9.8, at, 12.4);
    }
    for (const double at : {4.8, 9.6, 14.4, 19.2}) {
        AddLine(drawing.lines, at, 16, at, 18.6);
    }
    return drawing;
}

Drawing Fan() {
    Drawing drawing;
    QPainterPath blade;
    blade.moveTo(12, 12);
    blade.cubicTo(8.6, 9.6, 6.9, 2.9, 12, 2.4);
    blade.cubicTo(17, 2.5, 16.2, 8.4, 12, 12);
    for (const double turn : {0.0, 120.0, 240.0}) {
        QTransform rotation;
        rotation.translate(12, 12.9);
        rotation.rotate(turn);
        rotation.translate(-12, -12);
        drawing.lines.addPath(rotation.map(blade));
    }
    drawing.solid.addEllipse(QPointF(12, 12.9), 1.6, 1.6);
    return drawing;
}

Drawing Bolt() {
    Drawing drawing;
    QPainterPath& path = drawing.lines;
    path.moveTo(13.4, 2.4);
    path.lineTo(5.2, 13.7);
    path.lineTo(11.3, 13.7);
    path.lineTo(10.6, 21.6);
    path.lineTo(18.8, 10.1);
    path.lineTo(12.7, 10.1);
    path.closeSubpath();
    return drawing;
}

Drawing Clock() {
    Drawing drawing;
    drawing.lines.addEllipse(QPointF(12, 12), 9.4, 9.4);
    drawing.lines.moveTo(12, 6.6);
    drawing.lines.lineTo(12, 12.4);
    drawing.lines.lineTo(15.8, 12.4);
    return drawing;
}

Drawing DrawingOf(Icon icon) {
    switch (icon) {
        case Icon::Thermometer:
            return Thermometer();
        case Icon::Chip:
            return Chip();
        case Icon::Memory:
            return Memory();
        case Icon::Fan:
            return Fan();
        case Icon::Bolt:
            return Bolt();
        case Icon::Clock:
            return Clock();
    }
    return {};
}

}  // namespace

void DrawIcon(QPainter& painter, Icon icon, QPointF centre, double size, const QColor& colour,
              double strokeWidth) {
    const double scale = size / kGrid;
    QTransform place;
    place.translate(centre.x(), centre.y());
    place.scale(scale, scale);
    place.translate(-kGrid / 2, -kGrid / 2);
    const Drawing drawing = DrawingOf(icon);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(place.map(drawing.lines));
    painter.fillPath(place.map(drawing.solid), colour);
}

QImage IconPicture(Icon icon, const QColor& colour, double drawnSize) {
    QImage image(static_cast<int>(kGrid), static_cast<int>(kGrid), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawIcon(painter, icon, QPointF(kGrid / 2, kGrid / 2), kGrid, colour, 1.5 * kGrid / drawnSize);
    return image;
}

}  // namespace kivo::artwork
