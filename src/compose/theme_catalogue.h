#pragma once

// The four built-in themes as data: pictures, places of the live items, sample texts. Everything that draws,
// loads or previews a theme reads these tables. Pure; any thread.

#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>
#include <array>
#include <optional>

#include "compose/geometry.h"
#include "compose/layout_record.h"
#include "telemetry/interface_language.h"

namespace kivo {

// The numbers are the stored ones ("Config/ThemeID") and the order of the selection list.
enum class Theme { Default = 0, Scene = 1, Tdp = 2, Time = 3 };
constexpr int kThemeCount = 4;

// A picture and where it goes, in panel pixels of that orientation's canvas.
struct SkinLayer {
    QString path;
    QRectF rect;
};

// The skin pictures of a theme from the bottom up: glass, ornaments, in the time theme its tick frame, the
// icons, and over all of them the theme's own icon where it has one.
QVector<SkinLayer> SkinLayers(Theme theme, Orientation orientation);

// The theme's skin picture (its lowest layer) and its icon; the icon is empty for scene and TDP.
QString SkinPicture(Theme theme, Orientation orientation);
QString IconPicture(Theme theme);

// Whether the theme's skin has glass, which its lowest layer holds then. The scene theme has a scrim instead:
// the picture itself is seen through it.
bool HasGlass(Theme theme);

// Whether the theme has an accent, which an accent from the picture can take the place of.
bool HasAccent(Theme theme);

// The line on which a theme centres an item's value and caption, in pixels from the canvas's left edge; none
// where that is the middle of their rectangles. Theirs are not always those of the drawing they stand in.
std::optional<int> ThemeAxis(Theme theme, Orientation orientation, int item);

// The overview pictures of the selection list in theme order. Orientation picks the "all" or the "all3" set;
// English and Russian share the forms with Western texts, scene has one form only.
QStringList OverviewPictures(Orientation orientation, InterfaceLanguage language);

// The eleven built-in backgrounds, in list order, and the one a layout starts with.
QStringList BuiltInBackgrounds();
QString DefaultBackground();

// What the preview shows for each item before a live value arrives.
std::array<QString, kLiveValueCount> SampleTexts(InterfaceLanguage language);

// The samples that the Russian interface puts in place of whatever a layout holds; null for all other items.
QString SampleOverride(int item, InterfaceLanguage language);

// A theme's layout as it comes from the factory.
LayoutRecord FactoryThemeLayout(Theme theme, Orientation orientation, InterfaceLanguage language);

}  // namespace kivo
