#include "session/quit_at_once.h"

#include <QCoreApplication>
#include <QEvent>

namespace kivo {

QuitAtOnce::QuitAtOnce() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool QuitAtOnce::eventFilter(QObject* watched, QEvent* event) {
    if (watched == QCoreApplication::instance() && event->type() == QEvent::Quit) {
        QCoreApplication::exit();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace kivo
