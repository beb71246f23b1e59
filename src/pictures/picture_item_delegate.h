#pragma once

// The rows of the picture list: as the kit draws them, with something to see in the place of a picture that
// is not there, with names, with a line to type them in, and with a tool tip. GUI thread.

#include "widgets/exit_item_delegate.h"

namespace kivo {

class PictureItemDelegate : public ExitItemDelegate {
    Q_OBJECT

public:
    using ExitItemDelegate::ExitItemDelegate;

    // Whether a row's picture can be given a name: one of the user's, which is no part of the program.
    static bool CanName(const QModelIndex& index);

    // All items are alike, named or not.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    // Of the user's own pictures: their name, where they have one, and where they lie.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

    // A PictureNameEdit over the name's place.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    // Deliberate: does nothing. The view asks for it whenever the row changes, and what is being typed would
    // be lost with an icon that comes.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

Q_SIGNALS:
    // The name of a picture of the user's was clicked twice.
    void nameClickedTwice(int row);
    // A name was typed, as it was typed. The row still has its former one.
    void nameTyped(int row, const QString& text) const;

protected:
    // Of the built-in pictures: names of their own. Of the user's: the name they were given, else the file's.
    QString PaintedName(const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace kivo
