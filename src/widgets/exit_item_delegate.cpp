#include "widgets/exit_item_delegate.h"

#include <QMouseEvent>
#include <QPainter>

#include "widgets/picture_item.h"

namespace kivo {

namespace {

constexpr int kCrossSize = 18;
constexpr int kCrossRight = 20;  // from the last column of the item
constexpr int kCrossTop = 2;

}  // namespace

ExitItemDelegate::ExitItemDelegate(QObject* parent)
    : QStyledItemDelegate(parent), m_cross(QStringLiteral("://skins/delete.png")) {}

bool ExitItemDelegate::CanDelete(int row, int rowCount) {
    return row >= 1 && row <= rowCount - kFixedRows;
}

QRect ExitItemDelegate::CrossRect(const QRect& itemRect) {
    return {itemRect.right() - kCrossRight, itemRect.top() + kCrossTop, kCrossSize, kCrossSize};
}

void ExitItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    DrawPictureItem(*painter, option, index, PaintedName(index), index.row() == 0);
    DrawItemFrame(*painter, option);
    if (!CanDelete(index.row(), index.model()->rowCount())) {
        return;
    }
    const QRectF square(CrossRect(option.rect));
    m_cross.Draw(*painter, QRectF(square.topLeft(), m_cross.FittedSize(square.size())));
}

QString ExitItemDelegate::PaintedName(const QModelIndex& index) const {
    return index.data(Qt::DisplayRole).toString();
}

QSize ExitItemDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const {
    return PictureItemSize(option.decorationSize, true);
}

bool ExitItemDelegate::editorEvent(QEvent* event, QAbstractItemModel* model,
                                   const QStyleOptionViewItem& option, const QModelIndex& index) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseButtonRelease: {
            auto* const mouse = static_cast<QMouseEvent*>(event);
            const QPoint position(qRound(mouse->localPos().x()), qRound(mouse->localPos().y()));
            const bool isHit =
                CanDelete(index.row(), model->rowCount()) && CrossRect(option.rect).contains(position);
            if (mouse->button() == Qt::LeftButton && TakeLeftButton(event->type(), isHit, index.row())) {
                return true;
            }
            break;
        }
        default:
            break;
    }
    return QStyledItemDelegate::editorEvent(event, model, option, index);
}

// A click asks once, though its press, its release and the second press of a double click all arrive here. It
// belongs to the place of its press, wherever it is let go.
bool ExitItemDelegate::TakeLeftButton(QEvent::Type type, bool isHit, int row) {
    const bool endsPress = type == QEvent::MouseButtonRelease && m_isPressed;
    m_isPressed = type != QEvent::MouseButtonRelease;
    if (endsPress) {
        return m_isClickOnCross;
    }
    m_isClickOnCross = isHit;
    if (isHit && type != QEvent::MouseButtonDblClick) {
        Q_EMIT handleDeleteClick(row);
    }
    return isHit;
}

}  // namespace kivo
