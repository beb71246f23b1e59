#include "pictures/picture_item_delegate.h"

#include <QAbstractItemView>
#include <QDir>
#include <QFontMetricsF>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "pictures/built_in_names.h"
#include "pictures/picture_list.h"
#include "pictures/picture_path.h"
#include "widgets/picture_item.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace {

// Stands for a picture that is on its way, or that cannot be shown: without it such a row would be a hole.
void DrawPlaceholder(QPainter* painter, const QRectF& place) {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(window_colors::kCardEdge);
    painter->setBrush(window_colors::kWell);
    painter->drawRoundedRect(place.adjusted(0.5, 0.5, -0.5, -0.5), kPictureRadius, kPictureRadius);
    painter->restore();
}

// A picture's frame, struck through: what was here cannot be shown.
void DrawMissingSymbol(QPainter* painter, const QRectF& place) {
    constexpr QSizeF kSymbol(26, 20);
    QRectF frame(QPointF(0, 0), kSymbol);
    frame.moveCenter(place.center());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(window_colors::kTextLow, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawRoundedRect(frame, 3, 3);
    painter->drawPolyline(QPolygonF({frame.bottomLeft() + QPointF(4, -4), frame.center() + QPointF(-3, 0),
                                     frame.center() + QPointF(1, 4), frame.center() + QPointF(4, 1),
                                     frame.bottomRight() + QPointF(-4, -4)}));
    painter->setPen(QPen(window_colors::kWarning, 2, Qt::SolidLine, Qt::RoundCap));
    painter->drawLine(frame.bottomLeft() + QPointF(-3, 3), frame.topRight() + QPointF(3, -3));
    painter->restore();
}

// Its file's name, where a named picture has its name: without it nobody could tell what is missing.
void DrawFileName(QPainter* painter, const QStyleOptionViewItem& option, const QString& path) {
    constexpr int kNamePixels = 11;
    constexpr int kBaseLine = 13;  // below the picture
    constexpr int kSide = 2;
    const QRect place = PicturePlace(option.rect, option.decorationSize);
    QFont font = option.font;
    font.setPixelSize(kNamePixels);
    const QFontMetricsF metrics(font);
    const QString name =
        metrics.elidedText(PictureFileName(path), Qt::ElideMiddle, option.rect.width() - 2 * kSide);
    painter->save();
    painter->setFont(font);
    painter->setPen(window_colors::kTextMid);
    painter->drawText(QPointF(option.rect.x() + (option.rect.width() - metrics.horizontalAdvance(name)) / 2,
                              place.y() + place.height() + kBaseLine),
                      name);
    painter->restore();
}

PictureFailure FailureOf(const QModelIndex& index) {
    return static_cast<PictureFailure>(index.data(PictureList::kFailureRole).toInt());
}

}  // namespace

QSize PictureItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
    return PictureItemSize(option.decorationSize, true);
}

void PictureItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    if (index.data(Qt::DecorationRole).isNull()) {
        DrawPlaceholder(painter, PicturePlace(option.rect, option.decorationSize));
    }
    if (FailureOf(index) != PictureFailure::None) {
        DrawMissingSymbol(painter, PicturePlace(option.rect, option.decorationSize));
        DrawFileName(painter, option, index.data(PictureList::kPathRole).toString());
    }
    ExitItemDelegate::paint(painter, option, index);
}

QString PictureItemDelegate::PaintedName(const QModelIndex& index) const {
    const QString name = BuiltInPictureName(index.data(PictureList::kPathRole).toString());
    return name.isEmpty() ? ExitItemDelegate::PaintedName(index) : name;
}

bool PictureItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                    const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QString path = index.data(PictureList::kPathRole).toString();
    if (event->type() != QEvent::ToolTip || path.isEmpty() || IsResource(path)) {
        return ExitItemDelegate::helpEvent(event, view, option, index);
    }
    const QString failure = PictureList::FailureText(FailureOf(index));
    const QString place = QDir::toNativeSeparators(path);
    QToolTip::showText(event->globalPos(), failure.isEmpty() ? place : failure + QLatin1Char('\n') + place,
                       view);
    return true;
}

}  // namespace kivo
