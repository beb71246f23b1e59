#include "editor/screen_mapping.h"

#include <QMargins>
#include <cmath>

#include "compose/custom_layout.h"

namespace kivo {

namespace {

// Canvas pixels around a slot that belong to it. The height leaves room for the caption below.
struct SlotMargin {
    int left;
    int width;
    int height;
};
constexpr SlotMargin kPressMargin{9, 18, 30};
constexpr SlotMargin kDropMargin{10, 20, 30};

// Of the zone that grabs the free text.
constexpr int kTextLineSize = 15;
constexpr int kTextRowGap = 15;
constexpr double kTextPressAbove = 6.75;

constexpr int kTextBoxExtra = 4;  // canvas pixels that the text box is higher than its row

QRect TextBoxRow(int row, Orientation orientation) {
    return TextRowRect(row, orientation).adjusted(0, 0, 0, kTextBoxExtra);
}

QRect Truncated(double left, double top, double width, double height) {
    return QRect(int(left), int(top), int(width), int(height));
}

QRect SlotZone(int slot, const SlotMargin& margin, Orientation orientation, QSize widget) {
    const ScreenMapping map = MappingFor(orientation, widget);
    const QRect rect = SlotRect(slot, orientation);
    const double s = map.scale;
    return Truncated(rect.left() * s + map.left - margin.left * s, rect.top() * s + map.top,
                     rect.width() * s + margin.width * s, rect.height() * s + margin.height * s);
}

}  // namespace

QRect ScreenMapping::Mapped(const QRect& canvasRect) const {
    return Truncated(canvasRect.left() * scale + left, canvasRect.top() * scale + top,
                     canvasRect.width() * scale, canvasRect.height() * scale);
}

ScreenMapping MappingFor(Orientation orientation, QSize widget) {
    // The last pixel of the magnified screen, counted from its first.
    const QSize last = AreaFrameSize(orientation) - QSize(1, 1);
    const int centredLeft = (widget.width() - 1 - last.width()) / 2;
    const int centredTop = (widget.height() - 1 - last.height()) / 2;
    return {AreaScale(orientation), orientation == Orientation::Landscape ? 1 : centredLeft, centredTop};
}

QPoint WholePosition(QPointF position) {
    return QPoint(int(std::lround(position.x())), int(std::lround(position.y())));
}

QRect SlotPressRect(int slot, Orientation orientation, QSize widget) {
    return SlotZone(slot, kPressMargin, orientation, widget);
}

QRect SlotDropRect(int slot, Orientation orientation, QSize widget) {
    return SlotZone(slot, kDropMargin, orientation, widget);
}

QRect TextPressRect(int row, Orientation orientation, QSize widget) {
    const ScreenMapping map = MappingFor(orientation, widget);
    const QRect rect = TextRowRect(row, orientation);
    const double left = rect.left() * map.scale + map.left;
    const double top = rect.top() * map.scale + map.top;
    const double width = rect.width() * map.scale;
    if (orientation == Orientation::Portrait) {
        return Truncated(left, top, width, kTextRowGap + 3 * kTextLineSize);
    }
    return Truncated(left, top - kTextPressAbove, width, kTextRowGap + 2 * kTextLineSize + kTextPressAbove);
}

QRect TextDropRect(int row, Orientation orientation, QSize widget) {
    return MappingFor(orientation, widget).Mapped(TextRowRect(row, orientation));
}

QRect TextDoubleClickRect(int row, Orientation orientation) {
    const ScreenMapping atCorner{AreaScale(orientation), 0, 0};
    return atCorner.Mapped(TextBoxRow(row, orientation));
}

QRect TextBoxRect(int row, Orientation orientation, QSize widget) {
    return MappingFor(orientation, widget).Mapped(TextBoxRow(row, orientation));
}

int TextBoxPixelSize(int sizeIndex, Orientation orientation) {
    return int(FreeTextPixelSize(sizeIndex) * AreaScale(orientation));
}

QRect TypingBoxRect(int row, Orientation orientation, QSize widget, const QRect& textBounds) {
    constexpr QMargins kPadding(8, 4, 8, 4);  // widget pixels
    const ScreenMapping map = MappingFor(orientation, widget);
    const QRect rowBox = TextBoxRect(row, orientation, widget);
    if (textBounds.isEmpty()) {
        return rowBox;
    }
    const QRect text = map.Mapped(textBounds).marginsAdded(kPadding);
    const QRect box = text | QRect(rowBox.left(), text.top(), rowBox.width(), text.height());
    return box & map.Mapped(QRect(QPoint(0, 0), CanvasSize(orientation)));
}

TrimMapping TrimMappingFor(Orientation orientation, QSize widget, const QRectF& pictureRect) {
    constexpr int kMargin = 1;  // on each side; a picture of the panel's shape then stands as the screen does
    const double scale =
        qMin(AreaScale(orientation), qMin((widget.width() - 2 * kMargin) / pictureRect.width(),
                                          (widget.height() - 2 * kMargin) / pictureRect.height()));
    const QSizeF panel = CanvasSize(orientation);
    const QPointF middle(panel.width() / 2, panel.height() / 2);
    return {scale, MappingFor(orientation, widget).Mapped(middle) - middle * scale};
}

}  // namespace kivo
