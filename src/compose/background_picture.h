#pragma once

// The picture behind a layout: the part of it that is shown, blurred and dimmed as the layout wants it. Any
// thread.

#include <QImage>
#include <QRect>
#include <QSize>

#include "compose/geometry.h"
#include "compose/layout_record.h"

namespace kivo {

// The part of a picture (in its own pixels) that fills the panel: as much as covers it, centred, or the trim
// frame of the layout. The trim frame has the panel's shape and stays inside the picture.
QRectF ShownPart(QSize picture, Orientation orientation, const LayoutRecord& layout);

// That part scaled smoothly to size and blurred, as 32-bit pixels (Format_RGB32). Black where there is no
// picture. The blur is measured in panel pixels, so it is the panel's in any size: from 2.5 of them at 10
// percent to 12 at 100.
QImage PlacedPicture(const QImage& picture, QSize size, Orientation orientation, const LayoutRecord& layout);

// Takes from the brightness of a placed picture what the layout wants.
void Dim(QImage& placed, const LayoutRecord& layout);

// Whether the picture has lost the grain that hides the steps of the panel's colours: blurred or dimmed, it
// has slopes too gentle for them.
bool HasSoftPicture(const LayoutRecord& layout);

}  // namespace kivo
