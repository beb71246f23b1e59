#include "compose/panel_room.h"

#include <algorithm>

namespace kivo {

namespace {

constexpr int kInkGap = 6;   // between the free text's ink and any other
constexpr int kPillGap = 3;  // between its pill and a chip
// Between its pill and the panel's edges; a line of a row's whole width leaves less at the sides.
constexpr QMargins kEdgeGap{1, 2, 1, 2};
constexpr int kNarrowest = 48;  // a column narrower than that holds no words

// What the free text's ink leaves free around it.
QMargins DistanceTo(RoomOf of) {
    switch (of) {
        case RoomOf::Value:
        case RoomOf::Caption:
            return {kInkGap, kInkGap, kInkGap, kInkGap};
        case RoomOf::Chip:
            return kPillPadding + kPillGap;
        case RoomOf::FreeText:
        case RoomOf::Pill:
            break;
    }
    return {};
}

// The rectangles that the ink must not reach into.
QVector<QRect> Barred(const QVector<TakenRoom>& taken, const QRect& frame) {
    QVector<QRect> barred;
    for (const TakenRoom& room : taken) {
        if (room.of == RoomOf::FreeText || room.of == RoomOf::Pill) {
            continue;
        }
        const QRect rect = room.rect.marginsAdded(DistanceTo(room.of)) & frame;
        if (!rect.isEmpty()) {
            barred.append(rect);
        }
    }
    std::sort(barred.begin(), barred.end(), [](const QRect& a, const QRect& b) { return a.top() < b.top(); });
    return barred;
}

void AppendOnce(QVector<QRect>& areas, const QRect& area) {
    if (!areas.contains(area)) {
        areas.append(area);
    }
}

// The stretches of a column that nothing bars; barred is sorted by the top.
void AppendStretches(QVector<QRect>& areas, const QRect& column, const QVector<QRect>& barred) {
    int top = column.top();
    for (const QRect& rect : barred) {
        if (!rect.intersects(column)) {
            continue;
        }
        if (rect.top() > top) {
            AppendOnce(areas, Corners(column.left(), top, column.right(), rect.top() - 1));
        }
        top = qMax(top, rect.bottom() + 1);
    }
    if (top <= column.bottom()) {
        AppendOnce(areas, Corners(column.left(), top, column.right(), column.bottom()));
    }
}

bool IsInTheMiddle(const QRect& area, const QRect& canvas) {
    return area.left() + area.right() == canvas.left() + canvas.right();
}

// Without those that lie in another one. One in the middle stays, unless the other is in the middle too.
QVector<QRect> Largest(const QVector<QRect>& areas, const QRect& canvas) {
    QVector<QRect> largest;
    for (const QRect& area : areas) {
        const auto isBetter = [&](const QRect& other) {
            return other != area && other.contains(area) &&
                   (IsInTheMiddle(other, canvas) || !IsInTheMiddle(area, canvas));
        };
        if (std::none_of(areas.begin(), areas.end(), isBetter)) {
            largest.append(area);
        }
    }
    std::stable_sort(largest.begin(), largest.end(),
                     [](const QRect& a, const QRect& b) { return a.width() > b.width(); });
    return largest;
}

}  // namespace

QVector<QRect> FreeAreas(const QVector<TakenRoom>& taken, Orientation orientation) {
    const QRect canvas(QPoint(0, 0), CanvasSize(orientation));
    const QRect frame = canvas.marginsRemoved(kPillPadding + kEdgeGap);
    const QVector<QRect> barred = Barred(taken, frame);
    QVector<int> lefts{frame.left()};
    QVector<int> rights{frame.right()};
    for (const QRect& rect : barred) {
        lefts.append(rect.right() + 1);
        rights.append(rect.left() - 1);
    }
    QVector<QRect> areas;
    for (const int left : qAsConst(lefts)) {
        for (const int right : qAsConst(rights)) {
            // The whole column, and the part of it that both sides of the panel leave.
            const int inset = qMax(left, canvas.width() - 1 - right);
            for (const QPair<int, int>& sides :
                 {qMakePair(left, right), qMakePair(inset, canvas.width() - 1 - inset)}) {
                if (sides.second - sides.first + 1 >= kNarrowest) {
                    AppendStretches(areas, Corners(sides.first, frame.top(), sides.second, frame.bottom()),
                                    barred);
                }
            }
        }
    }
    return Largest(areas, canvas);
}

}  // namespace kivo
