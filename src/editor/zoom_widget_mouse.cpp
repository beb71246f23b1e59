// ZoomWidget's mouse and keyboard in the layout: dragging items and the free text.

#include <QApplication>
#include <QHoverEvent>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWindow>

#include "editor/custom_layout_rules.h"
#include "editor/zoom_widget.h"
#include "widgets/self_plain_text_edit.h"

namespace kivo {

namespace {

// The slot an arrow key leads to, in the order left, right, up, down.
constexpr std::array<std::array<int, 4>, kSlotCount> kNeighbours{
    {{0, 2, 0, 1}, {1, 2, 0, 1}, {0, 4, 0, 3}, {2, 3, 4, 3}, {2, 4, 4, 3}}};

constexpr int kNoRow = -1;

QCursor DragCursor(const QWidget& widget, const QString& picture, Qt::CursorShape fallback) {
    constexpr QSize kSize(32, 32);
    QWindow* window = widget.window()->windowHandle();
    const QPixmap pixmap =
        window == nullptr ? QIcon(picture).pixmap(kSize) : QIcon(picture).pixmap(window, kSize);
    return pixmap.isNull() ? QCursor(fallback) : QCursor(pixmap, kSize.width() / 2, kSize.height() / 2);
}

}  // namespace

bool ZoomWidget::CanDragSlots() const {
    return m_editing && !m_trimMode && ShowsCustom() && VariantInForce(m_edited) == 0;
}

int ZoomWidget::PressedSlot(QPoint position) const {
    if (!CanDragSlots()) {
        return kEmptySlot;
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (Slots()[size_t(slot)] != kEmptySlot &&
            SlotPressRect(slot, CurrentOrientation(), size()).contains(position)) {
            return slot;
        }
    }
    return kEmptySlot;
}

bool ZoomWidget::CanDragText() const {
    return m_editing && ShowsCustom() && !Layout().freeText.isEmpty() && IsShown(Shown(), OtherText);
}

ZoomWidget::Hold ZoomWidget::HoldAt(QPoint position) const {
    const int slot = PressedSlot(position);
    const bool onText = CanDragText() && DrawnTextRect().contains(position);
    if (slot == kEmptySlot) {
        const bool inTextZone =
            CanDragText() && TextPressRect(m_edited.textRow, CurrentOrientation(), size()).contains(position);
        return {kEmptySlot, onText || inTextZone, false};
    }
    if (!onText) {
        return {slot, false, false};
    }
    constexpr int kMiddleRow = 1;
    if (slot == kCentreSlot && m_edited.textRow == kMiddleRow) {
        return {m_textHasTurn ? kEmptySlot : slot, m_textHasTurn, true};
    }
    // The zone of a slot is larger than what is seen of it.
    const QRect seen = SlotRect(slot, CurrentOrientation()) | SlotCaptionRect(slot, CurrentOrientation());
    const bool onSlot = MappingFor(CurrentOrientation(), size()).Mapped(seen).contains(position);
    return {onSlot ? slot : kEmptySlot, !onSlot, false};
}

void ZoomWidget::mousePressEvent(QMouseEvent* event) {
    solteditingFinished();
    if (!m_editing || event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);  // the window may be dragged by it
        return;
    }
    const QPoint position = WholePosition(event->localPos());
    if (IsTrimming()) {
        TrimPress(position);
        return;
    }
    const Hold hold = HoldAt(position);
    if (hold.contested) {
        m_textHasTurn = !m_textHasTurn;
    }
    m_pressedAt = position;
    if (hold.text) {
        StartTextDrag();
    } else if (hold.slot != kEmptySlot) {
        m_drag = Drag::Slot;
        m_draggedSlot = hold.slot;
        SetHover(hold.slot, false);
        setCursor(DragCursor(*this, QStringLiteral("://skins/drag.png"), Qt::ClosedHandCursor));
        update();
    }
}

// The press stays with the editor: handed on, it would begin to drag the window as well.
void ZoomWidget::StartTextDrag() {
    m_drag = Drag::Text;
    SetHover(kEmptySlot, true);
    setCursor(DragCursor(*this, QStringLiteral("://skins/drag2.png"), Qt::SizeVerCursor));
    update();
}

