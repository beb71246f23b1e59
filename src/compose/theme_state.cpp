#include "compose/theme_state.h"

#include <tuple>

#include "config/setting_keys.h"
#include "config/settings_file.h"
#include "config/stored_path.h"

namespace kivo {

namespace {

// A rectangle that is missing is none; one that is there but makes no sense is the factory's.
QRect LoadRect(const SettingsReader& settings, const QString& key, const QRect& factory) {
    return settings.Contains(key) ? settings.Rect(key, factory) : QRect();
}

LayoutRecord LoadLayout(const SettingsReader& settings, const QString& group, const LayoutRecord& factory,
                        Orientation orientation, InterfaceLanguage language) {
    const auto number = [&](const SettingKey& key) { return settings.Int(GroupKey(group, key), key); };
    LayoutRecord record;
    record.xPt = number(keys::kXPt);
    record.yPt = number(keys::kYPt);
    record.xZoom = number(keys::kXZoom);
    record.yZoom = number(keys::kYZoom);
    SettingKey highlight = keys::kHighlight;
    const QString highlightKey = GroupKey(group, highlight);
    if (settings.Contains(highlightKey)) {
        highlight.defaultInt = factory.highlight;
        highlight.notANumber = factory.highlight;
    }
    record.highlight = settings.Int(highlightKey, highlight);
    for (int n = 0; n < kLiveValueCount; ++n) {
        const auto item = size_t(n);
        record.shown[item] = settings.Int(ItemKey(group, keys::kShow, n), keys::kShow) != 0;
        record.selected[item] = settings.Int(ItemKey(group, keys::kShow2, n), keys::kShow2) != 0;
        record.tile[item] = LoadRect(settings, ItemKey(group, keys::kShowRect, n), factory.tile[item]);
        record.textRect[item] = PlaceOnCanvas(
            LoadRect(settings, ItemKey(group, keys::kShowStringRect, n), factory.textRect[item]),
            factory.textRect[item], orientation);
        record.sample[item] = settings.Text(ItemKey(group, keys::kString, n));
        if (const QString sample = SampleOverride(n, language); !sample.isNull()) {
            record.sample[item] = sample;
        }
    }
    record.picture = PathFromStore(settings.Text(GroupKey(group, keys::kStringPixmap)));
    record.freeText = settings.Text(GroupKey(group, keys::kStringD1));
    record.defaultPicture = PathFromStore(settings.Text(GroupKey(group, keys::kStringPixmapS)));
    record.sizeIndex = number(keys::kSize);
    record.colorIndex = number(keys::kColor);
    record.dim = number(keys::kDim);
    record.blur = number(keys::kBlur);
    record.accentFromPicture = number(keys::kAccentOfPicture) != 0;
    return record;
}

void SaveLayout(SettingsWriter& settings, const QString& group, const LayoutRecord& record) {
    settings.SetInt(GroupKey(group, keys::kXPt), record.xPt);
    settings.SetInt(GroupKey(group, keys::kYPt), record.yPt);
    settings.SetInt(GroupKey(group, keys::kXZoom), record.xZoom);
    settings.SetInt(GroupKey(group, keys::kYZoom), record.yZoom);
    settings.SetInt(GroupKey(group, keys::kHighlight), record.highlight);
    for (int n = 0; n < kLiveValueCount; ++n) {
        const auto item = size_t(n);
        settings.SetInt(ItemKey(group, keys::kShow, n), record.shown[item] ? 1 : 0);
        settings.SetInt(ItemKey(group, keys::kShow2, n), record.selected[item] ? 1 : 0);
        settings.SetRect(ItemKey(group, keys::kShowRect, n), record.tile[item]);
        settings.SetRect(ItemKey(group, keys::kShowStringRect, n), record.textRect[item]);
        settings.SetText(ItemKey(group, keys::kString, n), record.sample[item]);
    }
    settings.SetText(GroupKey(group, keys::kStringPixmap), PathToStore(record.picture));
    settings.SetText(GroupKey(group, keys::kStringD1), record.freeText);
    settings.SetText(GroupKey(group, keys::kStringPixmapS), PathToStore(record.defaultPicture));
    settings.SetInt(GroupKey(group, keys::kSize), record.sizeIndex);
    settings.SetInt(GroupKey(group, keys::kColor), record.colorIndex);
    settings.SetOptionalInt(GroupKey(group, keys::kDim), keys::kDim, record.dim);
    settings.SetOptionalInt(GroupKey(group, keys::kBlur), keys::kBlur, record.blur);
    settings.SetOptionalInt(GroupKey(group, keys::kAccentOfPicture), keys::kAccentOfPicture,
                            record.accentFromPicture ? 1 : 0);
}

// The orientation a group belongs to; the custom layouts hold no rectangles, so theirs does not matter.
Orientation OrientationOf(int layout) {
    return layout >= kThemeCount && layout < kFirstCustomLayout ? Orientation::Portrait
                                                                : Orientation::Landscape;
}

auto Tied(const ThemeState& s) {
    return std::tie(s.mode, s.theme, s.themeStyle, s.customStyle, s.orientation, s.layouts);
}

}  // namespace

QRect PlaceOnCanvas(const QRect& rect, const QRect& factory, Orientation orientation) {
    const QRect canvas(QPoint(0, 0), CanvasSize(orientation));
    return rect.isNull() || rect.intersects(canvas) ? rect : factory;
}

Theme ThemeOf(const ThemeState& state) {
    return Theme(qBound(0, state.theme, kThemeCount - 1));
}

bool IsCustom(const ThemeState& state) {
    return state.mode != 0;
}

int VariantOf(const ThemeState& state) {
    return state.customStyle == 0 ? 0 : 1;
}

int StyleInForce(const ThemeState& state) {
    return IsCustom(state) ? state.customStyle : state.themeStyle;
}

void SetStyleInForce(ThemeState& state, int style) {
    (IsCustom(state) ? state.customStyle : state.themeStyle) = style;
}

int LayoutIndexInForce(const ThemeState& state) {
    return IsCustom(state) ? CustomLayoutIndex(VariantOf(state))
                           : ThemeLayoutIndex(ThemeOf(state), state.orientation);
}

bool operator==(const ThemeState& a, const ThemeState& b) {
    return Tied(a) == Tied(b);
}

ThemeState FactoryThemeState(InterfaceLanguage language) {
    ThemeState state;
    for (int theme = 0; theme < kThemeCount; ++theme) {
        for (const Orientation orientation : {Orientation::Landscape, Orientation::Portrait}) {
            state.layouts[size_t(ThemeLayoutIndex(Theme(theme), orientation))] =
                FactoryThemeLayout(Theme(theme), orientation, language);
        }
    }
    for (int variant = 0; variant < kVariantCount; ++variant) {
        state.layouts[size_t(CustomLayoutIndex(variant))] = FactoryCustomLayout(variant, language);
    }
    return state;
}

ThemeState LoadThemeState(InterfaceLanguage language) {
    ThemeState state = FactoryThemeState(language);
    const SettingsReader settings;
    state.mode = settings.Int(keys::kMode);
    state.theme = settings.Int(keys::kThemeId);
    SetStyleInForce(state, settings.Int(keys::kStyle));
    state.orientation = Orientation(settings.Int(keys::kHor));
    for (int n = 0; n < kLayoutCount; ++n) {
        const QString& group = ThemeGroups()[n];
        LayoutRecord& record = state.layouts[size_t(n)];
        // Without its flags and rectangles a layout would show nothing, so a group that is not there stays as
        // made.
        if (settings.HasGroup(group)) {
            record = LoadLayout(settings, group, record, OrientationOf(n), language);
        }
    }
    return state;
}

void WriteThemeState(SettingsWriter& settings, const ThemeState& state) {
    settings.SetInt(QString(keys::kMode.name), state.mode);
    settings.SetInt(QString(keys::kThemeId.name), state.theme);
    settings.SetInt(QString(keys::kStyle.name), StyleInForce(state));
    settings.SetInt(QString(keys::kHor.name), int(state.orientation));
    for (int n = 0; n < kLayoutCount; ++n) {
        SaveLayout(settings, ThemeGroups()[n], state.layouts[size_t(n)]);
    }
}

bool SaveThemeState(const ThemeState& state, const QString& filePath) {
    SettingsWriter settings(filePath);
    WriteThemeState(settings, state);
    return settings.Commit();
}

ScreenState MakeScreenState(const ThemeState& state, const SlotTable& slotTable, int textRow,
                            InterfaceLanguage language) {
    // Nothing of the other page, which an apply does not save: the frame of this one would be another after a
    // restart.
    ScreenState screen;
    screen.custom = IsCustom(state);
    if (screen.custom) {
        screen.variant = VariantOf(state);
        screen.slotItems = slotTable[size_t(screen.variant)];
        screen.textRow = qBound(0, textRow, kTextRowCount - 1);
    } else {
        screen.theme = ThemeOf(state);
        screen.style = state.themeStyle;
    }
    screen.orientation = state.orientation;
    screen.layout = state.layouts[size_t(LayoutIndexInForce(state))];
    screen.language = language;
    screen.captions = ItemCaptions();
    return screen;
}

void TickPlacedItems(ThemeState& state, const SlotTable& slotTable) {
    const auto tick = [](std::array<bool, kLiveValueCount>& flags, int item) {
        if (HasLiveValue(item)) {
            flags[size_t(item)] = true;
        }
    };
    for (const int item : slotTable[0]) {
        tick(state.layouts[size_t(CustomLayoutIndex(0))].shown, item);
    }
    tick(state.layouts[size_t(CustomLayoutIndex(1))].selected, slotTable[1][kCentreSlot]);
}

}  // namespace kivo
