#include "editor/drag_tool.h"

#include <QApplication>
#include <array>

#include "compose/free_text.h"
#include "compose/panel_layout.h"
#include "editor/screen_mapping.h"

namespace kivo {

namespace {

// The slot an arrow key leads to, in the order left, right, up, down.
constexpr std::array<std::array<int, 4>, kSlotCount> kNeighbours{
    {{0, 2, 0, 1}, {1, 2, 0, 1}, {0, 4, 0, 3}, {2, 3, 4, 3}, {2, 4, 4, 3}}};

constexpr int kNoRow = -1;

}  // namespace

int DragTool::PressedSlot(QPoint position) const {
    if (!m_editor.HasSlots()) {
        return kEmptySlot;
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (m_editor.Slots()[size_t(slot)] != kEmptySlot &&
            SlotPressRect(slot, m_editor.Lying(), m_size).contains(position)) {
            return slot;
        }
    }
    return kEmptySlot;
}

DragTool::Hold DragTool::HoldAt(QPoint position) const {
    const int slot = PressedSlot(position);
    if (!m_editor.HasText()) {
        return {slot, false, false};
    }
    const int row = m_editor.TextRow();
    const Orientation orientation = m_editor.Lying();
    if (slot == kEmptySlot && TextPressRect(row, orientation, m_size).contains(position)) {
        return {kEmptySlot, true, false};
    }
    const ScreenState state = m_editor.Shown();
    const std::shared_ptr<const PanelTexts> texts = LayOutPanel(state);
    const ScreenMapping map = MappingFor(orientation, m_size);
    const QRect& text = texts->freeText.bounds;
    if (text.isEmpty() || !map.Mapped(text).contains(position)) {
        return {slot, false, false};
    }
    constexpr int kMiddleRow = 1;
    if (slot == kCentreSlot && row == kMiddleRow) {
        return {m_textHasTurn ? kEmptySlot : slot, m_textHasTurn, true};
    }
    // The zone of a slot is larger than what is seen of it.
    const bool onSlot = slot != kEmptySlot && map.Mapped(SlotRoom(*texts, state, slot)).contains(position);
    return {onSlot ? slot : kEmptySlot, !onSlot, false};
}

bool DragTool::Hover(QPoint position) {
    return !IsHolding() && MarkHover(HoldAt(position));
}

bool DragTool::MarkHover(const Hold& hold) {
    if (IsHolding() || (hold.slot == m_marked.slot && hold.text == m_marked.text)) {
        return false;
    }
    m_marked = hold;
    return true;
}

bool DragTool::Press(QPoint position) {
    GiveUp();
    const Hold hold = HoldAt(position);
    if (hold.contested) {
        m_textHasTurn = !m_textHasTurn;
    }
    m_pressedAt = position;
    m_at = position;
    m_marked = hold;
    m_held = hold;
    return IsHolding();
}

void DragTool::Move(QPoint position) {
    m_at = position;
    if (m_held.text) {
        m_dropRow = RowAt(position);
    } else if (m_held.slot != kEmptySlot) {
        m_marked.slot = SlotAt(position);
    }
}

bool DragTool::Release(QPoint position) {
    bool changed = false;
    if (m_held.text) {
        changed = m_editor.SetTextRow(RowAt(position));
    } else if (m_held.slot != kEmptySlot) {
        const int slot = SlotAt(position);
        changed = slot != kEmptySlot && m_editor.SwapSlots(m_held.slot, slot);
    }
    GiveUp();
    Hover(position);
    return changed;
}

void DragTool::GiveUp() {
    m_held = {};
    m_dropRow = kNoRow;
}

bool DragTool::IsFar(QPoint position) const {
    return (position - m_pressedAt).manhattanLength() >= QApplication::startDragDistance();
}

int DragTool::SlotAt(QPoint position) const {
    if (!IsFar(position)) {
        return m_held.slot;
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        if (SlotDropRect(slot, m_editor.Lying(), m_size).contains(position)) {
            return slot;
        }
    }
    return kEmptySlot;
}

int DragTool::RowAt(QPoint position) const {
    const Orientation orientation = m_editor.Lying();
    const QRect canvas(QPoint(0, 0), CanvasSize(orientation));
    const int slack = QApplication::startDragDistance();
    const QRect screen =
        MappingFor(orientation, m_size).Mapped(canvas).adjusted(-slack, -slack, slack, slack);
    const int current = m_editor.TextRow();
    if (!IsFar(position) || !screen.contains(position)) {
        return current;
    }
    const auto zone = [this, orientation](int row) { return TextDropRect(row, orientation, m_size); };
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
    if (!zone(current).contains(m_pressedAt)) {
        return RowDraggedTo(position);
    }
    return meant == kNoRow ? current : meant;
}

// A text is drawn by its lines, partly outside of its row, so it may be taken hold of or let go over another
// one. Then it is not the mouse but the text that tells the row: the one whose text would stand nearest.
int DragTool::RowDraggedTo(QPoint position) const {
    const int wanted = DrawnTextRect().center().y() + position.y() - m_pressedAt.y();
    const auto distance = [&](int row) { return qAbs(DrawnTextRect(row).center().y() - wanted); };
    int nearest = m_editor.TextRow();
    for (int row = 0; row < kTextRowCount; ++row) {
        if (distance(row) < distance(nearest)) {
            nearest = row;
        }
    }
    return nearest;
}

QRect DragTool::DrawnTextRect(int row) const {
    ScreenState state = m_editor.Shown();
    state.textRow = row;
    const QRect bounds = LayOutFreeText(state).bounds;
    return bounds.isEmpty() ? QRect() : MappingFor(state.orientation, m_size).Mapped(bounds);
}

DragTool::KeyResult DragTool::Key(int key) {
    switch (key) {
        case Qt::Key_Left:
            return MoveKeySlot(0);
        case Qt::Key_Right:
            return MoveKeySlot(1);
        case Qt::Key_Up:
            return MoveKeySlot(2);
        case Qt::Key_Down:
            return MoveKeySlot(3);
        case Qt::Key_Space:
            return PickOrDrop();
        case Qt::Key_PageUp:
            return MoveText(-1);
        case Qt::Key_PageDown:
            return MoveText(1);
        case Qt::Key_Escape: {
            const bool wasBusy = IsHolding() || m_pickedSlot != kEmptySlot;
            DropPicked();
            GiveUp();
            return wasBusy ? KeyResult::Shown : KeyResult::Nothing;
        }
        default:
            return KeyResult::Nothing;
    }
}

DragTool::KeyResult DragTool::MoveKeySlot(int direction) {
    if (!m_editor.HasSlots()) {
        return KeyResult::Nothing;
    }
    m_keySlot = kNeighbours[size_t(m_keySlot)][size_t(direction)];
    return KeyResult::Shown;
}

DragTool::KeyResult DragTool::PickOrDrop() {
    if (!m_editor.HasSlots()) {
        return KeyResult::Nothing;
    }
    if (m_pickedSlot == kEmptySlot) {
        m_pickedSlot = m_editor.Slots()[size_t(m_keySlot)] == kEmptySlot ? kEmptySlot : m_keySlot;
        return KeyResult::Shown;
    }
    const int picked = m_pickedSlot;
    GiveUp();
    DropPicked();
    return m_editor.SwapSlots(picked, m_keySlot) ? KeyResult::Changed : KeyResult::Shown;
}

DragTool::KeyResult DragTool::MoveText(int by) {
    if (!m_editor.ShowsCustom() || m_editor.Layout().freeText.isEmpty()) {
        return KeyResult::Nothing;
    }
    const int row = qBound(0, m_editor.TextRow() + by, kTextRowCount - 1);
    return m_editor.SetTextRow(row) ? KeyResult::Changed : KeyResult::Shown;
}

}  // namespace kivo