void ZoomWidget::mouseMoveEvent(QMouseEvent* event) {
    const QPoint position = WholePosition(event->localPos());
    if (IsTrimming()) {
        TrimMove(position);
        return;
    }
    switch (m_drag) {
        case Drag::Slot:
            SetHover(SlotAt(position), false);
            break;
        case Drag::Text:
            SetDropRow(RowAt(position));
            break;
        default:
            QWidget::mouseMoveEvent(event);
    }
}

void ZoomWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_editing || event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    const QPoint position = WholePosition(event->localPos());
    if (IsTrimming()) {
        TrimRelease(position);
        return;
    }
    if (m_drag == Drag::Text) {
        MoveTextTo(RowAt(position));
    } else if (m_drag == Drag::Slot) {
        MoveSlotTo(SlotAt(position));
    }
    EndDrag();
    Hover(position);
    Q_EMIT HideRemote(0);
}

bool ZoomWidget::IsDrop(QPoint position) const {
    return (position - m_pressedAt).manhattanLength() >= QApplication::startDragDistance();
}

int ZoomWidget::SlotAt(QPoint position) const {
    if (!IsDrop(position)) {
        return m_draggedSlot;
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (SlotDropRect(slot, CurrentOrientation(), size()).contains(position)) {
            return slot;
        }
    }
    return kEmptySlot;
}

int ZoomWidget::RowAt(QPoint position) const {
    const QRect canvas(QPoint(0, 0), CanvasSize(CurrentOrientation()));
    const int slack = QApplication::startDragDistance();
    const QRect screen =
        MappingFor(CurrentOrientation(), size()).Mapped(canvas).adjusted(-slack, -slack, slack, slack);
    if (!IsDrop(position) || !screen.contains(position)) {
        return m_edited.textRow;
    }
    const auto zone = [this](int row) { return TextDropRect(row, CurrentOrientation(), size()); };
    int meant = kNoRow;
    for (int row = 0; row < kTextRowCount; ++row) {
        if (!zone(row).contains(position) && !DrawnTextRect(row).contains(position)) {
            continue;
        }
        if (meant != kNoRow) {
            return RowDraggedTo(position);
        }
        meant = row;
    }
    if (!zone(m_edited.textRow).contains(m_pressedAt)) {
        return RowDraggedTo(position);
    }
    return meant == kNoRow ? m_edited.textRow : meant;
}

// A text is drawn by its lines, partly outside of its row, so it may be taken hold of or let go over another
// one. Then it is not the mouse but the text that tells the row: the one whose text would stand nearest.
int ZoomWidget::RowDraggedTo(QPoint position) const {
    const int wanted = DrawnTextRect().center().y() + position.y() - m_pressedAt.y();
    const auto distance = [&](int row) { return qAbs(DrawnTextRect(row).center().y() - wanted); };
    int nearest = m_edited.textRow;
    for (int row = 0; row < kTextRowCount; ++row) {
        if (distance(row) < distance(nearest)) {
            nearest = row;
        }
    }
    return nearest;
}

void ZoomWidget::MoveTextTo(int row) {
    if (row == m_edited.textRow) {
        return;
    }
    m_edited.textRow = row;
    StyleTextBox();
    NoteEdit(By::Person);
}

void ZoomWidget::MoveSlotTo(int slot) {
    if (slot == kEmptySlot || slot == m_draggedSlot) {
        return;
    }
    SwapSlots(Slots(), m_draggedSlot, slot);
    NoteEdit(By::Person);
}

void ZoomWidget::EndDrag() {
    const bool wasMoving = m_drag == Drag::MoveFrame;
    m_drag = Drag::None;
    m_draggedSlot = kEmptySlot;
    m_dropRow = -1;
    unsetCursor();
    update();
    if (wasMoving) {
        Q_EMIT HideRemote(0);  // no release will tell it
    }
}

