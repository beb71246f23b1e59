#include "widgets/press_label.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>

namespace kivo {

void PressLabel::SetOpens(Opens opens) {
    if (opens == m_opens) {
        return;
    }
    m_opens = opens;
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void PressLabel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        Press();
    }
    QLabel::mousePressEvent(event);
}

void PressLabel::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key != Qt::Key_Space && key != Qt::Key_Return && key != Qt::Key_Enter) {
        QLabel::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat()) {
        Press();
    }
}

}  // namespace kivo
