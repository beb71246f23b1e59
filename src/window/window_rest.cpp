#include "window/window_rest.h"

#include <QBackingStore>
#include <QEvent>
#include <QPixmapCache>
#include <QWidget>
#include <utility>

#include "session/freed_memory.h"

namespace kivo {

WindowRest::WindowRest(QWidget& window, std::chrono::milliseconds wait, std::function<void()> letGoOfPictures)
    : m_window(window), m_letGoOfPictures(std::move(letGoOfPictures)) {
    m_wait.setSingleShot(true);
    m_wait.setInterval(wait);
    connect(&m_wait, &QTimer::timeout, this, &WindowRest::Rest);
    m_window.installEventFilter(this);
    Begin();
}

bool WindowRest::IsInSight() const {
    return m_window.isVisible() && !m_window.isMinimized();
}

void WindowRest::Begin() {
    if (!IsInSight()) {
        m_wait.start();
    }
}

bool WindowRest::eventFilter(QObject* watched, QEvent* event) {
    // A start in the tray needs no look yet; showing the window gives it one.
    if (watched == &m_window && event->type() == QEvent::PolishRequest && !m_window.isVisible()) {
        return true;
    }
    const bool mayMatter = event->type() == QEvent::Show || event->type() == QEvent::Hide ||
                           event->type() == QEvent::WindowStateChange;
    if (watched == &m_window && mayMatter) {
        if (IsInSight()) {
            WakeUp();
        } else {
            Begin();
        }
    }
    return false;
}

void WindowRest::Rest() {
    if (IsInSight()) {
        return;
    }
    m_isResting = true;
    m_letGoOfPictures();
    // A minimised window may be mapped again before Qt hears of it, and then has to have them.
    QBackingStore* const pixels = m_window.backingStore();
    if (pixels != nullptr && !m_window.isVisible()) {
        pixels->resize(QSize(1, 1));
    }
    QPixmapCache::clear();
    ReturnFreedMemory();
}

void WindowRest::WakeUp() {
    m_wait.stop();
    if (!std::exchange(m_isResting, false)) {
        return;
    }
    m_window.update();
}

}  // namespace kivo
