#pragma once

// A text box that takes only so many characters. GUI thread.

#include <QPlainTextEdit>

namespace kivo {

class SelfPlainTextEdit : public QPlainTextEdit {
    Q_OBJECT

public:
    explicit SelfPlainTextEdit(QWidget* parent = nullptr);

    // 40 at first. A text that is too long already stays until EnforceMaxLength or the next change.
    void SetMaxLength(int characters) { m_maxLength = characters; }
    int MaxLength() const { return m_maxLength; }

    // Cuts the text to the limit and puts the cursor at its end, if it is too long. Counts UTF-16 code units,
    // as QString does, but never leaves half of a pair behind.
    void EnforceMaxLength();

protected:
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void OnTextChanged();
    void EndComposition();

    int m_maxLength = 40;
    bool m_composing = false;  // an input method shows text that is not yet part of the box
};

}  // namespace kivo
