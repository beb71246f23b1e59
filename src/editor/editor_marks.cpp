#include "editor/editor_marks.h"

#include <QPainter>
#include <QPainterPath>
#include <array>

#include "compose/geometry.h"
#include "compose/panel_room.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace {

constexpr double kLine = 1.5;
constexpr QColor kIdleOutline(255, 255, 255, 115);  // .45
constexpr double kDash = 4;                         // pixels
constexpr double kGap = 3;

constexpr QColor kGhostGround(0x07, 0x13, 0x26, 217);  // the panel's ink, .85
constexpr QColor kGhostEdge(255, 255, 255, 64);        // .25

constexpr QColor kLeftOut(0x07, 0x13, 0x26, 140);  // the panel's ink, .55
constexpr double kCornerSide = 10;
constexpr double kBarLength = 16;
constexpr double kBarWidth = 4;

QRectF About(QPointF middle, double width, double height) {
    return QRectF(middle.x() - width / 2, middle.y() - height / 2, width, height);
}

}  // namespace

void DrawOutline(QPainter& painter, const QRectF& rect, double radius, Mark mark) {
    QPen pen(mark == Mark::Active ? window_colors::kAccentBright : kIdleOutline, kLine);
    if (mark == Mark::Idle) {
        pen.setDashPattern({kDash / kLine, kGap / kLine});
        pen.setCapStyle(Qt::FlatCap);
    }
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect, radius, radius);
}

void DrawGhostChip(QPainter& painter, const QRect& chip) {
    painter.setPen(QPen(kGhostEdge, 1));
    painter.setBrush(kGhostGround);
    painter.drawRoundedRect(QRectF(chip).adjusted(0.5, 0.5, -0.5, -0.5), kChipRadius - 0.5,
                            kChipRadius - 0.5);
}

void DrawTrimFrame(QPainter& painter, const QRectF& frame, const QRectF& shown, const QRectF& bounds) {
    QPainterPath leftOut;
    leftOut.setFillRule(Qt::OddEvenFill);
    leftOut.addRect(shown);
    leftOut.addRect(frame);
    painter.fillPath(leftOut, kLeftOut);

    painter.setPen(QPen(window_colors::kAccentBright, kLine));
    painter.setBrush(Qt::NoBrush);
    // Inside whole pixels, so that its four sides are alike.
    const QRect whole(frame.topLeft().toPoint(), frame.bottomRight().toPoint() - QPoint(1, 1));
    constexpr double kHalf = kLine / 2;
    painter.drawRect(QRectF(whole).adjusted(kHalf, kHalf, -kHalf, -kHalf));

    painter.setPen(Qt::NoPen);
    painter.setBrush(window_colors::kAccentBright);
    const QPointF middle = frame.center();
    const std::array bars{About(QPointF(middle.x(), frame.top()), kBarLength, kBarWidth),
                          About(QPointF(middle.x(), frame.bottom()), kBarLength, kBarWidth),
                          About(QPointF(frame.left(), middle.y()), kBarWidth, kBarLength),
                          About(QPointF(frame.right(), middle.y()), kBarWidth, kBarLength)};
    // A handle at the very edge is moved in, so that it can still be seen whole.
    for (const QRectF& bar : bars) {
        painter.drawRoundedRect(KeptIn(bar, bounds), kBarWidth / 2, kBarWidth / 2);
    }

    painter.setPen(QPen(window_colors::kAccentBright, 1));
    painter.setBrush(Qt::white);
    for (const QPointF& corner :
         {frame.topLeft(), frame.topRight(), frame.bottomLeft(), frame.bottomRight()}) {
        // The edge is drawn on the middle of its line.
        painter.drawRect(
            KeptIn(About(corner, kCornerSide, kCornerSide), bounds).adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

}  // namespace kivo
