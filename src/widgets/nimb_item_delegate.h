#pragma once

// Draws a row of pictures in which the chosen one, and the one under the mouse, has a grey frame. GUI thread.

#include <QStyledItemDelegate>

namespace kivo {

class NimbItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit NimbItemDelegate(QObject* parent = nullptr) : QStyledItemDelegate(parent) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

}  // namespace kivo
