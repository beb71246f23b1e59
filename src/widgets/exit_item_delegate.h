#pragma once

// Draws the rows of the picture list: the add entry, the person's own pictures with a cross to delete them,
// and the built-in ones. GUI thread.

#include <QEvent>
#include <QStyledItemDelegate>

#include "widgets/sharp_picture.h"

namespace kivo {

class ExitItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit ExitItemDelegate(QObject* parent = nullptr);

    // Rows that never can be deleted: the add entry at the top and the built-in pictures at the foot.
    static constexpr int kFixedRows = 12;

    // Whether a row is the person's own and shows the cross: 1 to rowCount - kFixedRows.
    static bool CanDelete(int row, int rowCount);

    // The square of the cross, which a press has to hit, in the coordinates of the item's rectangle.
    static QRect CrossRect(const QRect& itemRect);

    // Whether the last left click, or the one under way, is one on the cross, and so none on the row.
    bool IsClickOnCross() const { return m_isClickOnCross; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

Q_SIGNALS:
    // The cross was clicked. Whoever owns the list may emit it too, for other ways to ask, and for rows that
    // have none.
    void handleDeleteClick(int iRow);

protected:
    // What stands below the picture: the item's text, unless a list has other names.
    virtual QString PaintedName(const QModelIndex& index) const;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;

private:
    bool TakeLeftButton(QEvent::Type type, bool isHit, int row);

    SharpPicture m_cross;
    bool m_isPressed = false;
    bool m_isClickOnCross = false;
};

}  // namespace kivo
