#include "compose/glass.h"

#include <QLinearGradient>
#include <QPainter>

#include "compose/background_picture.h"
#include "compose/contrast.h"
#include "compose/frost.h"
#include "compose/panel_layout.h"

namespace kivo {

namespace {

constexpr QRgb kInk = qRgb(0x07, 0x13, 0x26);
constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kBlack = qRgb(0, 0, 0);

constexpr double kChipStrength = 0.62;
constexpr double kWhitePill = 0.80;

// The pixels of the blurred picture, half as large as the panel, under a rectangle of the panel.
QVector<QRgb> PixelsUnder(const QRect& rect, const QImage& blurred) {
    const QRect half = Corners(rect.left() / 2, rect.top() / 2, rect.right() / 2, rect.bottom() / 2);
    const QRect inside = half & blurred.rect();
    QVector<QRgb> pixels;
    pixels.reserve(inside.width() * inside.height());
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(blurred.constScanLine(y));
        for (int x = inside.left(); x <= inside.right(); ++x) {
            pixels.append(row[x]);
        }
    }
    return pixels;
}

// The pixels of picture that the text covers by half at least.
QVector<QRgb> PixelsUnder(const FreeTextBlock& block, const QImage& picture) {
    constexpr int kHalf = 128;
    QImage ink(picture.size(), QImage::Format_Grayscale8);
    ink.fill(Qt::black);
    {
        FreeTextBlock white = block;
        white.color = Qt::white;
        QPainter painter(&ink);
        DrawFreeText(painter, white, white.bounds);
    }
    QVector<QRgb> pixels;
    const QRect inside = block.bounds & picture.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        const uchar* row = ink.constScanLine(y);
        for (int x = inside.left(); x <= inside.right(); ++x) {
            if (row[x] >= kHalf) {
                pixels.append(picture.pixel(x, y));
            }
        }
    }
    return pixels;
}

GlassPlate Chip(const QRect& rect, const QImage& blurred) {
    const QVector<QRgb> ground = PixelsUnder(rect, blurred);
    return {rect, kChipRadius, kInk, LeastStrength(kWhite, kInk, ground, kChipStrength)};
}

GlassPlate Pill(const QRect& rect, const FreeTextBlock& text, const QImage& frosted) {
    const QRgb color = text.color.rgb();
    if (color == kBlack) {
        return {rect, kPillRadius, kWhite, kWhitePill};
    }
    return {rect, kPillRadius, kInk, LeastStrength(color, kInk, PixelsUnder(text, frosted), 0)};
}

QRectF Outline(const GlassPlate& plate, double inset) {
    return QRectF(plate.rect).adjusted(inset, inset, -inset, -inset);
}

}  // namespace

QVector<GlassPlate> GlassPlates(const ScreenState& state, const QImage& placed, const QImage& blurred,
                                const ItemFlags& bare) {
    QVector<GlassPlate> plates;
    const QSize canvas = CanvasSize(state.orientation);
    const auto onPanel = [canvas](const QImage& picture) {
        return picture.scaled(canvas, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    };
    const auto layout = LayOutPanel(state);
    for (const TakenRoom& room : layout->taken) {
        if (room.of == RoomOf::Chip) {
            if (!bare[size_t(room.item)]) {
                plates.append(Chip(room.rect, blurred));
            }
        } else if (room.of == RoomOf::Pill) {
            const FreeTextBlock& text = layout->freeText;
            const QImage plain =
                PanelPixels(onPanel(placed), HasSoftPicture(state.layout) ? WholeMask(canvas) : QImage());
            if (!IsReadable(text.color.rgb(), PixelsUnder(text, plain))) {
                plates.append(Pill(room.rect, text, onPanel(blurred)));
            }
        }
    }
    return plates;
}

void DrawPlates(QPainter& painter, const QVector<GlassPlate>& plates) {
    painter.setRenderHint(QPainter::Antialiasing);
    for (const GlassPlate& plate : plates) {
        QColor tint = plate.tint;
        tint.setAlphaF(plate.strength);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(Outline(plate, 0), plate.radius, plate.radius);

        // The edge that all glass has, lit from above.
        QLinearGradient light(plate.rect.topLeft(), plate.rect.bottomLeft());
        light.setColorAt(0, QColor::fromRgbF(1, 1, 1, 0.38));
        light.setColorAt(0.35, QColor::fromRgbF(1, 1, 1, 0.15));
        light.setColorAt(1, QColor::fromRgbF(1, 1, 1, 0.09));
        painter.setPen(QPen(QBrush(light), 1));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(Outline(plate, 0.5), plate.radius - 0.5, plate.radius - 0.5);
    }
}

void FillPlates(QPainter& painter, const QVector<GlassPlate>& plates) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    for (const GlassPlate& plate : plates) {
        painter.drawRoundedRect(Outline(plate, 0), plate.radius, plate.radius);
    }
}

}  // namespace kivo
