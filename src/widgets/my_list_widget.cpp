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
    if (event->button() == Qt::RightButton)
        Q_EMIT rightClick();
}

}  // namespace kivo
