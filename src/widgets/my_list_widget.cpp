#include "widgets/my_list_widget.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QScrollBar>

namespace kivo {

MyListWidget::MyListWidget(QWidget* parent) : QListWidget(parent) {
    setFrameShape(QFrame::NoFrame);
    // Windows has a font of its own for lists.
    setFont(QGuiApplication::font());
    // The delegates outline the row under the mouse.
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    viewport()->setAutoFillBackground(false);
    // As far from the ends as the pictures are. Its own sheet: a bar takes in the program's while this is
    // still being constructed, and then knows no list above it.
    verticalScrollBar()->setStyleSheet(QStringLiteral("QScrollBar:vertical { margin: 6px 0 6px 0; }"));
}

void MyListWidget::ShowAsGrid(const QSize& pictureSize, const QSize& cellSize) {
    setViewMode(QListView::IconMode);
    setMovement(QListView::Static);
    setFlow(QListView::LeftToRight);
    setResizeMode(QListView::Adjust);
    setWrapping(true);
    setSpacing(0);
    setIconSize(pictureSize);
    setGridSize(cellSize);
    setDragEnabled(false);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void MyListWidget::mousePressEvent(QMouseEvent* event) {
    m_pressed = indexAt(event->pos());
    QListWidget::mousePressEvent(event);
    if (event->button() == Qt::RightButton) {
        Q_EMIT rightClick();
    }
}

// QListView tells assistive programs that its row has the focus, whoever has it.
void MyListWidget::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    if (hasFocus()) {
        QListWidget::currentChanged(current, previous);
    } else {
        // Deliberate: past QListView, which would tell.
        QAbstractItemView::currentChanged(current, previous);  // NOLINT(bugprone-parent-virtual-call)
    }
}

// Mouse, keys and the program select the current row. Others have left the current row where it was.
void MyListWidget::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QListWidget::selectionChanged(selected, deselected);
    // The current row comes after the selection.
    QMetaObject::invokeMethod(this, &MyListWidget::FollowSelection, Qt::QueuedConnection);
}

void MyListWidget::FollowSelection() {
    QModelIndexList rows = selectedIndexes();
    rows.removeAll(currentIndex());  // whoever watches the list may have selected it again
    if (rows.size() == 1) {
        const QPersistentModelIndex row = rows.first();
        setCurrentIndex(row);
        Q_EMIT clicked(row);
    }
}

}  // namespace kivo
