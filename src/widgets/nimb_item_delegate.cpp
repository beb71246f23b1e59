#include "widgets/nimb_item_delegate.h"

#include "widgets/picture_item.h"

namespace kivo {

void NimbItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    DrawPictureItem(*painter, option, index, index.data(Qt::DisplayRole).toString(), false);
    DrawItemFrame(*painter, option);
}

QSize NimbItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return PictureItemSize(option.decorationSize, !index.data(Qt::DisplayRole).toString().isEmpty());
}

}  // namespace kivo
