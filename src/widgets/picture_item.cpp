#include "widgets/picture_item.h"

#include <QFontMetricsF>
#include <QIcon>
#include <QPainter>
#include <QStyleOptionViewItem>
#include <cmath>

#include "widgets/check_mark.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr int kMargin = 6;
constexpr int kNameLine = 14;      // what a name adds to the height of an item
constexpr int kNameBaseLine = 13;  // below the picture
constexpr int kNameSide = 2;
constexpr qreal kSelectedFrameWidth = 2;
constexpr qreal kHoverFrameWidth = 1.5;
constexpr qreal kFrameRadius = 8;
constexpr qreal kCheckDisc = 14;
constexpr qreal kCheckMargin = 4;  // from the picture's edges

// As a brush and not by a clip, whose edges would be ragged.
void DrawRoundedPicture(QPainter& painter, const QRectF& place, const QIcon& icon) {
    // On whole pixels of the screen, or at one and a half times the size it would be blurred.
    const QTransform toDevice = painter.deviceTransform();
    const QRectF device = toDevice.mapRect(place);
    const QRectF target =
        toDevice.inverted().mapRect(QRectF(device.topLeft().toPoint(), device.size().toSize()));
    const qreal ratio = painter.device()->devicePixelRatioF();
    QPixmap pixmap = icon.pixmap((target.size() * ratio).toSize());
    if (pixmap.isNull()) {
        return;
    }
    pixmap.setDevicePixelRatio(1.0);
    QTransform fit = QTransform::fromTranslate(target.x(), target.y());
    fit.scale(target.width() / pixmap.width(), target.height() / pixmap.height());
    QBrush brush(pixmap);
    brush.setTransform(fit);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(target, kPictureRadius, kPictureRadius);
}

bool IsSelected(const QStyleOptionViewItem& option) {
    return option.state.testFlag(QStyle::State_Selected);
}

// What of a rectangle the screen's pixels can fill exactly.
QRectF WholePixels(const QPainter& painter, const QRectF& rect) {
    const QTransform& toDevice = painter.deviceTransform();
    const QRectF device = toDevice.mapRect(rect);
    const QPointF from(std::ceil(device.left()), std::ceil(device.top()));
    const QPointF to(std::floor(device.right()), std::floor(device.bottom()));
    return toDevice.inverted().mapRect(QRectF(from, to));
}

void DrawCheck(QPainter& painter, const QRectF& picture) {
    const QPointF corner(kCheckMargin + kCheckDisc, kCheckMargin + kCheckDisc);
    const QRectF disc(picture.bottomRight() - corner, QSizeF(kCheckDisc, kCheckDisc));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors::kAccentBright);
    painter.drawEllipse(disc);
    DrawCheckMark(painter, disc.center(), colors::kOnAccent);
}

QColor NameColor(const QStyleOptionViewItem& option, const QModelIndex& index, bool isAction) {
    const QVariant own = index.data(Qt::ForegroundRole);
    if (own.canConvert<QBrush>()) {
        return own.value<QBrush>().color();
    }
    if (IsSelected(option)) {
        return colors::kTextHigh;
    }
    return isAction ? colors::kTextMid : colors::kTextLow;
}

}  // namespace

QSize PictureItemSize(const QSize& pictureSize, bool hasName) {
    return pictureSize + QSize(2 * kMargin, 2 * kMargin + (hasName ? kNameLine : 0));
}

QRect PicturePlace(const QRect& itemRect, const QSize& pictureSize) {
    return {itemRect.topLeft() + QPoint(kMargin, kMargin), pictureSize};
}

QRect NamePlace(const QRect& itemRect, const QSize& pictureSize) {
    const int top = PicturePlace(itemRect, pictureSize).bottom() + 1;
    return {itemRect.left(), top, itemRect.width(), itemRect.bottom() + 1 - top};
}

void DrawPictureItem(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                     const QString& name, bool isAction) {
    painter.save();
    const QRectF picture = PicturePlace(option.rect, option.decorationSize);
    const QVariant decoration = index.data(Qt::DecorationRole);
    if (decoration.canConvert<QIcon>()) {
        DrawRoundedPicture(painter, picture, decoration.value<QIcon>());
    }
    if (IsSelected(option)) {
        DrawCheck(painter, picture);
    }

    if (!name.isEmpty()) {
        QFont font = option.font;
        font.setPixelSize(kNamePixels);
        const QFontMetricsF metrics(font);
        const qreal room = option.rect.width() - 2 * kNameSide;
        const QString shown = metrics.elidedText(name, option.textElideMode, room);
        const qreal left = option.rect.x() + (option.rect.width() - metrics.horizontalAdvance(shown)) / 2;
        painter.setFont(font);
        painter.setPen(NameColor(option, index, isAction));
        painter.drawText(QPointF(left, picture.bottom() + kNameBaseLine), shown);
    }
    painter.restore();
}

void DrawItemFrame(QPainter& painter, const QStyleOptionViewItem& option) {
    const bool isSelected = IsSelected(option);
    if (!isSelected && !option.state.testFlag(QStyle::State_MouseOver)) {
        return;
    }
    const qreal width = isSelected ? kSelectedFrameWidth : kHoverFrameWidth;
    const qreal half = width / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(isSelected ? colors::kAccentBright : colors::kButtonEdgeHover, width));
    painter.drawRoundedRect(WholePixels(painter, option.rect).adjusted(half, half, -half, -half),
                            kFrameRadius, kFrameRadius);
    painter.restore();
}

}  // namespace kivo
