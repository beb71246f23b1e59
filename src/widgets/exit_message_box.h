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
    // `window` may be null or hidden: then the panel stands alone in the middle of the screen, until that
    // window is seen. The text may hold line breaks; it is wrapped, and the panel grows with it as far as the
    // window or the screen allows. What does not fit is left out and ends in dots.
    explicit ExitMessageBox(const QString& text, QWidget* window = nullptr);

    // A notice: nothing to cancel.
    void SetOnlyOk(bool onlyOk);

    // A question in words of its own: what the panel is headed by, and what its first button says.
    struct Question {
        QString title;
        QString text;
        QString yes;
        bool isDeletion = false;  // what is lost then is gone for good
    };
    ExitMessageBox(const Question& question, QWidget* window);

    QString Text() const { return m_text; }

    // Where the panel stands in the box.
    QRect PanelRect() const;

    // Shows a question until it is answered; true for yes.
    static bool Ask(QWidget* window, const Question& question);
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
    bool IsWindowSeen() const;
    void LookBelow();
    void Place();
    void LayOutPanel();
    void PlaceButtons();
    QWidget& DraggedWidget();
    void DrawPanel(QPainter& painter) const;

    QString m_text;
    QWidget* m_window;
    NimbPushButton* m_okButton;
    NimbPushButton* m_cancelButton;
    SharpPicture m_warning;
    bool m_overWindow = false;
    QPixmap m_below;      // what the window looks like under the box
    QString m_shownText;  // as much of the text as fits
    QSize m_panelSize;
    QPoint m_dragOffset;
    bool m_dragging = false;
};

}  // namespace kivo
