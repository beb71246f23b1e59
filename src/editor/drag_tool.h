#pragma once

// Dragging in a custom layout, by mouse and by keys: an item to another slot, the free text to another row.
// Positions are widget pixels. What a drag makes of the layout is done when it is let go. Knows no widget.
// GUI thread.

#include <QPoint>
#include <QRect>
#include <QSize>

#include "editor/layout_editor.h"

namespace kivo {

class DragTool {
public:
    // editor outlives the tool.
    explicit DragTool(LayoutEditor& editor) : m_editor(editor) {}

    void SetWidgetSize(QSize size) { m_size = size; }

    // What a press there takes hold of: a slot, the text or nothing. A contested one passes the turn on.
    struct Hold {
        int slot = kEmptySlot;
        bool text = false;
        bool contested = false;
        bool IsNothing() const { return slot == kEmptySlot && !text; }
    };
    Hold HoldAt(QPoint position) const;

    // Marks what a press there would take. Whether that is something else than before.
    bool Hover(QPoint position);
    bool LeaveHover() { return MarkHover({}); }

    // False where there is nothing to hold.
    bool Press(QPoint position);
    void Move(QPoint position);
    // Whether the layout has changed.
    bool Release(QPoint position);
    void GiveUp();

    bool IsHolding() const { return !m_held.IsNothing(); }
    bool HoldsText() const { return m_held.text; }
    int HeldSlot() const { return m_held.slot; }
    // Whether the mouse has gone far enough for a drag; by how much it has moved since the press then.
    bool IsDrag() const { return IsHolding() && IsFar(m_at); }
    QPoint Offset() const { return IsDrag() ? m_at - m_pressedAt : QPoint(); }

    // What is marked: a slot or kEmptySlot, the text, and the row that would take the dragged text.
    int MarkedSlot() const { return m_marked.slot; }
    bool MarksText() const { return m_marked.text; }
    int DropRow() const { return m_dropRow; }

    // Keys: the arrows go from slot to slot, the space bar picks an item up and exchanges it with the one
    // where it is pressed next, the page keys move the text. What a key did, or that it means nothing here.
    enum class KeyResult { Nothing, Shown, Changed };
    KeyResult Key(int key);
    int KeySlot() const { return m_keySlot; }
    void StandOn(int slot) { m_keySlot = slot; }
    int PickedSlot() const { return m_pickedSlot; }
    void DropPicked() { m_pickedSlot = kEmptySlot; }

    // Where the free text is drawn, or would be in that row; empty where there is none.
    QRect DrawnTextRect(int row) const;
    QRect DrawnTextRect() const { return DrawnTextRect(m_editor.TextRow()); }

private:
    bool MarkHover(const Hold& hold);
    bool IsFar(QPoint position) const;
    int PressedSlot(QPoint position) const;
    int SlotAt(QPoint position) const;  // that takes the slot when it is dropped there; kEmptySlot for none
    int RowAt(QPoint position) const;   // that takes the text when it is dropped there
    int RowDraggedTo(QPoint position) const;
    KeyResult MoveKeySlot(int direction);
    KeyResult PickOrDrop();
    KeyResult MoveText(int by);

    LayoutEditor& m_editor;
    QSize m_size;
    Hold m_held;
    Hold m_marked;
    QPoint m_pressedAt;
    QPoint m_at;
    int m_dropRow = -1;
    // The centre slot and a text in the middle row lie over each other: presses where both are take turns
    // between the two.
    bool m_textHasTurn = false;
    int m_keySlot = kCentreSlot;
    int m_pickedSlot = kEmptySlot;
};

}  // namespace kivo
