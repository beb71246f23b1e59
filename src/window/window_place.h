#pragma once

// Where the window stands. It has no frame, so what has left the screens cannot be fetched back by hand.
// Pure; desktop coordinates in device-independent pixels. A room is what a screen leaves to windows.

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVector>

namespace kivo {

// In the middle of a room. A low room cuts the window's foot off, never its head.
QPoint CentredIn(const QRect& room, const QSize& window);

// The nearest corner at which the window is wholly in sight, in the room that has most of it, else in the
// nearest one. Where the room is too small the window's upper left part is in sight. Its own corner where
// there is no room at all.
QPoint BroughtInto(const QRect& window, const QVector<QRect>& rooms);

// Whether a person can still drag the window by its head, this many pixels high: half of it is in one room.
bool IsHeadInSight(const QRect& window, int headHeight, const QVector<QRect>& rooms);

}  // namespace kivo
