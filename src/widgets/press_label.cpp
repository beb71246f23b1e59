#include "widgets/press_label.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace kivo {

void PressLabel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        Q_EMIT clicked();
    QLabel::mousePressEvent(event);
}

void PressLabel::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key != Qt::Key_Space && key != Qt::Key_Return && key != Qt::Key_Enter) {
        QLabel::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat())
        Q_EMIT clicked();
}

}  // namespace kivo
