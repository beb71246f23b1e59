// ZoomWidget's text entry: the box that lies over the free text's row while it is typed.

#include <QKeyEvent>
#include <atomic>

#include "compose/panel_text.h"
#include "editor/text_box.h"
#include "editor/zoom_widget.h"

namespace kivo {

std::atomic<quint8> wideFreeText{0};

namespace {

constexpr int kLongestText = 40;  // characters
constexpr int kLongestWideText = 60;

bool EndsEntry(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
}

}  // namespace

// Deliberate, fixed: the box has this look though it paints nothing; assistive programs read it.
void ZoomWidget::StyleTextBox() {
    const Orientation orientation = m_editor.Lying();
    const LayoutRecord& layout = m_editor.Layout();
    const QColor color = FreeTextColor(layout.colorIndex);
    const QString rgb = QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
    m_editText->setStyleSheet(QStringLiteral("color:rgba(%1,255);background:transparent;border-width:1px;"
                                             "border-color:rgba(%1,255);border-style:outset")
                                  .arg(rgb));
    QFont font(FontFamily());
    font.setPixelSize(TextBoxPixelSize(layout.sizeIndex, orientation));
    m_editText->setFont(font);
    const bool wide = wideFreeText != 0 && orientation == Orientation::Landscape;
    m_editText->SetMaxLength(wide ? kLongestWideText : kLongestText);
    PlaceTextBox();
}

void ZoomWidget::PlaceTextBox() {
    const int row = m_editor.TextRow();
    const Orientation orientation = m_editor.Lying();
    QRect box = TextBoxRect(row, orientation, size());
    if (m_textEntryOpen) {
        const TypedText typed = Typed();
        const QRect bounds = typed.Block().bounds | typed.Caret().toAlignedRect();
        box = TypingBoxRect(row, orientation, size(), bounds);
    }
    if (box != m_editText->geometry()) {
        m_editText->setGeometry(box);
        update();
    }
}

TypedText ZoomWidget::Typed() const {
    return TypedText(Shown(), m_editText->Input(), m_editText->placeholderText());
}

bool ZoomWidget::IsTextCut() const {
    return m_editor.ShowsCustom() &&
           (m_textEntryOpen ? Typed() : TypedText(Shown(), {m_editor.Layout().freeText, 0, 0, QString()}, {}))
               .IsCut();
}

void ZoomWidget::KeepTyping() {
    if (m_textEntryOpen) {
        m_editText->setFocus();
    }
}

bool ZoomWidget::OpenTextEntry() {
    if (!m_editing || !m_editor.ShowsCustom()) {
        return false;
    }
    if (!m_textEntryOpen) {
        SetTrimMode(0);
        EndDrag();
        m_textEntryOpen = true;
        m_typingByKeyboard = m_focusByKeyboard;
        m_drag.LeaveHover();
        m_editText->setPlainText(m_editor.Layout().freeText);
        m_editText->moveCursor(QTextCursor::End);
        m_editor.BeginText();
        Q_EMIT layoutChanged();
    }
    StyleTextBox();
    m_editText->EnforceMaxLength();
    m_editText->show();
    m_editText->setFocus();
    update();
    return true;
}

void ZoomWidget::slotShowEdt() {
    OpenTextEntry();
}

void ZoomWidget::solteditingFinished() {
    if (!m_textEntryOpen) {
        return;
    }
    // Before anybody is told: who hears of it may ask for the end of an entry again.
    m_textEntryOpen = false;
    const bool hadFocus = m_editText->hasFocus();
    if (hadFocus && m_editing) {
        // With the ring, if it had it when the typing began. Before the box goes, or the focus would pass
        // through the next widget.
        setFocus(m_typingByKeyboard ? Qt::TabFocusReason : Qt::OtherFocusReason);
    }
    m_editText->hide();
    m_editor.EndText(m_editText->toPlainText());
    NoteEdit(By::Person);
    Q_EMIT HideColorWin(0);
}

bool ZoomWidget::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_editText && event->type() == QEvent::KeyPress &&
        EndsEntry(static_cast<QKeyEvent*>(event)->key())) {
        solteditingFinished();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace kivo
