#include "widgets/focus_ring.h"

#include <QApplication>
#include <QFocusEvent>
#include <QPainter>

#include "widgets/window_colors.h"

namespace kivo {

namespace {

constexpr int kGap = 2;
constexpr int kWidth = 2;
constexpr qreal kUsualRadius = 6;

// Of all windows: a dialog has to know whether a key or a click brought it up. The GUI thread's.
bool lastInputWasKey = false;

bool IsKeyboardReason(Qt::FocusReason reason) {
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::ShortcutFocusReason;
}

}  // namespace

FocusRing::FocusRing(QWidget* window) : QWidget(window) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    hide();
    // The reason of a change comes with the event only, and the widget may sit anywhere below the window.
    qApp->installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this, &FocusRing::Follow);
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
            lastInputWasKey = true;
            break;
        case QEvent::MouseButtonPress:
            lastInputWasKey = false;
            break;
        case QEvent::FocusIn:
            if (auto* const widget = qobject_cast<QWidget*>(watched)) {
                OnFocusIn(widget, static_cast<QFocusEvent*>(event)->reason());
            }
            break;
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
        case QEvent::ZOrderChange:
        case QEvent::DynamicPropertyChange:
            if (m_target && watched != this && watched->isWidgetType() &&
                IsInWindow(static_cast<QWidget*>(watched))) {
                Follow();
            }
            break;
        default:
            break;
    }
    return false;
}

// Dialogs are children of the window too, but windows of their own.
bool FocusRing::IsInWindow(QWidget* widget) const {
    return widget->window() == window();
}

void FocusRing::OnFocusIn(QWidget* widget, Qt::FocusReason reason) {
    if (!IsInWindow(widget)) {
        return;
    }
    const bool hadRing = m_target != nullptr || m_isRefused;
    bool getsRing = false;
    if (IsKeyboardReason(reason)) {
        // Qt gives the tab key as the reason too when the focus widget hides and when a dialog opens, which
        // the mouse may have brought about.
        getsRing = lastInputWasKey;
    } else if (reason != Qt::MouseFocusReason) {
        getsRing = hadRing && lastInputWasKey;
    }
    m_isRefused = getsRing && widget->property("noFocusRing").toBool();
    m_target = getsRing && !m_isRefused ? widget : nullptr;
    Follow();
}

// Also hides it while another window has the keyboard; the target stays for when it comes back.
void FocusRing::Follow() {
    const bool shows = m_target != nullptr && m_target->hasFocus() && m_target->isVisible();
    if (!shows) {
        hide();
        return;
    }
    const int around = kGap + kWidth;
    const QPoint corner = m_target->mapTo(parentWidget(), QPoint(0, 0));
    const QVariant seen = m_target->property("focusRect");
    const QRect place = seen.isValid() ? seen.toRect() : m_target->rect();
    const QRect ring = place.translated(corner).adjusted(-around, -around, around, around);
    setGeometry(ring.intersected(parentWidget()->rect()));
    show();
    raise();
    update();
}

void FocusRing::paintEvent(QPaintEvent* /*event*/) {
    if (!m_target) {
        return;
    }
    const QVariant own = m_target->property("focusRadius");
    const qreal radius = (own.isValid() ? own.toReal() : kUsualRadius) + kGap + kWidth / 2.0;
    const qreal half = kWidth / 2.0;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(window_colors::kAccentBright, kWidth));
    painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), radius, radius);
}

}  // namespace kivo
