// ZoomWidget's text entry: the box that lies over the free text's row while it is typed.

#include <QKeyEvent>
#include <QTextBlock>
#include <QtMath>
#include <atomic>

#include "compose/free_text.h"
#include "compose/panel_text.h"
#include "editor/zoom_widget.h"
#include "widgets/self_plain_text_edit.h"

namespace kivo {

std::atomic<quint8> wideFreeText{0};

namespace {

constexpr int kLongestText = 40;  // characters
constexpr int kLongestWideText = 60;
constexpr double kPlaceholderStrength = 0.55;

bool EndsEntry(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
}

}  // namespace

void ZoomWidget::StyleTextBox() {
    const Orientation orientation = CurrentOrientation();
    const QColor color = FreeTextColor(Layout().colorIndex);
    const QString rgb = QStringLiteral("%1,%2,%3").arg(color.red()).arg(color.green()).arg(color.blue());
    m_editText->setStyleSheet(QStringLiteral("color:rgba(%1,255);background:transparent;border-width:1px;"
                                             "border-color:rgba(%1,255);border-style:outset")
                                  .arg(rgb));
    // The style sheet has given the placeholder the full colour, as if somebody had typed it.
    QPalette palette = m_editText->palette();
    QColor faint = color;
    faint.setAlphaF(kPlaceholderStrength);
    palette.setColor(QPalette::PlaceholderText, faint);
    m_editText->setPalette(palette);
    QFont font(FontFamily());
    font.setPixelSize(TextBoxPixelSize(Layout().sizeIndex, orientation));
    m_editText->setFont(font);
    const bool wide = wideFreeText != 0 && orientation == Orientation::Landscape;
    m_editText->SetMaxLength(wide ? kLongestWideText : kLongestText);
    PlaceTextBox();
}

// The row, and more where the lines that are typed need more; that is moved up where it would leave the
// screen.
void ZoomWidget::PlaceTextBox() {
    const Orientation orientation = CurrentOrientation();
    QRect box = TextBoxRect(m_edited.textRow, orientation, size());
    if (m_textEntryOpen) {
        m_editText->resize(box.width(), m_editText->height());
        const auto* layout =
            qobject_cast<QPlainTextDocumentLayout*>(m_editText->document()->documentLayout());
        double lines = 0;
        for (QTextBlock block = m_editText->document()->begin(); block.isValid(); block = block.next()) {
            lines += layout->blockBoundingRect(block).height();
        }
        const int frame = m_editText->height() - m_editText->viewport()->height();
        const QRect canvas(QPoint(0, 0), CanvasSize(orientation));
        const QRect screen = MappingFor(orientation, size()).Mapped(canvas);
        box.setHeight(qBound(box.height(), qCeil(lines) + frame, screen.height()));
        box.moveTop(qMin(box.top(), screen.bottom() + 1 - box.height()));
    }
    if (box != m_editText->geometry()) {
        m_editText->setGeometry(box);
        update();
    }
}

void ZoomWidget::KeepTyping() {
    if (m_textEntryOpen) {
        m_editText->setFocus();
    }
}

bool ZoomWidget::OpenTextEntry() {
    if (!m_editing || !ShowsCustom()) {
        return false;
    }
    if (!m_textEntryOpen) {
        SetTrimMode(0);
        EndDrag();
        m_textEntryOpen = true;
        SetHover(kEmptySlot, false);
        m_editText->setPlainText(Layout().freeText);
        m_editText->moveCursor(QTextCursor::End);
        CustomFlags(LayoutInForce(m_edited), VariantInForce(m_edited))[OtherText] = true;
        Q_EMIT layoutChanged();
    }
    StyleTextBox();
    m_editText->EnforceMaxLength();
    m_editText->show();
    PlaceTextBox();  // lines are laid out only now
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
    m_editText->hide();
    if (hadFocus && m_editing) {
        setFocus();
    }
    QString text = m_editText->toPlainText();
    // Blanks and line breaks at its end would only push it out of its place.
    while (!text.isEmpty() && text.at(text.size() - 1).isSpace()) {
        text.chop(1);
    }
    LayoutRecord& layout = LayoutInForce(m_edited);
    layout.freeText = text;
    SettleTextFlag(layout, VariantInForce(m_edited));
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

QRect ZoomWidget::DrawnTextRect(int row) const {
    ScreenState state = Shown();
    state.textRow = row;
    const QRect bounds = LayOutFreeText(state).bounds;
    return bounds.isEmpty() ? QRect() : MappingFor(CurrentOrientation(), size()).Mapped(bounds);
}

}  // namespace kivo
