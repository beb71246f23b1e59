#include "widgets/self_plain_text_edit.h"

#include <QInputMethodEvent>

namespace kivo {

SelfPlainTextEdit::SelfPlainTextEdit(QWidget* parent) : QPlainTextEdit(parent) {
    connect(this, &QPlainTextEdit::textChanged, this, &SelfPlainTextEdit::OnTextChanged);
}

void SelfPlainTextEdit::EnforceMaxLength() {
    const QString text = toPlainText();
    if (text.size() <= m_maxLength) {
        return;
    }
    int length = qMax(0, m_maxLength);
    if (length > 0 && text.at(length - 1).isHighSurrogate()) {
        --length;
    }
    setPlainText(text.left(length));
    moveCursor(QTextCursor::End);
}

// Setting the text would break off the composition, so the limit waits until it is over.
void SelfPlainTextEdit::OnTextChanged() {
    if (!m_composing) {
        EnforceMaxLength();
    }
}

void SelfPlainTextEdit::inputMethodEvent(QInputMethodEvent* event) {
    m_composing = !event->preeditString().isEmpty();
    QPlainTextEdit::inputMethodEvent(event);
    if (!m_composing) {
        EnforceMaxLength();
    }
}

// Not every input method tells that it has given up.
void SelfPlainTextEdit::EndComposition() {
    m_composing = false;
    EnforceMaxLength();
}

void SelfPlainTextEdit::focusOutEvent(QFocusEvent* event) {
    QPlainTextEdit::focusOutEvent(event);
    EndComposition();
}

void SelfPlainTextEdit::hideEvent(QHideEvent* event) {
    QPlainTextEdit::hideEvent(event);
    EndComposition();
}

}  // namespace kivo
