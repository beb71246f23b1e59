#pragma once

// The preview of the screen in the window, and the editor of custom layouts in one. Shows what the panel
// would show, magnified. While editing is open a person drags items between the slots and the free text
// between its rows, types the free text in place and trims the picture. GUI thread.
//
// What is edited stays in Edited() until somebody applies it: nothing here reaches the panel, and only
// CommitLayout, SaveCustomShow write settings.

#include <QPoint>
#include <QWidget>
#include <atomic>

#include "editor/edit_history.h"
#include "editor/edit_state.h"
#include "editor/preview_background.h"
#include "editor/screen_mapping.h"
#include "editor/trim_frame.h"

namespace kivo {

struct PanelTexts;
class PictureSource;
class SelfPlainTextEdit;

// Not 0: a free text may be longer in landscape, 60 characters instead of 40. Nothing sets it yet.
extern std::atomic<quint8> wideFreeText;

class ZoomWidget : public QWidget {
    Q_OBJECT

public:
    // Reads the slot table and the text row from the settings; the layouts have factory values until Load or
    // the first ShowTheme.
    explicit ZoomWidget(QWidget* parent = nullptr);
    ~ZoomWidget() override;

    // What is edited, and the picture that it asks for in the interface language.
    const EditState& Edited() const { return m_edited; }
    ScreenState Shown() const;

    // What the settings hold as far as the editor knows: as loaded, committed or told by SetSavedThemes.
    const EditState& Saved() const { return m_saved; }
    // Tells which themes have been written to the settings; RevertLayout goes back to their custom layouts.
    void SetSavedThemes(const ThemeState& themes) { m_saved.themes = themes; }

    // Reads everything from the settings file; edited and saved are the same then, and the way back begins.
    void Load();

    // Reads and writes the ten entries of the slot table alone. What was read counts as saved.
    void LoadCustomShow();
    bool SaveCustomShow();

    // Shows a changed state: another page, theme, style, orientation. The first state ever shown counts as
    // loaded and saved, and its flags are settled. An open text entry ends first and its text is kept, also
    // where state was copied before. With reloadPictures the picture's file is looked at again when it is
    // next painted, and read where it has changed; one with another path always is.
    void ShowTheme(const ThemeState& state, bool reloadPictures);

    // 0: landscape, 1: portrait. Each layout keeps its trim.
    void SetOrientation(int orientation);

    // Where the pictures come from; outlives this object. The preview follows what it tells.
    void SetPictures(PictureSource& pictures);

    // Has the picture's file looked at again: somebody may have changed it meanwhile.
    void CheckPicture();

    // Gives the layout in force that picture and clears its trim, whether it can be shown or not.
    void SetBackground(const QString& path);

    // For a picture that is no more: whatever layout has it as its own, edited, saved or on the way back,
    // gets the other one, untrimmed. Steps of the way back do not bring it again.
    void ReplacePicture(const QString& old, const QString& by);

    // Ticks or unticks an item of the custom layout in force (kind 0..8). The caller asks MayTick before.
    void SetItemEnabled(int kind, bool on);

    // The free text's colour (0..5) and size step (0..2); others are ignored. A step of the way back each.
    void SetFontColor(int color);
    void SetFontSize(int size);

    // Live values; an empty one leaves what is shown for that item, at first the layout's sample.
    void SetLiveTexts(const ItemTexts& texts);

    // Dragging, text entry and trimming act only while editing is open. Closing ends text entry and trim.
    void SetEditing(bool on);
    bool IsEditing() const { return m_editing; }

    // 1: the mouse moves and sizes a frame over the whole picture; 0: back to the layout. Text entry and trim
    // mode end each other; 0 outside trim mode does nothing.
    void SetTrimMode(quint8 on);
    bool IsTrimMode() const { return m_trimMode; }
    // In trim mode while editing is open: the whole picture is shown, not the screen.
    bool IsTrimming() const { return m_editing && m_trimMode; }
    // Shows the picture of the layout in force untrimmed again.
    void ResetTrim();

    // One step back; emits UndoColorSignal, and UndoTextSize where the size changed. At the state that was
    // loaded it does nothing.
    void Undo();

    // Makes the edited custom layouts, table and text row the saved ones, with page, style and orientation,
    // and writes table and row. The layouts themselves are written by whoever applies them, who then calls
    // SetSavedThemes. False when the file could not be written.
    bool CommitLayout();

    // Puts both custom layouts, the table and the text row back to the saved ones. Page, theme, style and
    // orientation stay, and so does a layout's picture, which is chosen outside of editing; with a picture
    // other than the saved one its trim stays too.
    void RevertLayout();

    // Gives the text box the look and place of the current colour, size, row and orientation.
    void StyleTextBox();
    bool IsTextEntryOpen() const { return m_textEntryOpen; }

    // For tests: what has been decoded and composed so far.
    const PreviewBackground& Background() const { return m_background; }

    // Somebody else draws what the screen lies in; the well of its own is then for trimming only.
    void SetFramed(bool on);

