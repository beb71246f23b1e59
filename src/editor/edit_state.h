#pragma once

// What the editor works on, as one value: the layouts with page, theme, style and orientation, the slot
// table and the row of the free text. What is edited stays here until it is applied. GUI thread.

#include "compose/custom_layout.h"
#include "compose/screen_state.h"
#include "compose/theme_state.h"
#include "model/interface_language.h"

namespace kivo {

struct EditState {
    ThemeState themes;
    SlotTable slotTable = EmptySlotTable();
    int textRow = kTextRowCount - 1;  // 0..2
};

bool operator==(const EditState& a, const EditState& b);
inline bool operator!=(const EditState& a, const EditState& b) {
    return !(a == b);
}

// What the settings file holds, settled (below). Never fails.
EditState LoadEditState(InterfaceLanguage language);

// Writes it in one step; while a theme is shown the slot table and the text row, which belong to the custom
// page, stay what they are in the file. False, with one log line, when the file could not be written.
bool SaveEditState(const EditState& state);

// Brings slots and flags in line with what they stand for: no free text holds one of the five slots, which it
// does not need; a kind that stands in a slot is ticked, and the free text is ticked exactly where there is
// one. For what was just loaded.
void SettleFlags(EditState& state);

// The picture that the state asks for.
ScreenState MakeScreenState(const EditState& state, InterfaceLanguage language);

// The record in force: of the custom layout or of the theme in its orientation.
LayoutRecord& LayoutInForce(EditState& state);
const LayoutRecord& LayoutInForce(const EditState& state);

// Row of the slot table and index of the custom layout in force: 0 (five items) or 1 (one item).
int VariantInForce(const EditState& state);

// Gives a layout that has that picture of its own another one, untrimmed.
void ReplacePicture(LayoutRecord& layout, const QString& old, const QString& by);

// Gives a layout a picture of its own; its trim is cleared if that is another one than it shows.
void SetPicture(LayoutRecord& layout, const QString& path);

// Gives a custom layout its free text and ticks it exactly where there is one. Blanks and line breaks at the
// end, which would push it out of its place, are not kept.
void SetFreeText(LayoutRecord& layout, int variant, const QString& typed);

// Brings a layout into force that comes from elsewhere: page, theme or variant, orientation, its record, and
// of a custom one slots and text row. What belongs to the user here stays: the samples, and the picture that
// stands in for one that is no more. All other layouts stay.
void TakeLayout(EditState& state, const ScreenState& layout);

// Ticks the free text of a custom layout exactly where there is one.
void SettleTextFlag(LayoutRecord& layout, int variant);

}  // namespace kivo
