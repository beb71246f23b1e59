#pragma once

// The crop frame over a background picture: where it stands, what the mouse has hold of, and how it moves.
// Pure.
//
// Frame coordinates are panel pixels from the corner of the untrimmed view, the part of the picture that a
// layout without a trim shows; a picture of another shape than the panel's reaches beyond that view on two
// sides. The frame has the panel's shape, is never larger than the untrimmed view and stays on the picture.
// What it frames is what LayoutRecord and ShownPart (compose/background_picture.h) make of it.

#include <QPointF>
#include <QRectF>
#include <QSize>
#include <QSizeF>

#include "compose/geometry.h"
#include "compose/layout_record.h"

namespace kivo {

// The frame shows at least a quarter of the untrimmed view each way; a smaller one has too few pixels to
// show and no room for its handles.
constexpr int kLargestInset = 240;  // panel pixels of the long side, of 320

struct TrimView {
    QRectF picture;  // the whole picture
    QRectF frame;
};
// A view without a picture is the untrimmed one.
TrimView MakeTrimView(QSize picture, Orientation orientation, const LayoutRecord& layout);

// Writes a frame into the layout, in whole panel pixels.
void StoreTrim(const QRectF& frame, Orientation orientation, LayoutRecord& layout);
void ClearTrim(LayoutRecord& layout);

// What the mouse has hold of.
enum class TrimZone {
    None = -1,
    TopLeft = 0,
    TopRight = 1,
    BottomLeft = 2,
    BottomRight = 3,
    Inside = 4,
    Left = 5,
    Right = 6,
    Top = 7,
    Bottom = 8,
};

// frame and position in widget pixels. Corners are tested first, then edges. The middle third of the frame is
// always Inside, however small the frame.
TrimZone TrimZoneAt(const QRectF& frame, QPointF position);
Qt::CursorShape TrimCursor(TrimZone zone);

// The frame moved by that much, kept on the picture.
QRectF MovedFrame(const TrimView& view, QPointF by);

// The frame with the grabbed corner or edge moved by that much: corners, top and bottom follow the vertical
// movement, left and right the horizontal one. The opposite corner or edge stays where it is as long as the
// picture has room.
QRectF ResizedFrame(const TrimView& view, TrimZone zone, QPointF by, Orientation orientation);

// The frame made narrower (or, with a negative inset, wider) by that many panel pixels of the long side. What
// lies at about, a share of the frame's sides, keeps its place as long as the picture has room; a place
// outside the frame counts as its nearest edge.
QRectF ZoomedFrame(const TrimView& view, double inset, Orientation orientation,
                   QPointF about = QPointF(0.5, 0.5));

}  // namespace kivo
