#pragma once

// The preview of the screen in the window: shows what the panel would show, magnified, and is the view of the
// editor. While editing is open, mouse and keys become calls of the editor and its tools. GUI thread.
//
// What is edited stays in Edited() until somebody applies it: nothing here reaches the panel, and only
// CommitLayout, SaveCustomShow, ReplaceSaved and TakeLayout write settings.

#include <QPoint>
#include <QWidget>
#include <atomic>

#include "editor/drag_tool.h"
#include "editor/layout_editor.h"
#include "editor/preview_background.h"
#include "editor/preview_items.h"
#include "editor/screen_mapping.h"
#include "editor/trim_tool.h"
#include "editor/typed_text.h"

namespace kivo {

struct PanelTexts;
class PictureSource;
class TextBox;

// Not 0: a free text may be longer in landscape, 60 characters instead of 40. Nothing sets it yet.
extern std::atomic<quint8> wideFreeText;

class ZoomWidget : public QWidget {
    Q_OBJECT

public:
    static constexpr double kWellRadius = 10;  // corners of what it lies in, pixels

    // Reads the slot table and the text row from the settings; the layouts have factory values until Load or
    // the first ShowTheme.
    explicit ZoomWidget(QWidget* parent = nullptr);
    ~ZoomWidget() override;

    const LayoutEditor& Layouts() const { return m_editor; }
    const EditState& Edited() const { return m_editor.Edited(); }
    const EditState& Saved() const { return m_editor.Saved(); }
    ScreenState Shown() const { return m_editor.Shown(); }

    // Doors to the editor; each ends an open text entry and a drag where these would be in the way.
    void Load();
    void LoadCustomShow();
    bool SaveCustomShow() { return m_editor.SaveSlots(); }

    // Shows a changed state: another page, theme, style, orientation. An open text entry ends first and its
    // text is kept, also where state was copied before. With reloadPictures the picture's file is looked at
    // again when it is next painted, and read where it has changed; one with another path always is.
    void ShowTheme(const ThemeState& state, bool reloadPictures);
    void SetOrientation(int orientation);  // 0: landscape, 1: portrait

    // Where the pictures come from; outlives this object. The preview follows what it tells.
    void SetPictures(PictureSource& pictures);

    // Has the picture's file looked at again: somebody may have changed it meanwhile.
    void CheckPicture();
    // Nobody looks at the preview for the time being, see PreviewBackground.
    void LetGoOfPictures() { m_background.LetGo(); }
    // The window is about to be shown: has what the preview takes made ready beside the GUI thread.
    void FetchPictures() { m_background.Fetch(Shown(), ScreenPixels()); }

    // Gives the layout in force that picture and clears its trim, whether it can be shown or not.
    void SetBackground(const QString& path);
    // For a picture that is no more. Not whether the other one can be loaded.
    void ReplacePicture(const QString& old, const QString& by);

    void SetItemEnabled(int kind, bool on);
    void SetFontColor(int color);
    void SetFontSize(int size);
    // Shows the picture of the layout in force untrimmed again.
    void ResetTrim();
    // What is made of it as a whole, and whether the accent is taken from it. EndRun: what follows is another
    // step.
    void SetDim(int percent);
    void SetBlur(int percent);
    void SetAccentFromPicture(bool on);
    void EndRun() { m_editor.EndRun(); }

    // One step back or forth; emits UndoColorSignal, and UndoTextSize where the size changed.
    void Undo();
    void Redo();
    // What is being typed counts as an edit already.
    bool CanUndo() const;
    bool CanRedo() const;
    // The keys that hold wherever the focus is while editing is open: undo and redo, and what trims while a
    // picture is trimmed. Whether the key was one of them.
    bool TakeKey(const QKeyEvent& event);

