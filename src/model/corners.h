#pragma once

#include <QRect>

namespace kivo {

// A rectangle by its inclusive corners, as the layout tables write it. QRect counts the same way: right() and
// bottom() belong to the rectangle.
constexpr QRect Corners(int left, int top, int right, int bottom) {
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

}  // namespace kivo
