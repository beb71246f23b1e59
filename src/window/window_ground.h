#pragma once

// The window's ground: the picture of its style sheet, stretched over all of it. Painted here and not by the
// style, which would decode it on the GUI thread and keep all of its pixels as long as the window lives; here
// it is decoded beside the GUI thread and kept in the window's own pixels. GUI thread.

#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <QString>
#include <future>

class QWidget;

namespace kivo {

class WindowGround : public QObject {
    Q_OBJECT

public:
    // path: the picture, beside which its half in either direction lies as "..._small.png". The window
    // outlives this object.
    WindowGround(QWidget& window, const QString& path);
    // Waits for a decoding that is under way: up to 20 ms.
    ~WindowGround() override = default;

    // The window is about to be shown: has the ground decoded meanwhile.
    void Fetch();
    // Nobody looks at the window for the time being. Painted again, it is decoded again.
    void LetGo();
    // Bytes of pixels that are held, without a picture that was fetched and not painted yet.
    qint64 HeldBytes() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QSize DevicePixels() const;
    void Paint(const QRegion& region);

    QWidget& m_window;
    const QString m_path;
    QPixmap m_ground;      // null while it was let go of
    QSize m_comingPixels;  // for which m_coming is
    std::future<QImage> m_coming;
};

}  // namespace kivo