    bool CommitLayout();
    // Another state is saved, see LayoutEditor::ReplaceSaved. An edit that is open stays open and as it is.
    bool ReplaceSaved(const EditState& next, bool mayFollow);
    // A layout from elsewhere comes into force and is saved, see LayoutEditor::TakeLayout. What was being
    // typed or dragged has ended before.
    bool TakeLayout(const ScreenState& layout);
    void RevertLayout();

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

    // Gives the text box the look and place of the current colour, size, row and orientation.
    void StyleTextBox();
    bool IsTextEntryOpen() const { return m_textEntryOpen; }
    // Whether the free text, as it is or as it is typed, does not stand on the screen as a whole.
    bool IsTextCut() const;

    // For assistive programs: what stands on the screen, none while trimming; the text box where it is open,
    // else null, which then stands for the free text.
    QVector<PreviewItem> Items() const;
    QWidget* OpenTextBox() const;
    // Gives the keys to a slot. A press picks a slot up or puts down what is picked up, as the space bar
    // does, or opens text entry.
    void StandOn(const PreviewItem& item);
    void PressItem(const PreviewItem& item);

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
    // Undo, Redo or RevertLayout.
    void layoutChanged();
    // Something was edited, typed, undone or brought into force: CanUndo, CanRedo and IsTextCut may tell
    // something else.
    void editStateChanged();
    // What assistive programs are told of an item.
    void itemTold(const kivo::PreviewChange& change);
    // An item or the text is dragged before editing is open.
    void editingWanted();

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
    ScreenMapping Mapping() const { return MappingFor(m_editor.Lying(), size()); }

    // After an edit: repaints and, unless the caller itself asked for it, tells.
    enum class By { Caller, Person };
    void NoteEdit(By by);
    void TellItems();  // what has changed of them since they were told last, where somebody listens
    void StepThrough(bool (LayoutEditor::*step)());
    void SetShare(bool (LayoutEditor::*set)(int), int percent);  // of the picture: dim or blur
    void RetranslateTexts();

    // Text entry.
    bool OpenTextEntry();
    void KeepTyping();  // after a choice in the tool bar
    void PlaceTextBox();
    TypedText Typed() const;

    // Mouse and keys.
    void EndDrag();
    void OpenEditingByDrag();
    void ShowDragCursor();
    void ShowTrimCursor() { setCursor(TrimCursor(m_trim.Zone())); }
    void Hover(QPoint position);
    bool HandleHistoryKey(const QKeyEvent& event);
    bool HandleLayoutKey(int key);
    bool HandleTrimKey(const QKeyEvent& event);
    TrimTool& Trimmer();  // at the picture and the size of now

    // Painting.
    ItemTexts PreviewTexts() const;
    QRectF ScreenArea() const;  // of the magnified panel, in whole device pixels
    QSize ScreenPixels() const { return (ScreenArea().size() * devicePixelRatioF()).toSize(); }
    // The items that make room for the text box where it is open.
    ItemFlags HiddenByBox(const ScreenState& state) const;
    void PaintScreen(QPainter& painter, const QRectF& area, const QImage& background,
                     const PanelTexts& texts);
    void PaintTexts(QPainter& painter, const PanelTexts& texts) const;
    void PaintTyped(QPainter& painter, const TypedText& typed) const;
    void PaintLayoutMarks(QPainter& painter, const ScreenState& state, const PanelTexts& texts) const;
    void PaintRowMarks(QPainter& painter) const;
    void PaintTrim(QPainter& painter, const ScreenState& state);

    LayoutEditor m_editor;
    DragTool m_drag{m_editor};
    TrimTool m_trim{m_editor};
    ItemTexts m_liveTexts;
    PreviewBackground m_background;

    QVector<PreviewItem> m_toldItems;

    TextBox* m_editText = nullptr;  // a child
    bool m_textEntryOpen = false;
    bool m_typingByKeyboard = false;  // it was opened so

    bool m_editing = false;
    bool m_trimMode = false;
    bool m_framed = false;
    bool m_focusByKeyboard = false;
};

}  // namespace kivo
