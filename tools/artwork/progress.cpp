#include "progress.h"

#include "window_glyphs.h"
#include "window_picture.h"

#include <QPainter>
#include <QPolygonF>

#include <array>
#include <cmath>

namespace kivo::artwork {

namespace {

using namespace window;

constexpr int kSide = 128;
constexpr double kMiddle = kSide / 2.0;
constexpr int kTicks = 24;
constexpr std::array<QRgb, 6> kComet = {kAccent, 0xFF46BFA7, 0xFF3D9E8D, 0xFF327C74, 0xFF2C5A5B, kCardEdge};

// Head and four pairs of tail ticks; the last step is the rest of the ring.
QRgb TickColour(int behindHead) {
    constexpr int kLength = 9;
    return behindHead < kLength ? kComet[static_cast<size_t>((behindHead + 1) / 2)] : kComet.back();
}

void DrawScreenWithArrow(QPainter& painter) {
    DrawOutline(painter, QRectF(-22, -13, 44, 26), 5, Qt::white, 2);
    painter.setPen(RoundPen(0xFFFFFFFF, 2));
    painter.drawLine(QPointF(-8, 17), QPointF(8, 17));
    painter.setPen(RoundPen(kAccent, 2));
    painter.drawLine(QPointF(0, 6.5), QPointF(0, -6));
    painter.drawPolyline(QPolygonF({QPointF(-4.5, -1.5), QPointF(0, -6), QPointF(4.5, -1.5)}));
}

// Below 32 there is no room for a plate; the screen's own inside is dark then, so that the mark holds on a
// light task bar too.
Mark LogoMark(int side) {
    const QColor dark = QColor::fromRgb(kGroundTop);
    switch (side) {
        case 16:
            return {QRectF(0, 1, 16, 11), 3.2, 1.5, 13.5, 6, 2, 4, 9, 5, 3, dark};
        case 20:
            return {QRectF(0, 2, 20, 13), 4, 1.6, 17, 8, 2, 4, 12, 7, 4, dark};
        case 24:
            return {QRectF(0, 2, 24, 16), 5, 2, 20, 8, 2, 5, 14, 8, 5, dark};
        case 32:
            return {QRectF(6, 7, 20, 14), 4, 2, 23, 8, 2, 4, 17, 6, 4};
        default:
            return {QRectF(9, 11, 30, 20), 6.5, 3, 34, 12, 4, 7, 26, 11, 7};
    }
}

}  // namespace

std::vector<QImage> DrawProgress(int scale) {
    std::vector<QImage> frames;
    for (int head = 0; head < kTicks; ++head) {
        QImage image(kSide * scale, kSide * scale, QImage::Format_RGB32);
        image.fill(kTrack);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(scale, scale);
        painter.translate(kMiddle, kMiddle);
        painter.setPen(QPen(QColor::fromRgb(kCardEdge), 2));
        painter.drawEllipse(QPointF(0, 0), 62, 62);
        for (int tick = 0; tick < kTicks; ++tick) {
            painter.save();
            painter.rotate(360.0 * tick / kTicks);
            painter.setPen(RoundPen(TickColour((head - tick + kTicks) % kTicks), 3));
            painter.drawLine(QPointF(0, -41.5), QPointF(0, -46.5));
            painter.restore();
        }
        DrawScreenWithArrow(painter);
        painter.end();
        frames.push_back(image);
    }
    return frames;
}

QVector<QRgb> ProgressPalette() {
    constexpr int kSteps = 30;
    QVector<QRgb> palette = {kTrack};
    QVector<QRgb> colours = {0xFFFFFFFF};
    for (const QRgb colour : kComet) {
        colours.append(colour);
    }
    for (const QRgb colour : qAsConst(colours)) {
        for (int step = 1; step <= kSteps; ++step) {
            const auto mix = [&](int from, int to) { return from + (to - from) * step / kSteps; };
            palette.append(qRgb(mix(qRed(kTrack), qRed(colour)), mix(qGreen(kTrack), qGreen(colour)),
                                mix(qBlue(kTrack), qBlue(colour))));
        }
    }
    return palette;
}

QImage DrawProgressMask() {
    constexpr double kRadius = 63;
    QImage mask(kSide, kSide, QImage::Format_ARGB32);
    mask.fill(Qt::transparent);
    // By hand: an ellipse without antialiasing would lie half a pixel aside.
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            if (std::hypot(x + 0.5 - kMiddle, y + 0.5 - kMiddle) <= kRadius) {
                mask.setPixel(x, y, kTrack);
            }
        }
    }
    return mask;
}

QImage DrawLogo(int side) {
    constexpr int kLargestDrawn = 48;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (side > kLargestDrawn) {
        painter.scale(side / double(kLargestDrawn), side / double(kLargestDrawn));
    }
    const int drawn = qMin(side, kLargestDrawn);
    const Mark mark = LogoMark(drawn);
    if (mark.fill.alpha() == 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(kGroundTop));
        painter.drawRoundedRect(QRectF(0, 0, drawn, drawn), drawn * 0.22, drawn * 0.22);
    }
    DrawMark(painter, mark);
    painter.end();
    return image;
}

}  // namespace kivo::artwork
