#include "skin_parts.h"

#include "noise.h"

#include <QLinearGradient>
#include <QPen>
#include <QRadialGradient>
#include <QTransform>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace kivo::artwork {

namespace {

constexpr double kMiddleThird = 0.34;
constexpr int kGrain = 4;

QRectF CircleRect(QPointF centre, double radius) {
    return {centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius};
}

QPointF OnCircle(QPointF centre, double radius, double clockwiseDegrees) {
    const double angle = qDegreesToRadians(clockwiseDegrees);
    return centre + radius * QPointF(std::cos(angle), std::sin(angle));
}

// How far beside (or above) the circle's centre the fillet's centre lies when the other distance is known:
// fillet and circle touch from outside.
double OtherLeg(double cutRadius, double fillet, double leg) {
    return std::sqrt((cutRadius + fillet) * (cutRadius + fillet) - leg * leg);
}

}  // namespace

QColor White(double alpha) {
    return QColor::fromRgbF(1, 1, 1, alpha);
}

QColor WithAlpha(QRgb rgb, double alpha) {
    QColor colour = QColor::fromRgb(rgb);
    colour.setAlphaF(alpha);
    return colour;
}

QSize PanelSize(Orientation orientation) {
    return orientation == Orientation::Landscape ? QSize(320, 170) : QSize(170, 320);
}

QSize SkinSize(Orientation orientation) {
    return orientation == Orientation::Landscape ? QSize(433, 230) : QSize(170, 320);
}

Layer::Layer(Orientation orientation, int scale)
    : m_image(SkinSize(orientation) * scale, QImage::Format_ARGB32_Premultiplied) {
    m_image.fill(Qt::transparent);
    m_painter.begin(&m_image);
    m_painter.setRenderHint(QPainter::Antialiasing);
    const QSizeF panel = PanelSize(orientation);
    m_painter.scale(m_image.width() / panel.width(), m_image.height() / panel.height());
}

QImage Layer::Finish() {
    m_painter.end();
    return m_image;
}

Shape RoundedCard(const QRectF& rect, double radius) {
    return [=](double inset) {
        QPainterPath path;
        path.addRoundedRect(rect.adjusted(inset, inset, -inset, -inset), radius - inset, radius - inset);
        return path;
    };
}

Shape Disc(QPointF centre, double radius) {
    return [=](double inset) {
        QPainterPath path;
        path.addEllipse(centre, radius - inset, radius - inset);
        return path;
    };
}

Shape SideWing(const QRectF& rect, double radius, QPointF centre, double cutRadius, double fillet) {
    return [=](double inset) {
        const QRectF box = rect.adjusted(inset, inset, -inset, -inset);
        const double up = centre.y() - (rect.top() + fillet);
        const double aside = OtherLeg(cutRadius, fillet, up);
        const QPointF head(centre.x() - aside, centre.y() - up);
        const QPointF foot(centre.x() - aside, centre.y() + up);
        const double angle = qRadiansToDegrees(std::atan2(up, aside));
        const double corner = 2 * (radius - inset);
        QPainterPath path;
        path.moveTo(head.x(), box.top());
        path.arcTo(CircleRect(head, fillet - inset), 90, -(90 + angle));
        path.arcTo(CircleRect(centre, cutRadius + inset), 180 - angle, 2 * angle);
        path.arcTo(CircleRect(foot, fillet - inset), angle, -(90 + angle));
        path.arcTo(QRectF(box.left(), box.bottom() - corner, corner, corner), 270, -90);
        path.arcTo(QRectF(box.left(), box.top(), corner, corner), 180, -90);
        path.closeSubpath();
        return path;
    };
}

Shape HeadWing(const QRectF& rect, double radius, QPointF centre, double cutRadius, double fillet) {
    return [=](double inset) {
        const QRectF box = rect.adjusted(inset, inset, -inset, -inset);
        const double up = centre.y() - (rect.bottom() - fillet);
        const double aside = OtherLeg(cutRadius, fillet, up);
        const QPointF left(centre.x() - aside, centre.y() - up);
        const QPointF right(centre.x() + aside, centre.y() - up);
        const double angle = qRadiansToDegrees(std::atan2(up, aside));
        const double corner = 2 * (radius - inset);
        QPainterPath path;
        path.moveTo(right.x(), box.bottom());
        path.arcTo(CircleRect(right, fillet - inset), 270, -(90 - angle));
        path.arcTo(CircleRect(centre, cutRadius + inset), angle, 180 - 2 * angle);
        path.arcTo(CircleRect(left, fillet - inset), 360 - angle, -(90 - angle));
        path.arcTo(QRectF(box.left(), box.bottom() - corner, corner, corner), 270, -90);
        path.arcTo(QRectF(box.left(), box.top(), corner, corner), 180, -90);
        path.arcTo(QRectF(box.right() - corner, box.top(), corner, corner), 90, -90);
        path.arcTo(QRectF(box.right() - corner, box.bottom() - corner, corner, corner), 0, -90);
        path.closeSubpath();
        return path;
    };
}

Shape MirroredX(const Shape& shape, double axis) {
    return [=](double inset) { return QTransform(-1, 0, 0, 1, 2 * axis, 0).map(shape(inset)); };
}

Shape MirroredY(const Shape& shape, double axis) {
    return [=](double inset) { return QTransform(1, 0, 0, -1, 0, 2 * axis).map(shape(inset)); };
}

