#include "editor/text_box.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QTimerEvent>
#include <utility>

namespace kivo {

namespace {

QString MenuText(const char* source) {
    return QCoreApplication::translate("ZoomWidget", source);
}

}  // namespace

TextBox::TextBox(LaidOut laidOut, ToCanvas toCanvas, QWidget* parent)
    : SelfPlainTextEdit(parent), m_laidOut(std::move(laidOut)), m_toCanvas(std::move(toCanvas)) {
    setTabChangesFocus(true);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    // Its frame tells where the keyboard is.
    setProperty("noFocusRing", true);
    connect(this, &QPlainTextEdit::textChanged, this, &TextBox::NoteInput);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &TextBox::NoteInput);
    connect(this, &QPlainTextEdit::selectionChanged, this, &TextBox::NoteInput);
}

TypedInput TextBox::Input() const {
    const QTextCursor cursor = textCursor();
    return {toPlainText(), cursor.position(), cursor.anchor(), m_preedit};
}

void TextBox::NoteInput() {
    Blink(hasFocus());
    Q_EMIT inputChanged();
}

// On at once after every key, so that it can be followed.
void TextBox::Blink(bool on) {
    m_isCaretOn = on;
    const int halfMs = QApplication::cursorFlashTime() / 2;
    if (on && halfMs > 0) {
        m_blink.start(halfMs, this);
    } else {
        m_blink.stop();
    }
}

void TextBox::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_blink.timerId()) {
        SelfPlainTextEdit::timerEvent(event);
        return;
    }
    m_isCaretOn = !m_isCaretOn;
    Q_EMIT caretBlinked();
}

// No frame of its own: the style sheet's would be drawn as a background.
bool TextBox::event(QEvent* event) {
    const bool isTaken = event->type() == QEvent::Paint || SelfPlainTextEdit::event(event);
    if (event->type() == QEvent::Polish || event->type() == QEvent::StyleChange) {
        setAttribute(Qt::WA_StyledBackground, false);
        viewport()->setAttribute(Qt::WA_StyledBackground, false);
    }
    return isTaken;
}

// The box breaks its lines at other places than the screen does.
void TextBox::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    const bool selects = event->modifiers().testFlag(Qt::ShiftModifier);
    const TypedText typed = m_laidOut();
    if (isPlain && event->key() == Qt::Key_Up) {
        MoveCaret(typed.LineBeside(-1), selects);
    } else if (isPlain && event->key() == Qt::Key_Down) {
        MoveCaret(typed.LineBeside(1), selects);
    } else if (isPlain && event->key() == Qt::Key_Home) {
        MoveCaret(typed.LineStart(), selects);
    } else if (isPlain && event->key() == Qt::Key_End) {
        MoveCaret(typed.LineEnd(), selects);
    } else {
        SelfPlainTextEdit::keyPressEvent(event);
    }
}

void TextBox::inputMethodEvent(QInputMethodEvent* event) {
    m_preedit = event->preeditString();
    SelfPlainTextEdit::inputMethodEvent(event);
    NoteInput();
}

void TextBox::MoveCaret(int position, bool selects) {
    QTextCursor cursor = textCursor();
    cursor.setPosition(qBound(0, position, toPlainText().size()),
                       selects ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
    setTextCursor(cursor);
}

// No press goes on to the editor, which would end the typing by it.
void TextBox::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() == Qt::LeftButton) {
        MoveCaret(m_laidOut().PositionAt(m_toCanvas(event->localPos())),
                  event->modifiers().testFlag(Qt::ShiftModifier));
    }
}

void TextBox::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
    if (event->buttons().testFlag(Qt::LeftButton)) {
        MoveCaret(m_laidOut().PositionAt(m_toCanvas(event->localPos())), true);
    }
}

void TextBox::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
}

void TextBox::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() == Qt::LeftButton) {
        QTextCursor cursor = textCursor();
        cursor.select(QTextCursor::WordUnderCursor);
        setTextCursor(cursor);
    }
}

void TextBox::wheelEvent(QWheelEvent* event) {
    event->accept();
}

// Of its own, not Qt's: translated, and a child of the editor, whose style sheet does not paint it black.
void TextBox::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    auto* const menu = new QMenu(parentWidget());
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("textMenu"));
    const bool hasSelection = textCursor().hasSelection();
    QAction* const cut = menu->addAction(MenuText(QT_TRANSLATE_NOOP("ZoomWidget", "剪切")));
    connect(cut, &QAction::triggered, this, &QPlainTextEdit::cut);
    cut->setEnabled(hasSelection);
    QAction* const copy = menu->addAction(MenuText(QT_TRANSLATE_NOOP("ZoomWidget", "复制")));
    connect(copy, &QAction::triggered, this, &QPlainTextEdit::copy);
    copy->setEnabled(hasSelection);
    QAction* const paste = menu->addAction(MenuText(QT_TRANSLATE_NOOP("ZoomWidget", "粘贴")));
    connect(paste, &QAction::triggered, this, &QPlainTextEdit::paste);
    paste->setEnabled(canPaste());
    menu->addSeparator();
    QAction* const all = menu->addAction(MenuText(QT_TRANSLATE_NOOP("ZoomWidget", "全选")));
    connect(all, &QAction::triggered, this, &QPlainTextEdit::selectAll);
    all->setEnabled(!toPlainText().isEmpty());
    menu->popup(event->globalPos());
}

void TextBox::focusInEvent(QFocusEvent* event) {
    SelfPlainTextEdit::focusInEvent(event);
    NoteInput();
}

void TextBox::focusOutEvent(QFocusEvent* event) {
    SelfPlainTextEdit::focusOutEvent(event);
    m_preedit.clear();
    Blink(false);
    Q_EMIT inputChanged();
}

}  // namespace kivo
