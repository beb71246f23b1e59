#pragma once

// Tells of mouse presses in a window that lie outside of some of its widgets, wherever they land. Menus and
// lists that pop up are windows of their own and do not count. GUI thread.

#include <QObject>
#include <QVector>

class QWidget;

namespace kivo {

class PressElsewhere : public QObject {
    Q_OBJECT

public:
    // The window owns it; the widgets live as long.
    PressElsewhere(QWidget& window, const QVector<QWidget*>& inside);

Q_SIGNALS:
    // Before the press is delivered.
    void pressed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
    const QVector<QWidget*> m_inside;
};

}  // namespace kivo
