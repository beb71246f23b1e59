#pragma once

// The window's rest: a while after it went out of sight, hidden or minimised, whatever only a person who
// looks at it needs is let go of, and the memory given back. What is let go of comes back when the window is
// shown. GUI thread.

#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>

class QWidget;

namespace kivo {

class WindowRest : public QObject {
    Q_OBJECT

public:
    // Long enough for a window that is put away for a moment.
    static constexpr std::chrono::milliseconds kUsualWait{30000};

    // letGoOfPictures: what the window's parts are to do. The window, which is not shown yet and outlives
    // this object, rests from the first wait on, too: a start leaves memory behind.
    WindowRest(QWidget& window, std::chrono::milliseconds wait, std::function<void()> letGoOfPictures);

    // Something was done for the window or behind it: the wait begins anew while it is out of sight.
    void Begin();

    // Whether everything has been let go of.
    bool IsResting() const { return m_isResting; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool IsInSight() const;
    void Rest();
    void WakeUp();

    QWidget& m_window;
    const std::function<void()> m_letGoOfPictures;
    QTimer m_wait;
    bool m_isResting = false;
};

}  // namespace kivo
