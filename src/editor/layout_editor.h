#pragma once

// Owner of what is edited: the state as it is edited and as it is saved, the rules of the slots, undo and
// redo, and the one commit. Knows no widget; the preview shows it and turns mouse and keys into its calls.
// GUI thread.
//
// Every edit is one undo step of the layout in force, unless its kind joins it to the step before. Nothing
// reaches the panel from here, and only Commit, SaveSlots, ReplaceSaved and TakeLayout write
// settings.

#include <QRectF>
#include <functional>

#include "editor/edit_history.h"
#include "editor/edit_state.h"

namespace kivo {

class LayoutEditor {
public:
    using Save = std::function<bool(const EditState&)>;  // false: nothing was written

    // Factory values; slots and text row from the settings.
    explicit LayoutEditor(Save save = &SaveEditState);

    const EditState& Edited() const { return m_edited; }
    // What cancel goes back to: as loaded or committed.
    const EditState& Saved() const { return m_saved; }
    // The picture that the edited state asks for, in the interface language.
    ScreenState Shown() const;

    // Of the layout in force.
    const LayoutRecord& Layout() const { return LayoutInForce(m_edited); }
    const SlotRow& Slots() const { return m_edited.slotTable[size_t(Variant())]; }
    int Variant() const { return VariantInForce(m_edited); }
    Orientation Lying() const { return m_edited.themes.orientation; }
    int TextRow() const { return m_edited.textRow; }
    bool ShowsCustom() const { return IsCustom(m_edited.themes); }
    // Whether its items can change places, and whether it shows a free text.
    bool HasSlots() const { return ShowsCustom() && Variant() == 0; }
    bool HasText() const;

    // Reads everything from the settings. Edited and saved are the same then, with nothing to undo.
    void Load();
    // Reads or writes the slot table alone. What was read counts as saved.
    void LoadSlots();
    bool SaveSlots() const;

    // Another page, theme, style or orientation comes into force. The first state ever shown counts as loaded
    // and saved, and its flags are settled.
    void Show(const ThemeState& themes);
    void Turn(Orientation orientation);  // each layout keeps its trim

    // Items of the custom layout in force, by kind. MayTick is the limit of the five-slot layout; SetItem
    // does not ask it. IsLeftOut: the kind is ticked and found no slot. WouldBeShown: one that is not ticked
    // may be, and would find one.
    bool MayTick(int kind) const;
    bool WouldBeShown(int kind) const;
    void SetItem(int kind, bool on);
    bool IsLeftOut(int kind) const;
    // Exchanges what two slots hold. False where nothing changes.
    bool SwapSlots(int a, int b);

    // The free text of the custom layout in force. False for what does not exist (colour 0..5, size 0..2, row
    // 0..2), and of the row where it is the same.
    bool SetColor(int color);
    bool SetSize(int size);
    bool SetTextRow(int row);
    // Typing ticks the text; an empty one at its end unticks it. Blanks and line breaks at the end, which
    // would push it out of its place, are not kept.
    void BeginText();
    void EndText(const QString& typed);
    // Whether ending the typing with that text would be a step.
    bool WouldChangeText(const QString& typed) const;

    // Gives the layout in force a picture and clears its trim if it is another one.
    void SetPicture(const QString& path);
    // For a picture that is no more: whatever layout has it as its own, edited or in a step, gets the other
    // one, untrimmed. Saved with the next commit, like every choice.
    void ReplacePicture(const QString& old, const QString& by);
    // The part of the picture that is shown: a frame as TrimView has it.
    void SetTrim(const QRectF& frame, EditHistory::Kind kind = EditHistory::Kind::Single);
    void ClearTrim();

    // What is made of the picture as a whole. False for what does not exist (0 to 100 percent). Values that
    // follow one another are one step until EndRun.
    bool SetDim(int percent);
    bool SetBlur(int percent);
    void EndRun() { NoteEdit(); }
    // False where the layout in force has no accent.
    bool SetAccentFromPicture(bool on);

    bool CanUndo() const { return m_history.CanStepBack(m_edited); }
    bool CanRedo() const { return m_history.CanStepForth(m_edited); }
    // False where there is no such step.
    bool Undo() { return m_history.StepBack(m_edited); }
    bool Redo() { return m_history.StepForth(m_edited); }

    // Saves what the page in front shows, in one write: page, style and orientation with the custom layouts,
    // slots and row, or with the themes and the one that is chosen. The other page's edits stay unsaved.
    // False when nothing could be written; Saved() is what it was then.
    bool Commit();

    // Saves another state than the edited one, in one write: somebody else has applied it. The edited state
    // follows if nothing in it waits to be applied and it may; else it stays as it is, and waits. False when
    // nothing could be written; then nothing changes.
    bool ReplaceSaved(const EditState& next, bool mayFollow);

    // Takes a layout that comes from elsewhere into force (TakeLayout of edit_state.h): saved at once, in one
    // write, and edited as one step. What else is edited stays and waits. False when nothing could be
    // written; then nothing changes.
    bool TakeLayout(const ScreenState& layout);

    // Puts both custom layouts, slots and text row back to the saved ones, with nothing to undo. Page, theme,
    // style and orientation stay, and so does a layout's picture, which is chosen outside of editing; with a
    // picture other than the saved one its trim stays too, and how it is dimmed and blurred.
    void Revert();

private:
    void NoteEdit(EditHistory::Kind kind = EditHistory::Kind::Single) { m_history.Append(m_edited, kind); }
    // Of the picture, in percent.
    bool SetShare(int LayoutRecord::*share, int percent, EditHistory::Kind kind);
    // A custom layout, also while a theme is shown.
    LayoutRecord& Custom() { return m_edited.themes.layouts[size_t(CustomLayoutIndex(Variant()))]; }
    SlotRow& EditedSlots() { return m_edited.slotTable[size_t(Variant())]; }

    Save m_save;
    EditState m_edited;
    EditState m_saved;
    bool m_hasState = false;
    EditHistory m_history;
};

}  // namespace kivo
