#pragma once

#include <QEvent>
#include <QtGlobal>

class QEnterEvent;

namespace kivo {

// The type of the event that QWidget::enterEvent gets. Qt 5 sends a QEnterEvent too, but declares a QEvent.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
using EnterEvent = QEvent;
#else
using EnterEvent = QEnterEvent;
#endif

}  // namespace kivo
