#include "widgets/my_list_widget.h"

#include <QMouseEvent>

namespace kivo {

MyListWidget::MyListWidget(QWidget* parent) : QListWidget(parent) {
    setFrameShape(QFrame::NoFrame);
    // The delegates outline the row under the mouse.
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    viewport()->setAutoFillBackground(false);
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
    QListWidget::mousePressEvent(event);
    if (event->button() == Qt::RightButton)
        Q_EMIT rightClick();
}

}  // namespace kivo
