#pragma once

// The picture behind a layout: reading it from a file or resource, and the part of it that is shown. Any
// thread.

#include <QImage>
#include <QRect>
#include <QSize>
#include <QString>

#include "compose/geometry.h"
#include "compose/layout_record.h"

namespace kivo {

// Reads a picture, turned upright by its own orientation mark, and no larger than is useful for the panel:
// its shorter side has 1080 pixels at most. Null, with one log line that says why, for what is no picture,
// cannot be read or is absurdly large by its header (decided before any pixel is decoded).
QImage LoadPicture(const QString& path);

// The part of a picture (in its own pixels) that fills the panel: as much as covers it, centred, or the trim
// frame of the layout. The trim frame has the panel's shape and stays inside the picture.
QRectF ShownPart(QSize picture, Orientation orientation, const LayoutRecord& layout);

// That part scaled smoothly to size, as 32-bit pixels. Black where there is no picture.
QImage PlacedPicture(const QImage& picture, QSize size, Orientation orientation, const LayoutRecord& layout);

}  // namespace kivo
