#include "skin_parts.h"
#include "window_glyphs.h"
#include "window_picture.h"

#include <QFont>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>

namespace kivo::artwork {

namespace {

using namespace window;

constexpr QSize kWindow(960, 588);
constexpr int kScale = 2;

// Ordered thresholds, 0..63: a slow gradient goes from one byte to the next through patterns that nobody
// sees, and that pack well.
constexpr std::array<int, 64> kThresholds = {0,  32, 8,  40, 2,  34, 10, 42, 48, 16, 56, 24, 50, 18, 58, 26,
                                             12, 44, 4,  36, 14, 46, 6,  38, 60, 28, 52, 20, 62, 30, 54, 22,
                                             3,  35, 11, 43, 1,  33, 9,  41, 51, 19, 59, 27, 49, 17, 57, 25,
                                             15, 47, 7,  39, 13, 45, 5,  37, 63, 31, 55, 23, 61, 29, 53, 21};

// The gradient with its light. One threshold a window pixel, not a device pixel: shown at half size the four
// of a window pixel must still agree.
QImage DrawGradient() {
    constexpr QRgb kLight = 0xFF2A6E73;
    QImage image(kWindow * kScale, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        const int row = y / kScale;
        const double down = (row + 0.5) / kWindow.height();
        for (int x = 0; x < image.width(); ++x) {
            const int column = x / kScale;
            const double away = std::hypot(column + 0.5 - 265, row + 0.5 - 40) / 420;
            const double light = 0.16 * std::max(0.0, 1 - away);
            const double threshold = (kThresholds[static_cast<size_t>(row % 8 * 8 + column % 8)] + 0.5) / 64;
            const auto channel = [&](int top, int foot, int lit) {
                const double ground = top + (foot - top) * down;
                return static_cast<int>(std::floor(ground + (lit - ground) * light + threshold));
            };
            line[x] = qRgb(channel(qRed(kGroundTop), qRed(kGroundFoot), qRed(kLight)),
                           channel(qGreen(kGroundTop), qGreen(kGroundFoot), qGreen(kLight)),
                           channel(qBlue(kGroundTop), qBlue(kGroundFoot), qBlue(kLight)));
        }
    }
    return image;
}

// 113 ticks on a middle line, standing on y 557. The middle lies between two pixels, so all are two wide.
void DrawScale(QPainter& painter) {
    constexpr int kSide = 56;
    painter.setPen(Qt::NoPen);
    for (int i = -kSide; i <= kSide; ++i) {
        const bool major = i % 7 == 0;
        const double height = i == 0 ? 10 : major ? 7 : 4;
        const double fade = 1 - std::pow(std::abs(i) / (kSide + 1.0), 1.5);
        painter.setBrush(i == 0 ? QColor::fromRgb(kAccent) : White((major ? 0.22 : 0.13) * fade));
        painter.drawRoundedRect(QRectF(479 + 8 * i, 557 - height, 2, height), 1, 1);
    }
}

void DrawWordmark(QPainter& painter) {
    QFont font;
    font.setFamilies({QStringLiteral("Microsoft YaHei"), QStringLiteral("Noto Sans CJK SC")});
    font.setPixelSize(14);
    QPainterPath path;
    path.addText(QPointF(50, 46), font, QStringLiteral("Kivo Screen"));
    // The family has no medium weight; a thin line round the regular one makes it.
    painter.setBrush(QColor::fromRgb(kTextHigh));
    painter.setPen(RoundPen(kTextHigh, 0.3));
    painter.drawPath(path);
}

}  // namespace

QImage DrawGround() {
    QImage image = DrawGradient();
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(kScale, kScale);
    DrawOutline(painter, QRectF(QPointF(0, 0), kWindow), 0.5, QColor::fromRgb(kCardEdge), 1);
    DrawPlate(painter, QRectF(32, 102, 468, 430), 14, kCard, kCardEdge);
    DrawPlate(painter, QRectF(508, 102, 420, 430), 14, kCard, kCardEdge);
    DrawPlate(painter, QRectF(526, 51, 305, 48), 13, kWell, kWellEdge);
    DrawScale(painter);
    DrawWordmark(painter);
    return image;
}

}  // namespace kivo::artwork
