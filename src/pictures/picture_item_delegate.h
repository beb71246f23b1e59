#pragma once

// The rows of the picture list: as the kit draws them, with something to see in the place of a picture that
// is not there, and with a tool tip. GUI thread.

#include "widgets/exit_item_delegate.h"

namespace kivo {

class PictureItemDelegate : public ExitItemDelegate {
    Q_OBJECT

public:
    using ExitItemDelegate::ExitItemDelegate;

    // All items are alike, named or not.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    // Of the user's own pictures: where they lie.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    // Of the built-in pictures: names of their own.
    QString PaintedName(const QModelIndex& index) const override;
};

}  // namespace kivo
