// ZoomWidget's mouse and keys: calls of the tools, which edit.

#include <QHoverEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWindow>

#include "editor/zoom_widget.h"

namespace kivo {

namespace {

QCursor DragCursor(const QWidget& widget, const QString& picture, Qt::CursorShape fallback) {
    constexpr QSize kSize(32, 32);
    QWindow* window = widget.window()->windowHandle();
    const QPixmap pixmap =
        window == nullptr ? QIcon(picture).pixmap(kSize) : QIcon(picture).pixmap(window, kSize);
    return pixmap.isNull() ? QCursor(fallback) : QCursor(pixmap, kSize.width() / 2, kSize.height() / 2);
}

}  // namespace

TrimTool& ZoomWidget::Trimmer() {
    m_trim.SetPlace(m_background.PictureSize(Shown()), size());
    return m_trim;
}

void ZoomWidget::mousePressEvent(QMouseEvent* event) {
    solteditingFinished();
    const bool isLeft = event->button() == Qt::LeftButton;
    const QPoint position = WholePosition(event->localPos());
    if (isLeft && IsTrimming()) {
        Trimmer().Press(position);
        ShowTrimCursor();
        if (m_trim.IsMoving()) {
            Q_EMIT HideRemote(1);
        }
        return;
    }
    // A press that holds something stays here: handed on, it would begin to drag the window as well.
    const bool holds = isLeft && !IsTrimMode() && m_drag.Press(position);
    if (!holds && !(isLeft && m_editing)) {
        QWidget::mousePressEvent(event);
        return;
    }
    if (holds && m_editing) {
        ShowDragCursor();
        update();
    }
}

void ZoomWidget::ShowDragCursor() {
    setCursor(m_drag.HoldsText()
                  ? DragCursor(*this, QStringLiteral("://skins/drag2.png"), Qt::SizeVerCursor)
                  : DragCursor(*this, QStringLiteral("://skins/drag.png"), Qt::ClosedHandCursor));
}

void ZoomWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = WholePosition(event->localPos());
    if (IsTrimming()) {
        Trimmer().Move(position);
        if (!m_trim.IsDragging()) {
            ShowTrimCursor();
        }
        update();
        return;
    }
    if (!m_drag.IsHolding()) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    m_drag.Move(position);
    if (!m_editing && m_drag.IsDrag()) {
        OpenEditingByDrag();
    }
    update();
}

// Nobody may want to: then the drag is none.
void ZoomWidget::OpenEditingByDrag() {
    Q_EMIT editingWanted();
    if (m_editing) {
        ShowDragCursor();
    } else {
        EndDrag();
    }
}

void ZoomWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && !m_editing) {
        m_drag.GiveUp();  // a click
    }
    if (!m_editing || event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    const QPoint position = WholePosition(event->localPos());
    const bool isTrimming = IsTrimming();
    const bool changed = isTrimming ? Trimmer().Release(position) : m_drag.Release(position);
    if (isTrimming) {
        ShowTrimCursor();
    } else {
        unsetCursor();
    }
    update();
    if (changed) {
        StyleTextBox();  // its row may be another
        NoteEdit(By::Person);
    }
    Q_EMIT HideRemote(0);
}

void ZoomWidget::EndDrag() {
    const bool wasMoving = m_trim.IsMoving();
    m_drag.GiveUp();
    m_trim.GiveUp();
    unsetCursor();
    update();
    if (wasMoving) {
        Q_EMIT HideRemote(0);  // no release will tell it
    }
}

void ZoomWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint position = WholePosition(event->localPos());
    const int row = m_editor.TextRow();
    const QRect zone = TextDoubleClickRect(row, m_editor.Lying());
    // That zone is not where the row is seen.
    const QRect seen = TextDropRect(row, m_editor.Lying(), size());
    const bool opens =
        event->button() == Qt::LeftButton && !IsTrimming() &&
        (zone.contains(position) || seen.contains(position) || m_drag.DrawnTextRect().contains(position));
    if (!opens || !OpenTextEntry()) {
        QWidget::mouseDoubleClickEvent(event);
    }
}

