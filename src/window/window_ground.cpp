#include "window/window_ground.h"

#include <QImageReader>
#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

namespace kivo {

namespace {

// The picture as it was rendered for a screen that is not scaled; the other one has twice the pixels.
QString SmallPath(QString path) {
    return path.replace(QLatin1String(".png"), QLatin1String("_small.png"));
}

bool Covers(QSize size, QSize other) {
    return size.expandedTo(other) == size;
}

// On any thread. The small one where it has pixels enough: it takes a quarter of the time.
QImage Decoded(const QString& path, QSize devicePixels) {
    QImageReader small(SmallPath(path));
    return Covers(small.size(), devicePixels) ? small.read() : QImage(path);
}

QPixmap Stretched(const QImage& picture, QSize devicePixels) {
    if (picture.size() == devicePixels) {
        return QPixmap::fromImage(picture);
    }
    QImage ground(devicePixels, QImage::Format_RGB32);
    QPainter painter(&ground);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(QPointF(0, 0), devicePixels), picture, QRectF(picture.rect()));
    painter.end();
    return QPixmap::fromImage(std::move(ground));
}

}  // namespace

WindowGround::WindowGround(QWidget& window, const QString& path)
    : QObject(&window), m_window(window), m_path(path) {
    m_window.setAttribute(Qt::WA_OpaquePaintEvent);
    m_window.installEventFilter(this);
}

QSize WindowGround::DevicePixels() const {
    return (QSizeF(m_window.size()) * m_window.devicePixelRatioF()).toSize();
}

void WindowGround::Fetch() {
    if (m_ground.isNull() && !m_coming.valid()) {
        m_comingPixels = DevicePixels();
        m_coming = std::async(std::launch::async, &Decoded, m_path, m_comingPixels);
    }
}

void WindowGround::LetGo() {
    m_coming = {};
    m_ground = QPixmap();
}

qint64 WindowGround::HeldBytes() const {
    return qint64(m_ground.width()) * m_ground.height() * m_ground.depth() / 8;
}

bool WindowGround::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
        case QEvent::Polish:
            // Deliberate: the style is not told of the window itself, for it would make the same picture of
            // its rules. It dresses what stands in the window.
            return true;
        case QEvent::Paint:
            // Some desktops have a minimised window painted too: for nobody, who needs no ground.
            if (!m_ground.isNull() || !m_window.isMinimized()) {
                Paint(static_cast<QPaintEvent*>(event)->region());
            }
            return false;
        case QEvent::WindowStateChange:
            if (m_ground.isNull()) {
                m_window.update();
            }
            return false;
        default:
            return false;
    }
}

void WindowGround::Paint(const QRegion& region) {
    const QSize pixels = DevicePixels();
    // Not before, or on a screen of another scale now.
    if (m_ground.size() != pixels) {
        const bool comes = m_coming.valid() && Covers(m_comingPixels, pixels);
        m_ground = Stretched(comes ? m_coming.get() : Decoded(m_path, pixels), pixels);
        m_coming = {};
        m_ground.setDevicePixelRatio(m_window.devicePixelRatioF());
    }
    QPainter painter(&m_window);
    painter.setClipRegion(region);
    painter.drawPixmap(QPoint(0, 0), m_ground);
}

}  // namespace kivo
