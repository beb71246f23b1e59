#include "pictures/picture_item_delegate.h"

#include <QAbstractItemView>
#include <QDir>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "pictures/picture_list.h"
#include "pictures/thumbnail_picture.h"
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

}  // namespace

QSize PictureItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
    return PictureItemSize(option.decorationSize, true);
}

void PictureItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                const QModelIndex& index) const {
    if (index.data(Qt::DecorationRole).isNull()) {
        DrawPlaceholder(painter, PicturePlace(option.rect, option.decorationSize));
    }
    ExitItemDelegate::paint(painter, option, index);
}

bool PictureItemDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                    const QStyleOptionViewItem& option, const QModelIndex& index) {
    const QString path = index.data(PictureList::kPathRole).toString();
    if (event->type() != QEvent::ToolTip || path.isEmpty() || IsResource(path)) {
        return ExitItemDelegate::helpEvent(event, view, option, index);
    }
    QToolTip::showText(event->globalPos(), QDir::toNativeSeparators(path), view);
    return true;
}

}  // namespace kivo
