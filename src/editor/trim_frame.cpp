#include "editor/trim_frame.h"

#include "compose/background_picture.h"

namespace kivo {

namespace {

// Half the side of a corner's square and half the width of an edge's band, in widget pixels: a little more
// than what is drawn, for the mouse's sake.
constexpr double kCornerReach = 8;
constexpr double kEdgeReach = 5;
// Of a small frame no handle reaches further in than that, so that there is always a middle to move it by.
constexpr double kMostReach = 0.25;  // share of the frame's side

QSizeF Reach(const QRectF& frame, double reach) {
    return QSizeF(qMin(reach, frame.width() * kMostReach), qMin(reach, frame.height() * kMostReach));
}

QSizeF Panel(Orientation orientation) {
    return QSizeF(CanvasSize(orientation));
}

// The size of the panel's shape and that width, within what is allowed.
QSizeF AllowedSize(double width, Orientation orientation) {
    const QSizeF panel = Panel(orientation);
    const double share = qBound(1 - double(kLargestInset) / kPanelWidth, width / panel.width(), 1.0);
    return panel * share;
}

bool IsLeft(TrimZone zone) {
    return zone == TrimZone::TopLeft || zone == TrimZone::BottomLeft || zone == TrimZone::Left;
}
bool IsRight(TrimZone zone) {
    return zone == TrimZone::TopRight || zone == TrimZone::BottomRight || zone == TrimZone::Right;
}
bool IsTop(TrimZone zone) {
    return zone == TrimZone::TopLeft || zone == TrimZone::TopRight || zone == TrimZone::Top;
}
bool IsBottom(TrimZone zone) {
    return zone == TrimZone::BottomLeft || zone == TrimZone::BottomRight || zone == TrimZone::Bottom;
}

// The new size about the point of the old frame that keeps its place.
QRectF SizedAbout(const QRectF& frame, const QSizeF& size, double shareX, double shareY) {
    const QPointF kept(frame.left() + frame.width() * shareX, frame.top() + frame.height() * shareY);
    return QRectF(kept - QPointF(size.width() * shareX, size.height() * shareY), size);
}

bool IsNear(const QPointF& corner, const QPointF& position, const QSizeF& reach) {
    return qAbs(corner.x() - position.x()) <= reach.width() &&
           qAbs(corner.y() - position.y()) <= reach.height();
}

}  // namespace

TrimView MakeTrimView(QSize picture, Orientation orientation, const LayoutRecord& layout) {
    const QRectF untrimmed = ShownPart(picture, orientation, LayoutRecord());
    if (untrimmed.isEmpty()) {
        const QRectF all(QPointF(0, 0), Panel(orientation));
        return {all, all};
    }
    const QRectF shown = ShownPart(picture, orientation, layout);
    const double perPixel = untrimmed.width() / Panel(orientation).width();
    return {QRectF(-untrimmed.topLeft() / perPixel, QSizeF(picture) / perPixel),
            QRectF((shown.topLeft() - untrimmed.topLeft()) / perPixel, shown.size() / perPixel)};
}

void StoreTrim(const QRectF& frame, Orientation orientation, LayoutRecord& layout) {
    const QSizeF panel = Panel(orientation);
    // The long side's inset is the exact one; the other follows from the shape.
    const double share = 1 - frame.width() / panel.width();
    const int longInset = qBound(0, qRound(share * kPanelWidth), kLargestInset);
    const int shortInset = qRound(double(longInset) * kPanelHeight / kPanelWidth);
    const bool landscape = orientation == Orientation::Landscape;
    layout.xZoom = landscape ? longInset : shortInset;
    layout.yZoom = landscape ? shortInset : longInset;
    layout.xPt = qRound(frame.left());
    layout.yPt = qRound(frame.top());
}

void ClearTrim(LayoutRecord& layout) {
    layout.xPt = 0;
    layout.yPt = 0;
    layout.xZoom = 0;
    layout.yZoom = 0;
}

TrimZone TrimZoneAt(const QRectF& frame, QPointF position) {
    const QSizeF corner = Reach(frame, kCornerReach);
    const QSizeF edge = Reach(frame, kEdgeReach);
    if (IsNear(frame.topLeft(), position, corner)) {
        return TrimZone::TopLeft;
    }
    if (IsNear(frame.topRight(), position, corner)) {
        return TrimZone::TopRight;
    }
    if (IsNear(frame.bottomLeft(), position, corner)) {
        return TrimZone::BottomLeft;
    }
    if (IsNear(frame.bottomRight(), position, corner)) {
        return TrimZone::BottomRight;
    }
    const bool besideX = position.x() >= frame.left() && position.x() <= frame.right();
    const bool besideY = position.y() >= frame.top() && position.y() <= frame.bottom();
    if (besideY && qAbs(position.x() - frame.left()) <= edge.width()) {
        return TrimZone::Left;
    }
    if (besideY && qAbs(position.x() - frame.right()) <= edge.width()) {
        return TrimZone::Right;
    }
    if (besideX && qAbs(position.y() - frame.top()) <= edge.height()) {
        return TrimZone::Top;
    }
    if (besideX && qAbs(position.y() - frame.bottom()) <= edge.height()) {
        return TrimZone::Bottom;
    }
    return besideX && besideY ? TrimZone::Inside : TrimZone::None;
}

Qt::CursorShape TrimCursor(TrimZone zone) {
    switch (zone) {
        case TrimZone::TopLeft:
        case TrimZone::BottomRight:
            return Qt::SizeFDiagCursor;
        case TrimZone::TopRight:
        case TrimZone::BottomLeft:
            return Qt::SizeBDiagCursor;
        case TrimZone::Left:
        case TrimZone::Right:
            return Qt::SizeHorCursor;
        case TrimZone::Top:
        case TrimZone::Bottom:
            return Qt::SizeVerCursor;
        case TrimZone::Inside:
            return Qt::SizeAllCursor;
        case TrimZone::None:
            break;
    }
    return Qt::ArrowCursor;
}

QRectF MovedFrame(const TrimView& view, QPointF by) {
    return KeptIn(view.frame.translated(by), view.picture);
}

QRectF ResizedFrame(const TrimView& view, TrimZone zone, QPointF by, Orientation orientation) {
    const QSizeF panel = Panel(orientation);
    double width = view.frame.width();
    if (IsTop(zone) || IsBottom(zone)) {
        width += (IsTop(zone) ? -by.y() : by.y()) * panel.width() / panel.height();
    } else {
        width += zone == TrimZone::Left ? -by.x() : by.x();
    }
    // 0 keeps the left (top) edge in its place, 1 the right (bottom) one, a half the middle.
    const double keptX = IsLeft(zone) ? 1 : IsRight(zone) ? 0 : 0.5;
    const double keptY = IsTop(zone) ? 1 : IsBottom(zone) ? 0 : 0.5;
    return KeptIn(SizedAbout(view.frame, AllowedSize(width, orientation), keptX, keptY), view.picture);
}

QRectF ZoomedFrame(const TrimView& view, double inset, Orientation orientation, QPointF about) {
    const double narrower = inset * Panel(orientation).width() / kPanelWidth;
    const QSizeF size = AllowedSize(view.frame.width() - narrower, orientation);
    const QRectF zoomed =
        SizedAbout(view.frame, size, qBound(0.0, about.x(), 1.0), qBound(0.0, about.y(), 1.0));
    return KeptIn(zoomed, view.picture);
}

}  // namespace kivo