void ZoomWidget::wheelEvent(QWheelEvent* event) {
    if (!IsTrimming() || m_trim.IsDragging()) {
        QWidget::wheelEvent(event);
        return;
    }
    if (Trimmer().Wheel(event->angleDelta().y(), event->position())) {
        ShowTrimCursor();
        NoteEdit(By::Person);
    }
    event->accept();
}

bool ZoomWidget::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::HoverEnter:
        case QEvent::HoverMove:
            Hover(WholePosition(static_cast<QHoverEvent*>(event)->posF()));
            break;
        case QEvent::HoverLeave:
            if (m_drag.LeaveHover()) {
                update();
            }
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

void ZoomWidget::Hover(QPoint position) {
    if (m_editing && !m_textEntryOpen && !m_trimMode && m_drag.Hover(position)) {
        update();
    }
}

void ZoomWidget::keyPressEvent(QKeyEvent* event) {
    const bool isTaken = TakeKey(*event) || (m_editing && !IsTrimming() && HandleLayoutKey(event->key()));
    if (!isTaken) {
        QWidget::keyPressEvent(event);
    }
}

bool ZoomWidget::TakeKey(const QKeyEvent& event) {
    // On the theme page, which is always open to change, picture, dim, blur and accent are steps too.
    const bool hasHistory = m_editing || !m_editor.ShowsCustom();
    return (hasHistory && HandleHistoryKey(event)) || (m_editing && IsTrimming() && HandleTrimKey(event));
}

// Both keys for redo, whatever the platform's own is.
bool ZoomWidget::HandleHistoryKey(const QKeyEvent& event) {
    constexpr auto kCtrlShift = Qt::ControlModifier | Qt::ShiftModifier;
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isUndo = event.key() == Qt::Key_Z && modifiers == Qt::ControlModifier;
    const bool isRedo = (event.key() == Qt::Key_Y && modifiers == Qt::ControlModifier) ||
                        (event.key() == Qt::Key_Z && modifiers == kCtrlShift);
    if (isUndo) {
        Undo();
    } else if (isRedo) {
        Redo();
    }
    return isUndo || isRedo;
}

bool ZoomWidget::HandleLayoutKey(int key) {
    if (key == Qt::Key_F2 || key == Qt::Key_Return || key == Qt::Key_Enter) {
        return OpenTextEntry();
    }
    const DragTool::KeyResult result = m_drag.Key(key);
    if (result == DragTool::KeyResult::Nothing) {
        return false;
    }
    if (key == Qt::Key_Escape) {
        EndDrag();
    } else {
        m_focusByKeyboard = true;
    }
    update();
    TellItems();
    if (result == DragTool::KeyResult::Changed) {
        StyleTextBox();  // its row may be another
        NoteEdit(By::Person);
    }
    return true;
}

bool ZoomWidget::HandleTrimKey(const QKeyEvent& event) {
    const bool isEscape = event.key() == Qt::Key_Escape;
    if (m_trim.IsDragging()) {
        if (isEscape) {
            EndDrag();
        }
        return true;
    }
    if (isEscape) {
        SetTrimMode(0);
        return true;
    }
    if (!Trimmer().Key(event.key(), event.modifiers())) {
        return false;
    }
    NoteEdit(By::Person);
    return true;
}

void ZoomWidget::focusInEvent(QFocusEvent* event) {
    m_focusByKeyboard = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                        event->reason() == Qt::ShortcutFocusReason;
    QWidget::focusInEvent(event);
    update();
    // Qt tells of the preview's own focus once this is over; the item's comes after that.
    QMetaObject::invokeMethod(
        this, [this] { TellItems(); }, Qt::QueuedConnection);
}

void ZoomWidget::focusOutEvent(QFocusEvent* event) {
    m_focusByKeyboard = false;
    m_drag.DropPicked();
    QWidget::focusOutEvent(event);
    update();
    TellItems();
}

}  // namespace kivo
