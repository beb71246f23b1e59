#include "window/window_place.h"

#include <algorithm>

namespace kivo {

namespace {

qint64 Area(const QRect& rect) {
    return qint64(rect.width()) * rect.height();
}

// The upper or left end counts where the whole does not fit.
int Moved(int begin, int length, int roomBegin, int roomLength) {
    return std::max(roomBegin, std::min(begin, roomBegin + roomLength - length));
}

QPoint MovedInto(const QRect& room, const QRect& window) {
    return {Moved(window.left(), window.width(), room.left(), room.width()),
            Moved(window.top(), window.height(), room.top(), room.height())};
}

}  // namespace

QPoint CentredIn(const QRect& room, const QSize& window) {
    const QPoint corner =
        room.topLeft() + QPoint((room.width() - window.width()) / 2, (room.height() - window.height()) / 2);
    return {std::max(room.left(), corner.x()), std::max(room.top(), corner.y())};
}

QPoint BroughtInto(const QRect& window, const QVector<QRect>& rooms) {
    const auto best = std::min_element(rooms.begin(), rooms.end(), [&](const QRect& a, const QRect& b) {
        const qint64 seenA = Area(a & window);
        const qint64 seenB = Area(b & window);
        const auto way = [&](const QRect& room) {
            return (MovedInto(room, window) - window.topLeft()).manhattanLength();
        };
        return seenA != seenB ? seenA > seenB : way(a) < way(b);
    });
    return best == rooms.end() ? window.topLeft() : MovedInto(*best, window);
}

bool IsHeadInSight(const QRect& window, int headHeight, const QVector<QRect>& rooms) {
    const QRect head(window.topLeft(), QSize(window.width(), headHeight));
    return std::any_of(rooms.begin(), rooms.end(), [&](const QRect& room) {
        const QRect seen = room & head;
        return seen.width() >= head.width() / 2 && seen.height() >= head.height() / 2;
    });
}

}  // namespace kivo
