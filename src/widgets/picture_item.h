#pragma once

// How a picture with its name looks in a list: shared by the delegates, so that both lists are alike.
// Distances in pixels of the list.

#include <QRect>
#include <QSize>

class QModelIndex;
class QPainter;
class QStyleOptionViewItem;

namespace kivo {

// The size of an item: the picture, 6 pixels round it, and a line for the name where it has one.
QSize PictureItemSize(const QSize& pictureSize, bool hasName);

// Where the picture stands in its item, and the radius of its corners.
QRect PicturePlace(const QRect& itemRect, const QSize& pictureSize);
inline constexpr qreal kPictureRadius = 6;

// What is left for the name below the picture of an item that has one, and how large it is written.
QRect NamePlace(const QRect& itemRect, const QSize& pictureSize);
inline constexpr int kNamePixels = 11;

// The picture in its place of the item, as large as option.decorationSize, with round corners; below it the
// name, elided by option.textElideMode where it is too long. A selected item's picture has a disc with a
// check in its corner.
void DrawPictureItem(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                     const QString& name, bool isAction);

// The frame of an item that is selected, and the quieter one of an item under the mouse. It keeps to the
// screen's pixels that lie wholly inside the item: only those are sure to be painted again when the item
// changes.
void DrawItemFrame(QPainter& painter, const QStyleOptionViewItem& option);

}  // namespace kivo
