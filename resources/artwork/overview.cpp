#include "overview.h"

#include "svg_drawing.h"

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
constexpr QRgb kEmblemWithoutAccent = 0xFFF2C9A0;
constexpr QSize kOverviewSize(85, 98);
constexpr double kEmblemGrid = 34;

void DrawEmblem(QPainter& painter, Theme theme, QPointF centre, double size, double stroke,
                const QColor& colour) {
    SvgDrawing(QStringLiteral("emblem_") + QString(NameOf(theme)).toLower())
        .SetColour(colour)
        .SetStrokeWidth(stroke * kEmblemGrid / size)
        .Draw(painter, QRectF(centre - QPointF(size / 2, size / 2), QSizeF(size, size)));
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
    const QColor colour = QColor::fromRgb(HasAccent(theme) ? FactsOf(theme).accent : kEmblemWithoutAccent);

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
