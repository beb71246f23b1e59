#pragma once

// Questions and notices of the program: a panel over the dimmed window. It stays over the window, and takes
// it along when it is dragged. GUI thread.

#include <QDialog>
#include <QPixmap>
#include <QPoint>

#include "widgets/sharp_picture.h"

namespace kivo {

class NimbPushButton;

class ExitMessageBox : public QDialog {
    Q_OBJECT

public:
    // `window` may be null or hidden: then the panel stands alone in the middle of the screen. The text may
    // hold line breaks; it is wrapped, and the panel grows with it.
    explicit ExitMessageBox(const QString& text, QWidget* window = nullptr);

    // A notice: nothing to cancel.
    void SetOnlyOk(bool onlyOk);

    QString Text() const { return m_text; }

    // Where the panel stands in the box.
    QRect PanelRect() const;

    // Shows a question until it is answered; true for OK.
    static bool Ask(QWidget* window, const QString& text);
    // Shows a notice until it is read.
    static void Tell(QWidget* window, const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    bool HasWindowBelow() const;
    void Place();
    void PlaceButtons();
    QSize PanelSize() const;
    QString LineText() const;
    void DrawPanel(QPainter& painter) const;

    QString m_text;
    QWidget* m_window;
    NimbPushButton* m_okButton;
    NimbPushButton* m_cancelButton;
    SharpPicture m_warning;
    QPixmap m_below;  // what the window looked like when the box came up
    QPoint m_dragOffset;
    bool m_dragging = false;
};

}  // namespace kivo
