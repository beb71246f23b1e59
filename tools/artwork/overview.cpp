#include "overview.h"

#include "icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QRadialGradient>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace kivo::artwork {

namespace {

constexpr QRgb kWell = 0xFF0D1319;
constexpr QRgb kSceneEmblem = 0xFFF2C9A0;
constexpr QSize kOverviewSize(85, 98);
constexpr double kEmblemGrid = 34;

void DrawCardsEmblem(QPainter& painter) {
    // Whole numbers here are half pixels in the lying form's picture: sharp outlines.
    painter.drawRoundedRect(QRectF(1, 1, 14, 32), 3.5, 3.5);
    painter.drawRoundedRect(QRectF(19, 1, 14, 14), 3.5, 3.5);
    painter.drawRoundedRect(QRectF(19, 19, 14, 14), 3.5, 3.5);
    painter.drawArc(QRectF(4.3, 20, 7.4, 7.4), -45 * 16, 270 * 16);
}

void DrawSceneEmblem(QPainter& painter) {
    painter.drawPolyline(QVector<QPointF>{QPointF(1.5, 22), QPointF(10.5, 10), QPointF(15.5, 16.5),
                                          QPointF(22.5, 5.5), QPointF(32.5, 22)});
    painter.drawLine(QPointF(1.5, 29), QPointF(11.5, 29));
    painter.drawLine(QPointF(22.5, 29), QPointF(32.5, 29));
    painter.drawLine(QPointF(16.6, 29), QPointF(17.4, 29));
}

void DrawDialEmblem(QPainter& painter, const QColor& colour, double stroke) {
    painter.drawArc(QRectF(1, 2, 32, 32), -45 * 16, 270 * 16);
    for (int i = 0; i < 9; ++i) {
        const double angle = qDegreesToRadians(135 + 270.0 * i / 8);
        const QPointF out(std::cos(angle), std::sin(angle));
        painter.drawLine(QPointF(17, 18) + 10.2 * out, QPointF(17, 18) + 11.6 * out);
    }
    DrawIcon(painter, Icon::Bolt, QPointF(17, 18), 11, colour, stroke);
}

void DrawWatchEmblem(QPainter& painter) {
    painter.drawRoundedRect(QRectF(7, 2, 20, 30), 7, 7);
    painter.drawPolyline(QVector<QPointF>{QPointF(17, 10), QPointF(17, 17), QPointF(21.5, 17)});
    for (const double x : {1.0, 33.0}) {
        painter.drawLine(QPointF(x, 7), QPointF(x, 13));
        painter.drawLine(QPointF(x, 21), QPointF(x, 27));
    }
}

void DrawEmblem(QPainter& painter, Theme theme, QPointF centre, double size, double stroke,
                const QColor& colour) {
    const double scale = size / kEmblemGrid;
    painter.save();
    painter.translate(centre);
    painter.scale(scale, scale);
    painter.translate(-kEmblemGrid / 2, -kEmblemGrid / 2);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, stroke / scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    switch (theme) {
        case Theme::Default:
            DrawCardsEmblem(painter);
            break;
        case Theme::Scene:
            DrawSceneEmblem(painter);
            break;
        case Theme::Tdp:
            DrawDialEmblem(painter, colour, stroke / scale);
            break;
        case Theme::Time:
            DrawWatchEmblem(painter);
            break;
    }
    painter.restore();
}

// The panel reduced and sharpened a little: a third of the difference to its own blur is added.
QImage SmallPanel(const QImage& panel, QSize size) {
    const QImage small = panel.convertToFormat(QImage::Format_RGB32)
                             .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage sharp = small;
    const auto channel = [&](int x, int y, int shift) {
        const QRgb pixel =
            small.pixel(std::clamp(x, 0, small.width() - 1), std::clamp(y, 0, small.height() - 1));
        return static_cast<int>(pixel >> shift) & 0xFF;
    };
    for (int y = 0; y < small.height(); ++y) {
        for (int x = 0; x < small.width(); ++x) {
            QRgb result = 0xFF;
            for (const int shift : {16, 8, 0}) {
                const int here = channel(x, y, shift);
                const int around = channel(x - 1, y, shift) + channel(x + 1, y, shift) +
                                   channel(x, y - 1, shift) + channel(x, y + 1, shift);
                result =
                    (result << 8) | static_cast<QRgb>(std::clamp(here + (4 * here - around) / 8, 0, 255));
            }
            sharp.setPixel(x, y, result);
        }
    }
    return sharp;
}

}  // namespace

QImage DrawOverview(Theme theme, Orientation orientation, const QImage& panel, int scale) {
    const bool portrait = orientation == Orientation::Portrait;
    const QPointF centre = portrait ? QPointF(16.5, 49) : QPointF(42.5, 26.5);
    const QRect small = portrait ? QRect(33, 3, 49, 92) : QRect(3, 53, 79, 42);
    const QColor colour = QColor::fromRgb(theme == Theme::Scene ? kSceneEmblem : AccentOf(theme));

    QImage image(kOverviewSize * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    QPainterPath well;
    well.addRoundedRect(QRectF(QPointF(0, 0), kOverviewSize), 8, 8);
    painter.fillPath(well, QColor::fromRgb(kWell));
    QRadialGradient light(centre, 64);
    QColor glow = colour;
    glow.setAlphaF(0.24);
    light.setColorAt(0, glow);
    glow.setAlphaF(0);
    light.setColorAt(1, glow);
    painter.fillPath(well, light);
    DrawEmblem(painter, theme, centre, portrait ? 23 : 34, portrait ? 1.5 : 1.6, colour);

    // A texture brush keeps the rounded corners smooth; clipping would not.
    QBrush texture(SmallPanel(panel, small.size() * scale));
    texture.setTransform(QTransform::fromTranslate(small.x(), small.y()).scale(1.0 / scale, 1.0 / scale));
    QPainterPath plate;
    plate.addRoundedRect(QRectF(small), 5, 5);
    painter.fillPath(plate, texture);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(White(0.26), 1));
    painter.drawRoundedRect(QRectF(small).adjusted(0.5, 0.5, -0.5, -0.5), 4.5, 4.5);
    return image;
}

}  // namespace kivo::artwork