    QSize sizeHint() const override;

public Q_SLOTS:
    // Ends text entry: the text is kept as the free text, an empty one unticks it. Does nothing while none is
    // open.
    void solteditingFinished();
    // Opens text entry at the current row, while a custom layout is edited.
    void slotShowEdt();

Q_SIGNALS:
    void HideColorWin(int iShow);
    void UndoColorSignal(int iColor);
    void UndoTextSize(int iSize);
    // 1 while the trim frame is moved, 0 after a release: the small panel over the picture gets out of the
    // way.
    void HideRemote(int iHide);
    // IsTrimming() may have changed.
    void trimmingChanged();
    // Flags, slots, free text, row, trim or picture have changed through the mouse, the keyboard, text entry,
    // Undo or RevertLayout.
    void layoutChanged();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    enum class Drag { None, Slot, Text, MoveFrame, SizeFrame };

    Orientation CurrentOrientation() const { return m_edited.themes.orientation; }
    bool ShowsCustom() const { return IsCustom(m_edited.themes); }
    bool CanDragSlots() const;
    SlotRow& Slots() { return m_edited.slotTable[size_t(VariantInForce(m_edited))]; }
    const SlotRow& Slots() const { return m_edited.slotTable[size_t(VariantInForce(m_edited))]; }
    const LayoutRecord& Layout() const { return LayoutInForce(m_edited); }

    // After an edit of the layout in force: remembers the step, repaints and, unless the caller itself asked
    // for the edit, tells.
    enum class By { Caller, Person };
    void NoteEdit(By by, EditHistory::Kind kind = EditHistory::Kind::Single);
    void RetranslateTexts();

    // Text entry.
    bool OpenTextEntry();
    void KeepTyping();  // after a choice in the tool bar
    void PlaceTextBox();

    // Where the free text is drawn, or would be in that row; widget pixels, empty where there is none.
    QRect DrawnTextRect(int row) const;
    QRect DrawnTextRect() const { return DrawnTextRect(m_edited.textRow); }

    // Dragging in the layout, by mouse and keyboard. The key handlers tell whether the key meant something.
    int PressedSlot(QPoint position) const;
    bool CanDragText() const;
    // What a press there takes hold of; a contested one passes the turn on.
    struct Hold {
        int slot = kEmptySlot;
        bool text = false;
        bool contested = false;
    };
    Hold HoldAt(QPoint position) const;
    // Whether a release there ends a drag and not a click.
    bool IsDrop(QPoint position) const;
    int SlotAt(QPoint position) const;  // that takes the slot when it is dropped there; kEmptySlot for none
    int RowAt(QPoint position) const;   // that takes the text when it is dropped there
    int RowDraggedTo(QPoint position) const;
    void StartTextDrag();
    void MoveTextTo(int row);
    void MoveSlotTo(int slot);
    void EndDrag();
    void Hover(QPoint position);
    void SetHover(int slot, bool text);
    void SetDropRow(int row);
    bool HandleLayoutKey(const QKeyEvent& event);
    bool MoveTextByKey(int by);
    bool MoveKeySlot(int direction);
    bool PickOrDropKeySlot();

    // Trimming.
    TrimView CurrentTrimView();
    TrimMapping MappingOf(const TrimView& view) const;
    void UpdateTrimZone(QPoint position);
    void TrimPress(QPoint position);
    void TrimMove(QPoint position);
    void TrimRelease(QPoint position);
    void SetTrimFrame(const QRectF& frame, EditHistory::Kind kind);
    bool HandleTrimKey(const QKeyEvent& event);

    // Painting.
    ItemTexts PreviewTexts() const;
    void PaintScreen(QPainter& painter, const ScreenState& state, const PanelTexts& texts);
    void PaintLayoutMarks(QPainter& painter, const ScreenState& state, const PanelTexts& texts) const;
    void PaintRowMarks(QPainter& painter) const;
    void PaintTrim(QPainter& painter, const ScreenState& state);

    EditState m_edited;
    EditState m_saved;
    bool m_loaded = false;
    EditHistory m_history;
    ItemTexts m_liveTexts;
    PreviewBackground m_background;

    SelfPlainTextEdit* m_editText = nullptr;  // a child
    bool m_textEntryOpen = false;

    bool m_editing = false;
    bool m_trimMode = false;
    bool m_framed = false;

    Drag m_drag = Drag::None;
    QPoint m_pressedAt;  // where it began
    int m_draggedSlot = kEmptySlot;
    int m_dropRow = -1;  // under the mouse while the text is dragged
    // The centre slot and a text in the middle row lie over each other: presses where both are take turns
    // between the two.
    bool m_textHasTurn = false;
    int m_hoverSlot = kEmptySlot;
    bool m_hoverText = false;
    int m_keySlot = kCentreSlot;
    int m_pickedSlot = kEmptySlot;  // by the keyboard, to be dropped on another
    bool m_focusByKeyboard = false;

    TrimZone m_trimZone = TrimZone::None;
    TrimView m_trimStart;      // when the drag began
    LayoutRecord m_trimDraft;  // what the drag has made of the layout's trim so far
    int m_wheelRest = 0;       // wheel movement (eighths of a degree) not yet acted on
};

}  // namespace kivo
