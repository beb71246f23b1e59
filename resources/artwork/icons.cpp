#include "icons.h"

#include "svg_drawing.h"

#include <array>

namespace kivo::artwork {

namespace {

constexpr double kGrid = 24;

SvgDrawing DrawingOf(Icon icon) {
    constexpr std::array<const char*, 6> kNames = {"thermometer", "chip", "memory", "fan", "bolt", "clock"};
    return SvgDrawing(QLatin1String(kNames[static_cast<size_t>(icon)]));
}

}  // namespace

void DrawIcon(QPainter& painter, Icon icon, QPointF centre, double size, const QColor& colour,
              double strokeWidth) {
    DrawingOf(icon)
        .SetColour(colour)
        .SetStrokeWidth(strokeWidth * kGrid / size)
        .Draw(painter, QRectF(centre - QPointF(size / 2, size / 2), QSizeF(size, size)));
}

QImage IconPicture(Icon icon, const QColor& colour, double drawnSize, int scale) {
    constexpr int kSide = static_cast<int>(kGrid);
    return DrawingOf(icon)
        .SetColour(colour)
        .SetStrokeWidth(1.5 * kGrid / drawnSize)
        .Picture(QSize(kSide, kSide) * scale);
}

}  // namespace kivo::artwork
