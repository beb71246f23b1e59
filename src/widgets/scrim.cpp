#include "widgets/scrim.h"

#include <QPainter>

#include "widgets/window_colors.h"

namespace kivo {

Scrim::Scrim(QWidget& window) : QWidget(&window) {
    setObjectName(QStringLiteral("scrim"));
    setGeometry(window.rect());
    setFocusPolicy(Qt::NoFocus);
    raise();
    show();
}

void Scrim::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), window_colors::kScrim);
}

}  // namespace kivo
