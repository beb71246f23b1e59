#include "compose/geometry.h"

namespace kivo {

QRect WireRect(const QRect& canvasRect, Orientation orientation) {
    if (orientation == Orientation::Landscape) {
        return canvasRect;
    }
    return QRect(canvasRect.top(), kPanelHeight - 1 - canvasRect.right(), canvasRect.height(),
                 canvasRect.width());
}

QVector<QRect> Halves(const QRect& rect) {
    const int half = rect.width() / 2;
    return {QRect(rect.left(), rect.top(), half, rect.height()),
            QRect(rect.left() + half, rect.top(), half, rect.height())};
}

QRect EvenPart(const QRect& rect) {
    return QRect(rect.left(), rect.top(), rect.width() / 2 * 2, rect.height());
}

QVector<QRect> ColumnsThatFit(const QRect& rect) {
    constexpr int kMostColumns = 4;
    int count = 1;
    // The widest column decides; it has the remainder of the division.
    while (count < kMostColumns &&
           !FitsOneReport(QRect(0, 0, (rect.width() + count - 1) / count, rect.height()))) {
        ++count;
    }
    QVector<QRect> columns;
    int left = rect.left();
    for (int k = 0; k < count; ++k) {
        const int right = rect.left() + rect.width() * (k + 1) / count;
        columns.append(QRect(left, rect.top(), right - left, rect.height()));
        left = right;
    }
    return columns;
}

QRectF KeptIn(QRectF rect, const QRectF& bounds) {
    // Not qBound, which wants room.
    rect.moveLeft(qMax(bounds.left(), qMin(rect.left(), bounds.right() - rect.width())));
    rect.moveTop(qMax(bounds.top(), qMin(rect.top(), bounds.bottom() - rect.height())));
    return rect;
}

}  // namespace kivo
