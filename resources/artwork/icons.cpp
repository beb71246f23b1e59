#include "icons.h"

#include "svg_drawing.h"

namespace kivo::artwork {

namespace {

constexpr double kGrid = 24;

const char* NameOf(Icon icon) {
    switch (icon) {
        case Icon::Thermometer:
            return "thermometer";
        case Icon::Chip:
            return "chip";
        case Icon::Memory:
            return "memory";
        case Icon::Fan:
            return "fan";
        case Icon::Bolt:
            return "bolt";
        case Icon::Clock:
            return "clock";
    }
    qFatal("There is no such icon.");
}

SvgDrawing DrawingOf(Icon icon) {
    return SvgDrawing(QLatin1String(NameOf(icon)));
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
