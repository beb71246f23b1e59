#pragma once

// Draws the rows of the picture list: the add entry, the person's own pictures with a cross to delete them,
// and the built-in ones. GUI thread.

#include <QStyledItemDelegate>

#include "widgets/sharp_picture.h"

namespace kivo {

class ExitItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit ExitItemDelegate(QObject* parent = nullptr);

    // Rows that never can be deleted: the add entry and the built-in pictures.
    static constexpr int kFixedRows = 12;

    // Whether a row shows the cross: 1 to rowCount - kFixedRows.
    static bool CanDelete(int row, int rowCount);

    // The square of the cross, which a press has to hit, in the coordinates of the item's rectangle.
    static QRect CrossRect(const QRect& itemRect);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

Q_SIGNALS:
    // The cross was clicked, or the delete key pressed on a row that has one.
    void handleDeleteClick(int iRow);

protected:
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    enum class Press { None, OnCross, Elsewhere };

    bool TakeLeftButton(QMouseEvent* event, bool isHit, int row);

    SharpPicture m_cross;
    Press m_press = Press::None;
};

}  // namespace kivo
