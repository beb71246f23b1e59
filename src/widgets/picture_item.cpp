#include "widgets/picture_item.h"

#include <QFontMetricsF>
#include <QIcon>
#include <QPainter>
#include <QStyleOptionViewItem>

#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr int kMargin = 6;
constexpr int kNameLine = 14;      // what a name adds to the height of an item
constexpr int kNameBaseLine = 13;  // below the picture
constexpr int kNameSide = 2;
constexpr int kNamePixels = 11;
constexpr int kFrameWidth = 3;

// As a brush and not by a clip, whose edges would be ragged.
void DrawRoundedPicture(QPainter& painter, const QRectF& place, const QIcon& icon) {
    // On whole pixels of the screen, or at one and a half times the size it would be blurred.
    const QTransform toDevice = painter.deviceTransform();
    const QRectF device = toDevice.mapRect(place);
    const QRectF target =
        toDevice.inverted().mapRect(QRectF(device.topLeft().toPoint(), device.size().toSize()));
    const qreal ratio = painter.device()->devicePixelRatioF();
    QPixmap pixmap = icon.pixmap((target.size() * ratio).toSize());
    if (pixmap.isNull())
        return;
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

QColor NameColor(const QModelIndex& index, bool isAction) {
    const QVariant own = index.data(Qt::ForegroundRole);
    if (own.canConvert<QBrush>())
        return own.value<QBrush>().color();
    return isAction ? colors::kTextMid : colors::kTextLow;
}

}  // namespace

QSize PictureItemSize(const QSize& pictureSize, bool hasName) {
    return pictureSize + QSize(2 * kMargin, 2 * kMargin + (hasName ? kNameLine : 0));
}

QRect PicturePlace(const QRect& itemRect, const QSize& pictureSize) {
    return {itemRect.topLeft() + QPoint(kMargin, kMargin), pictureSize};
}

void DrawPictureItem(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index,
                     bool isAction) {
    painter.save();
    const QRectF picture = PicturePlace(option.rect, option.decorationSize);
    const QVariant decoration = index.data(Qt::DecorationRole);
    if (decoration.canConvert<QIcon>())
        DrawRoundedPicture(painter, picture, decoration.value<QIcon>());

    const QString name = index.data(Qt::DisplayRole).toString();
    if (!name.isEmpty()) {
        QFont font = option.font;
        font.setPixelSize(kNamePixels);
        const QFontMetricsF metrics(font);
        const qreal room = option.rect.width() - 2 * kNameSide;
        const QString shown = metrics.elidedText(name, Qt::ElideRight, room);
        const qreal left = option.rect.x() + (option.rect.width() - metrics.horizontalAdvance(shown)) / 2;
        painter.setFont(font);
        painter.setPen(NameColor(index, isAction));
        painter.drawText(QPointF(left, picture.bottom() + kNameBaseLine), shown);
    }
    painter.restore();
}

bool IsMarked(const QStyleOptionViewItem& option) {
    return (option.state & (QStyle::State_Selected | QStyle::State_MouseOver)) != 0;
}

void DrawSelectionFrame(QPainter& painter, const QRect& itemRect) {
    const qreal half = kFrameWidth / 2.0;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors::kSelectionFrame, kFrameWidth, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin));
    painter.drawRect(QRectF(itemRect).adjusted(half, half, -half, -half));
    painter.restore();
}

}  // namespace kivo
