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

}  // namespace kivo::artwork
