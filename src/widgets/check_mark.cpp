#include "widgets/check_mark.h"

#include <QPainter>
#include <array>

namespace kivo {

void DrawCheckMark(QPainter& painter, const QPointF& middle, const QColor& ink) {
    constexpr qreal kWidth = 1.6;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, kWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    const std::array<QPointF, 3> check{middle + QPointF(-3, 0.2), middle + QPointF(-0.9, 2.3),
                                       middle + QPointF(3.1, -2.2)};
    painter.drawPolyline(check.data(), int(check.size()));
}

}  // namespace kivo
