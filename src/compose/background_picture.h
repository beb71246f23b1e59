#pragma once

// The picture behind a layout: the part of it that is shown. Any thread.

#include <QImage>
#include <QRect>
#include <QSize>

#include "compose/geometry.h"
#include "compose/layout_record.h"

namespace kivo {

// The part of a picture (in its own pixels) that fills the panel: as much as covers it, centred, or the trim
// frame of the layout. The trim frame has the panel's shape and stays inside the picture.
QRectF ShownPart(QSize picture, Orientation orientation, const LayoutRecord& layout);

// That part scaled smoothly to size, as 32-bit pixels. Black where there is no picture.
QImage PlacedPicture(const QImage& picture, QSize size, Orientation orientation, const LayoutRecord& layout);

}  // namespace kivo
