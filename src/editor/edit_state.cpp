#include "editor/edit_state.h"

#include <tuple>

#include "compose/wrapped_text.h"
#include "config/setting_keys.h"
#include "config/settings_file.h"
#include "editor/trim_frame.h"
#include "pictures/picture_path.h"

namespace kivo {

bool operator==(const EditState& a, const EditState& b) {
    return std::tie(a.themes, a.slotTable, a.textRow) == std::tie(b.themes, b.slotTable, b.textRow);
}

EditState LoadEditState(InterfaceLanguage language) {
    EditState state{LoadThemeState(language), LoadSlotTable(), LoadCurRectId()};
    SettleFlags(state);
    return state;
}

bool SaveEditState(const EditState& state) {
    SettingsWriter settings;
    WriteThemeState(settings, state.themes);
    if (IsCustom(state.themes)) {
        WriteSlotTable(settings, state.slotTable);
        settings.SetInt(QString(keys::kCurRectId.name), state.textRow);
    }
    return settings.Commit();
}

void SettleFlags(EditState& state) {
    for (int& item : state.slotTable[0]) {
        if (IsFreeText(item)) {
            item = kEmptySlot;
        }
    }
    TickPlacedItems(state.themes, state.slotTable);
    for (int variant = 0; variant < kVariantCount; ++variant) {
        SettleTextFlag(state.themes.layouts[size_t(CustomLayoutIndex(variant))], variant);
    }
}

ScreenState MakeScreenState(const EditState& state, InterfaceLanguage language) {
    return MakeScreenState(state.themes, state.slotTable, state.textRow, language);
}

LayoutRecord& LayoutInForce(EditState& state) {
    return state.themes.layouts[size_t(LayoutIndexInForce(state.themes))];
}

const LayoutRecord& LayoutInForce(const EditState& state) {
    return state.themes.layouts[size_t(LayoutIndexInForce(state.themes))];
}

int VariantInForce(const EditState& state) {
    return VariantOf(state.themes);
}

void ReplacePicture(LayoutRecord& layout, const QString& old, const QString& by) {
    if (IsSamePicture(layout.picture, old)) {
        layout.picture = by;
        ClearTrim(layout);
    }
}

void SetPicture(LayoutRecord& layout, const QString& path) {
    ScreenState shown;
    shown.layout = layout;
    if (!IsSamePicture(PicturePath(shown), path)) {
        ClearTrim(layout);
    }
    layout.picture = path;
}

void SetFreeText(LayoutRecord& layout, int variant, const QString& typed) {
    layout.freeText = WithoutBlankEnd(typed);
    SettleTextFlag(layout, variant);
}

void TakeLayout(EditState& state, const ScreenState& layout) {
    ThemeState& themes = state.themes;
    if (layout.custom) {
        themes.mode = IsCustom(themes) ? themes.mode : 1;
        themes.customStyle = layout.variant;
        state.slotTable[size_t(layout.variant)] = layout.slotItems;
        state.textRow = layout.textRow;
    } else {
        themes.mode = 0;
        themes.theme = int(layout.theme);
        themes.themeStyle = layout.style;
    }
    themes.orientation = layout.orientation;
    LayoutRecord& record = LayoutInForce(state);
    LayoutRecord taken = layout.layout;
    taken.sample = record.sample;
    taken.defaultPicture = record.defaultPicture;
    record = taken;
    SettleFlags(state);
}

void SettleTextFlag(LayoutRecord& layout, int variant) {
    CustomFlags(layout, variant)[OtherText] = !layout.freeText.isEmpty();
}

}  // namespace kivo
