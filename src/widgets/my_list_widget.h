#pragma once

// A list of pictures that tells of right presses. A row that assistive programs select is clicked by that.
// GUI thread.

#include <QListWidget>
#include <QPersistentModelIndex>

namespace kivo {

class MyListWidget : public QListWidget {
    Q_OBJECT

public:
    explicit MyListWidget(QWidget* parent = nullptr);

    // Pictures in rows from left to right that wrap at the right edge. Items are as large as their delegate
    // says and stand in the middle of the cells' width, at their top.
    void ShowAsGrid(const QSize& pictureSize, const QSize& cellSize);

    // The row that was last pressed with any button; -1 where that was beside every row. Unlike the current
    // row it is never another one than what the mouse was on.
    int PressedRow() const { return m_pressed.row(); }

Q_SIGNALS:
    // After the list has taken in the press.
    void rightClick();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    void FollowSelection();

    QPersistentModelIndex m_pressed;
};

}  // namespace kivo
