#pragma once

// The line round the widget that has the keyboard. It shows after the focus came by the keyboard, and never
// for the mouse. GUI thread.

#include <QPointer>
#include <QWidget>

namespace kivo {

class FocusRing : public QWidget {
    Q_OBJECT

public:
    // Lies over `window`, which owns it, for as long as that lives. The corners follow a widget's property
    // "focusRadius" (a number of pixels), and where something else than the widget is seen, the line follows
    // "focusRect" (a QRect in the widget's pixels); a widget whose property "noFocusRing" is true gets none,
    // but hands it back to the widget from which it had the keyboard.
    explicit FocusRing(QWidget* window);

    // The widget that has the ring, or null.
    QWidget* RingedWidget() const { return isVisibleTo(parentWidget()) ? m_target.data() : nullptr; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void OnFocusIn(QWidget* widget, Qt::FocusReason reason);
    bool IsInWindow(QWidget* widget) const;
    void Follow();

    QPointer<QWidget> m_target;  // kept while another window has the keyboard
    bool m_isRefused = false;    // the widget that has the keyboard would have the ring
};

}  // namespace kivo