void DrawGlass(QPainter& painter, const Shape& shape, double top) {
    const QPainterPath outline = shape(0);
    const QRectF bounds = outline.boundingRect();
    QLinearGradient glass(bounds.topLeft(), bounds.bottomLeft());
    glass.setColorAt(0, WithAlpha(kInk, top));
    glass.setColorAt(1, WithAlpha(kInk, 0.67));
    painter.fillPath(outline, glass);

    QLinearGradient edge(bounds.topLeft(), bounds.bottomLeft());
    edge.setColorAt(0, White(0.38));
    edge.setColorAt(0.35, White(0.15));
    edge.setColorAt(1, White(0.09));
    painter.strokePath(shape(0.5), QPen(edge, 1));
}

void DrawScrim(QPainter& painter, const QRectF& rect, const std::vector<std::pair<double, double>>& stops) {
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    for (const auto& [at, alpha] : stops) {
        gradient.setColorAt(at, WithAlpha(kInk, alpha));
    }
    painter.fillRect(rect, gradient);
}

void DrawUnderLight(QPainter& painter, QPointF centre, double radius, QRgb accent, double strength) {
    QRadialGradient gradient(centre, radius);
    gradient.setColorAt(0, WithAlpha(accent, strength));
    gradient.setColorAt(0.55, WithAlpha(accent, strength * 0.35));
    gradient.setColorAt(1, WithAlpha(accent, 0));
    painter.fillRect(CircleRect(centre, radius), gradient);
}

void DrawTick(QPainter& painter, QPointF from, QPointF to, double width, const QColor& colour) {
    // Round ends belong to the length.
    const QPointF along = to - from;
    const double length = std::hypot(along.x(), along.y());
    const QPointF end = along * (std::min(width, length) / 2 / length);
    painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(from + end, to - end);
}

void DrawHair(QPainter& painter, QPointF from, QPointF to) {
    painter.setPen(QPen(White(0.22), 1.4, Qt::SolidLine, Qt::FlatCap));
    painter.drawLine(from, to);
}

void DrawRing(QPainter& painter, const Ring& ring, QRgb accent) {
    // The arc fades to both ends as the ticks do. A conical gradient runs counter-clockwise from its angle.
    QConicalGradient fade(ring.centre, 270);
    fade.setColorAt(0.125, White(0.08));
    fade.setColorAt(0.36, White(0.16));
    fade.setColorAt(0.64, White(0.16));
    fade.setColorAt(0.875, White(0.08));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(fade, 1.5, Qt::SolidLine, Qt::FlatCap));
    QPainterPath arc;
    arc.arcMoveTo(CircleRect(ring.centre, ring.arcRadius), -45);
    arc.arcTo(CircleRect(ring.centre, ring.arcRadius), -45, 270);
    painter.drawPath(arc);

    const int middle = (ring.ticks - 1) / 2;
    for (int i = 0; i < ring.ticks; ++i) {
        const double angle = 135 + 270.0 * i / (ring.ticks - 1);
        const double k = std::abs(i - middle) / static_cast<double>(middle);
        const bool major = i % 6 == 0;
        const double alpha = (major ? 0.95 : 0.55) * (1 - 0.72 * k);
        const QColor colour = k < kMiddleThird ? QColor::fromRgb(accent) : White(alpha);
        DrawTick(painter, OnCircle(ring.centre, ring.innerRadius - (major ? 2.5 : 0), angle),
                 OnCircle(ring.centre, ring.outerRadius, angle), major ? 1.8 : 1.4, colour);
    }
}

void DrawFootScale(QPainter& painter, QPointF centre, QRgb accent) {
    constexpr double kPitch = 6;
    for (int i = -4; i <= 4; ++i) {
        const double half = i == 0 ? 3 : 2;
        const double alpha = 0.36 - (0.36 - 0.14) * (std::abs(i) - 1) / 3.0;
        const QColor colour = i == 0 ? QColor::fromRgb(accent) : White(alpha);
        const QPointF at = centre + QPointF(i * kPitch, 0);
        DrawTick(painter, at - QPointF(0, half), at + QPointF(0, half), 1.5, colour);
    }
}

void DrawTickFrame(QPainter& painter, const QRectF& rect, double radius, QRgb accent) {
    const double corner = 2 * radius;
    QPainterPath path(QPointF(rect.center().x(), rect.top()));
    path.arcTo(QRectF(rect.right() - corner, rect.top(), corner, corner), 90, -90);
    path.arcTo(QRectF(rect.right() - corner, rect.bottom() - corner, corner, corner), 0, -90);
    path.arcTo(QRectF(rect.left(), rect.bottom() - corner, corner, corner), 270, -90);
    path.arcTo(QRectF(rect.left(), rect.top(), corner, corner), 180, -90);
    path.closeSubpath();
    constexpr int kTicks = 60;
    for (int i = 0; i < kTicks; ++i) {
        const double at = i / static_cast<double>(kTicks);
        const QPointF from = path.pointAtPercent(at);
        // The path runs clockwise: inwards is a quarter turn to its right. Qt's angles are counter-clockwise.
        const double inwards = qDegreesToRadians(90 - path.angleAtPercent(at));
        const bool fifth = i % 5 == 0;
        const QPointF to = from + (fifth ? 6 : 4) * QPointF(std::cos(inwards), std::sin(inwards));
        DrawTick(painter, from, to, fifth ? 1.8 : 1.4, fifth ? QColor::fromRgb(accent) : White(0.34));
    }
}

QImage WithAlphaGrain(const QImage& image, quint64 seed) {
    QImage result = image.convertToFormat(QImage::Format_ARGB32);
    Random random(seed);
    for (int y = 0; y < result.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const int grain = random.Below(2 * kGrain + 1) - kGrain;
            const int alpha = qAlpha(line[x]);
            if (alpha > 8 && alpha < 215) {
                line[x] = qRgba(qRed(line[x]), qGreen(line[x]), qBlue(line[x]), alpha + grain);
            }
        }
    }
    return result;
}

}  // namespace kivo::artwork
