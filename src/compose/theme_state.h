#pragma once

// The theme state as the settings keep it: page, theme, style, orientation and the layouts. Loaded once
// when the program starts, saved when something is applied. GUI thread.

#include <array>

#include "compose/custom_layout.h"
#include "compose/layout_record.h"
#include "compose/screen_state.h"
#include "config/folders.h"

namespace kivo {

class SettingsWriter;

// The themes in landscape, the same in portrait, the custom layouts: in the order of ThemeGroups.
constexpr int kLayoutCount = kThemeGroupCount;
constexpr int kFirstCustomLayout = kLayoutCount - kVariantCount;

struct ThemeState {
    int mode = 0;   // 0: theme page, any other value: custom page
    int theme = 0;  // 0..kThemeCount - 1
    // The settings have one number for both: that of the page in front. The other page begins with 0.
    int themeStyle = 0;   // of the scene theme: 1 has the smaller date
    int customStyle = 0;  // 0 is custom layout 0, any other value 1
    Orientation orientation = Orientation::Landscape;
    std::array<LayoutRecord, kLayoutCount> layouts;
};

// Index in ThemeState::layouts of a theme's or a custom variant's record.
constexpr int ThemeLayoutIndex(Theme theme, Orientation orientation) {
    return int(orientation) * kThemeCount + int(theme);
}
constexpr int CustomLayoutIndex(int variant) {
    return kFirstCustomLayout + variant;
}
static_assert(ThemeLayoutIndex(Theme(kThemeCount - 1), Orientation::Portrait) + 1 == CustomLayoutIndex(0));

// The theme that is chosen.
Theme ThemeOf(const ThemeState& state);
// Whether the custom page is chosen, and its variant: 0 (five items) or 1 (one item).
bool IsCustom(const ThemeState& state);
int VariantOf(const ThemeState& state);
// The style of the page in front.
int StyleInForce(const ThemeState& state);
void SetStyleInForce(ThemeState& state, int style);
// Index of the record in force: of the custom variant on the custom page, of the theme in its orientation on
// the theme page.
int LayoutIndexInForce(const ThemeState& state);

bool operator==(const ThemeState& a, const ThemeState& b);
inline bool operator!=(const ThemeState& a, const ThemeState& b) {
    return !(a == b);
}

// Where an item's text may stand: one that would stand off the panel is put back where the factory has it.
QRect PlaceOnCanvas(const QRect& rect, const QRect& factory, Orientation orientation);

ThemeState FactoryThemeState(InterfaceLanguage language);

// Reads the settings file. A missing group has its factory values; a value that makes no sense has its
// factory value and one log line for the file. Never fails.
ThemeState LoadThemeState(InterfaceLanguage language);
// False, with one log line, when the file could not be written.
bool SaveThemeState(const ThemeState& state, const QString& filePath = ConfigFilePath());
// The same as part of a larger write.
void WriteThemeState(SettingsWriter& settings, const ThemeState& state);

// What the settings say is to be shown: the layout in force, its row of the slot table and the current text
// row.
ScreenState MakeScreenState(const ThemeState& state, const SlotTable& slotTable, int textRow,
                            InterfaceLanguage language);

// Ticks the kinds that stand in a slot, so that nothing that has a place is hidden for want of a flag. The
// one-item layout has only its centre slot; the free texts stand in no slot.
void TickPlacedItems(ThemeState& state, const SlotTable& slotTable);

}  // namespace kivo
