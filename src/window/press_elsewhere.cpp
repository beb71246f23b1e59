#include "window/press_elsewhere.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <algorithm>

namespace kivo {

PressElsewhere::PressElsewhere(QWidget& window, const QVector<QWidget*>& inside)
    : QObject(&window), m_window(window), m_inside(inside) {
    qApp->installEventFilter(this);
}

bool PressElsewhere::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::MouseButtonPress || !watched->isWidgetType()) {
        return false;
    }
    auto* const widget = static_cast<QWidget*>(watched);
    const auto holds = [widget](const QWidget* part) { return part == widget || part->isAncestorOf(widget); };
    if (widget->window() == &m_window && std::none_of(m_inside.begin(), m_inside.end(), holds)) {
        Q_EMIT pressed();
    }
    return false;
}

}  // namespace kivo
