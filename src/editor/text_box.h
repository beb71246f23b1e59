#pragma once

// The box in which the free text is typed. It takes keys, input methods, mouse and clipboard and paints
// nothing: the editor draws the text at its place on the screen, and tells where caret and lines are. GUI
// thread.

#include <QBasicTimer>
#include <QPointF>
#include <functional>

#include "editor/typed_text.h"
#include "widgets/self_plain_text_edit.h"

namespace kivo {

class TextBox : public SelfPlainTextEdit {
    Q_OBJECT

public:
    // How the text is laid out now, and a place of the box on the canvas.
    using LaidOut = std::function<TypedText()>;
    using ToCanvas = std::function<QPointF(QPointF)>;
    TextBox(LaidOut laidOut, ToCanvas toCanvas, QWidget* parent);

    TypedInput Input() const;
    // Whether the caret is to be seen at the moment; it blinks.
    bool IsCaretOn() const { return m_isCaretOn; }

Q_SIGNALS:
    // Text, caret, selection or what an input method shows.
    void inputChanged();
    void caretBlinked();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* /*event*/) override {}
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void NoteInput();
    void Blink(bool on);
    void MoveCaret(int position, bool selects);

    LaidOut m_laidOut;
    ToCanvas m_toCanvas;
    QString m_preedit;
    bool m_isCaretOn = false;
    QBasicTimer m_blink;
};

}  // namespace kivo