void ZoomWidget::mouseDoubleClickEvent(QMouseEvent* event) {
    const QPoint position = WholePosition(event->localPos());
    const QRect zone = TextDoubleClickRect(m_edited.textRow, CurrentOrientation());
    // That zone is not where the row is seen.
    const QRect row = TextDropRect(m_edited.textRow, CurrentOrientation(), size());
    const bool opens =
        event->button() == Qt::LeftButton && !IsTrimming() &&
        (zone.contains(position) || row.contains(position) || DrawnTextRect().contains(position));
    if (!opens || !OpenTextEntry()) {
        QWidget::mouseDoubleClickEvent(event);
    }
}

bool ZoomWidget::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::HoverEnter:
        case QEvent::HoverMove:
            Hover(WholePosition(static_cast<QHoverEvent*>(event)->posF()));
            break;
        case QEvent::HoverLeave:
            if (m_drag == Drag::None) {
                SetHover(kEmptySlot, false);
            }
            break;
        default:
            break;
    }
    return QWidget::event(event);
}

void ZoomWidget::Hover(QPoint position) {
    if (m_drag != Drag::None || m_textEntryOpen || IsTrimming()) {
        return;
    }
    const Hold hold = HoldAt(position);
    SetHover(hold.slot, hold.text);
}

void ZoomWidget::SetHover(int slot, bool text) {
    if (slot != m_hoverSlot || text != m_hoverText) {
        m_hoverSlot = slot;
        m_hoverText = text;
        update();
    }
}

void ZoomWidget::SetDropRow(int row) {
    if (row != m_dropRow) {
        m_dropRow = row;
        update();
    }
}

void ZoomWidget::keyPressEvent(QKeyEvent* event) {
    if (!m_editing) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (event->matches(QKeySequence::Undo)) {
        Undo();
    } else if (IsTrimming() ? !HandleTrimKey(*event) : !HandleLayoutKey(*event)) {
        QWidget::keyPressEvent(event);
    }
}

bool ZoomWidget::HandleLayoutKey(const QKeyEvent& event) {
    switch (event.key()) {
        case Qt::Key_F2:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return OpenTextEntry();
        case Qt::Key_PageUp:
            return MoveTextByKey(-1);
        case Qt::Key_PageDown:
            return MoveTextByKey(1);
        case Qt::Key_Escape: {
            const bool wasBusy = m_drag != Drag::None || m_pickedSlot != kEmptySlot;
            m_pickedSlot = kEmptySlot;
            EndDrag();
            return wasBusy;
        }
        case Qt::Key_Left:
            return MoveKeySlot(0);
        case Qt::Key_Right:
            return MoveKeySlot(1);
        case Qt::Key_Up:
            return MoveKeySlot(2);
        case Qt::Key_Down:
            return MoveKeySlot(3);
        case Qt::Key_Space:
            return PickOrDropKeySlot();
        default:
            return false;
    }
}

bool ZoomWidget::MoveTextByKey(int by) {
    if (Layout().freeText.isEmpty() || !ShowsCustom()) {
        return false;
    }
    MoveTextTo(qBound(0, m_edited.textRow + by, kTextRowCount - 1));
    return true;
}

bool ZoomWidget::MoveKeySlot(int direction) {
    if (!CanDragSlots()) {
        return false;
    }
    m_focusByKeyboard = true;
    m_keySlot = kNeighbours[size_t(m_keySlot)][size_t(direction)];
    update();
    return true;
}

bool ZoomWidget::PickOrDropKeySlot() {
    if (!CanDragSlots()) {
        return false;
    }
    m_focusByKeyboard = true;
    if (m_pickedSlot == kEmptySlot) {
        m_pickedSlot = Slots()[size_t(m_keySlot)] == kEmptySlot ? kEmptySlot : m_keySlot;
    } else {
        m_draggedSlot = m_pickedSlot;
        m_pickedSlot = kEmptySlot;
        MoveSlotTo(m_keySlot);
        EndDrag();
    }
    update();
    return true;
}

void ZoomWidget::focusInEvent(QFocusEvent* event) {
    m_focusByKeyboard = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                        event->reason() == Qt::ShortcutFocusReason;
    QWidget::focusInEvent(event);
    update();
}

void ZoomWidget::focusOutEvent(QFocusEvent* event) {
    m_focusByKeyboard = false;
    m_pickedSlot = kEmptySlot;
    QWidget::focusOutEvent(event);
    update();
}

}  // namespace kivo
