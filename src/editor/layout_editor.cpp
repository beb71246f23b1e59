#include "editor/layout_editor.h"

#include <algorithm>
#include <utility>

#include "compose/wrapped_text.h"
#include "config/settings_file.h"
#include "editor/custom_layout_rules.h"
#include "editor/trim_frame.h"
#include "pictures/picture_path.h"

namespace kivo {

namespace {

QString PictureOf(const LayoutRecord& layout) {
    ScreenState state;
    state.layout = layout;
    return PicturePath(state);
}

}  // namespace

LayoutEditor::LayoutEditor(Save save) : m_save(std::move(save)) {
    m_edited.themes = FactoryThemeState(CurrentInterfaceLanguage());
    m_edited.textRow = LoadCurRectId();
    m_saved = m_edited;
    LoadSlots();
}

ScreenState LayoutEditor::Shown() const {
    return MakeScreenState(m_edited, CurrentInterfaceLanguage());
}

bool LayoutEditor::HasText() const {
    return ShowsCustom() && !Layout().freeText.isEmpty() && CustomFlags(Layout(), Variant())[OtherText];
}

void LayoutEditor::Load() {
    m_edited = LoadEditState(CurrentInterfaceLanguage());
    m_saved = m_edited;
    m_hasState = true;
    m_history.Start(m_edited);
}

void LayoutEditor::LoadSlots() {
    m_edited.slotTable = LoadSlotTable();
    m_saved.slotTable = m_edited.slotTable;
    for (EditState* state : {&m_edited, &m_saved}) {
        SettleFlags(*state);
    }
    m_history.Start(m_edited);
}

bool LayoutEditor::SaveSlots() const {
    return SaveSlotTable(m_edited.slotTable);
}

void LayoutEditor::Show(const ThemeState& themes) {
    m_edited.themes = themes;
    if (!m_hasState) {
        m_hasState = true;
        SettleFlags(m_edited);
        m_saved = m_edited;
        m_history.Start(m_edited);
    }
    NoteEdit();
}

void LayoutEditor::Turn(Orientation orientation) {
    m_edited.themes.orientation = orientation;
    NoteEdit();
}

bool LayoutEditor::MayTick(int kind) const {
    return Variant() != 0 || kivo::MayTick(kind, m_edited.themes.layouts[size_t(CustomLayoutIndex(0))].shown);
}

bool LayoutEditor::WouldBeShown(int kind) const {
    if (Variant() != 0) {
        return true;
    }
    const auto& ticked = m_edited.themes.layouts[size_t(CustomLayoutIndex(0))].shown;
    const int partner = PartnerOf(kind);
    const bool joins = partner != kEmptySlot && ticked[size_t(partner)];
    const SlotRow& row = Slots();
    return MayTick(kind) && (joins || std::find(row.begin(), row.end(), kEmptySlot) != row.end());
}

void LayoutEditor::SetItem(int kind, bool on) {
    LayoutRecord& layout = Custom();
    ItemFlags& flags = CustomFlags(layout, Variant());
    if (Variant() == 0) {
        SetFiveSlotItem(kind, on, EditedSlots(), flags);
    } else {
        SetSingleItem(kind, on, EditedSlots(), flags);
        if (!on && IsItem(kind)) {
            flags[size_t(kind)] = false;  // as its tick box shows it
        }
        // The free text stands beside the single item and is no choice against it.
        if (kind != OtherText) {
            SettleTextFlag(layout, Variant());
        }
    }
    NoteEdit();
}

bool LayoutEditor::IsLeftOut(int kind) const {
    const ScreenState shown = Shown();
    return shown.custom && HasLiveValue(kind) && IsShown(shown, kind) && !HasPlace(shown, kind);
}

bool LayoutEditor::SwapSlots(int a, int b) {
    if (!HasSlots() || a == b) {
        return false;
    }
    kivo::SwapSlots(EditedSlots(), a, b);
    NoteEdit();
    return true;
}

bool LayoutEditor::SetColor(int color) {
    if (!ShowsCustom() || color < 0 || color >= kTextColorCount) {
        return false;
    }
    Custom().colorIndex = color;
    NoteEdit();
    return true;
}

bool LayoutEditor::SetSize(int size) {
    if (!ShowsCustom() || size < 0 || size >= kTextSizeCount) {
        return false;
    }
    Custom().sizeIndex = size;
    NoteEdit();
    return true;
}

bool LayoutEditor::SetTextRow(int row) {
    if (row < 0 || row >= kTextRowCount || row == m_edited.textRow) {
        return false;
    }
    m_edited.textRow = row;
    NoteEdit();
    return true;
}

void LayoutEditor::BeginText() {
    CustomFlags(Custom(), Variant())[OtherText] = true;
}

void LayoutEditor::EndText(const QString& typed) {
    SetFreeText(Custom(), Variant(), typed);
    NoteEdit();
}

bool LayoutEditor::WouldChangeText(const QString& typed) const {
    return WithoutBlankEnd(typed) != Layout().freeText;
}

void LayoutEditor::SetPicture(const QString& path) {
    kivo::SetPicture(LayoutInForce(m_edited), path);
    NoteEdit();
}

void LayoutEditor::ReplacePicture(const QString& old, const QString& by) {
    for (LayoutRecord& layout : m_edited.themes.layouts) {
        kivo::ReplacePicture(layout, old, by);
    }
    m_history.ReplacePicture(old, by);
}

void LayoutEditor::SetTrim(const QRectF& frame, EditHistory::Kind kind) {
    StoreTrim(frame, Lying(), LayoutInForce(m_edited));
    NoteEdit(kind);
}

void LayoutEditor::ClearTrim() {
    kivo::ClearTrim(LayoutInForce(m_edited));
    NoteEdit();
}

bool LayoutEditor::SetDim(int percent) {
    return SetShare(&LayoutRecord::dim, percent, EditHistory::Kind::Dim);
}

bool LayoutEditor::SetBlur(int percent) {
    return SetShare(&LayoutRecord::blur, percent, EditHistory::Kind::Blur);
}

bool LayoutEditor::SetShare(int LayoutRecord::*share, int percent, EditHistory::Kind kind) {
    if (percent < 0 || percent > 100) {
        return false;
    }
    LayoutInForce(m_edited).*share = percent;
    NoteEdit(kind);
    return true;
}

bool LayoutEditor::SetAccentFromPicture(bool on) {
    if (ShowsCustom() || !HasAccent(Shown().theme)) {
        return false;
    }
    LayoutInForce(m_edited).accentFromPicture = on;
    NoteEdit();
    return true;
}

bool LayoutEditor::Commit() {
    EditState next = m_edited;
    const bool custom = ShowsCustom();
    const int first = custom ? 0 : kFirstCustomLayout;
    const int end = custom ? kFirstCustomLayout : kLayoutCount;
    const auto& saved = m_saved.themes.layouts;
    std::copy(saved.begin() + first, saved.begin() + end, next.themes.layouts.begin() + first);
    if (custom) {
        next.themes.theme = m_saved.themes.theme;
    } else {
        next.slotTable = m_saved.slotTable;
        next.textRow = m_saved.textRow;
    }
    if (!m_save(next)) {
        return false;
    }
    m_saved = next;
    return true;
}

bool LayoutEditor::ReplaceSaved(const EditState& next, bool mayFollow) {
    const bool follows = mayFollow && m_edited == m_saved;
    if (next != m_saved && !m_save(next)) {
        return false;
    }
    m_saved = next;
    if (follows) {
        m_edited = next;
        NoteEdit();
    }
    return true;
}

bool LayoutEditor::TakeLayout(const ScreenState& layout) {
    EditState next = m_saved;
    kivo::TakeLayout(next, layout);
    if (next != m_saved && !m_save(next)) {
        return false;
    }
    m_saved = next;
    EditState edited = m_edited;
    kivo::TakeLayout(edited, layout);
    // Into force as it was first, so that there is something to go back to.
    const auto records = m_edited.themes.layouts;
    m_edited.themes = edited.themes;
    m_edited.themes.layouts = records;
    NoteEdit();
    m_edited = edited;
    NoteEdit();
    return true;
}

void LayoutEditor::Revert() {
    m_edited.slotTable = m_saved.slotTable;
    m_edited.textRow = m_saved.textRow;
    for (int variant = 0; variant < kVariantCount; ++variant) {
        const auto index = size_t(CustomLayoutIndex(variant));
        const LayoutRecord before = m_edited.themes.layouts[index];
        LayoutRecord& layout = m_edited.themes.layouts[index];
        layout = m_saved.themes.layouts[index];
        layout.picture = before.picture;
        if (PictureOf(layout) != PictureOf(m_saved.themes.layouts[index])) {
            layout.xPt = before.xPt;
            layout.yPt = before.yPt;
            layout.xZoom = before.xZoom;
            layout.yZoom = before.yZoom;
            layout.dim = before.dim;
            layout.blur = before.blur;
        }
    }
    m_history.Start(m_edited);
}

}  // namespace kivo
