#pragma once

// What follows from the theme table: the pictures of each theme and its factory layouts; and the built-in
// backgrounds. Pure; any thread.

#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

#include "compose/geometry.h"
#include "compose/layout_record.h"
#include "model/interface_language.h"
#include "model/theme_table.h"

namespace kivo {

// The theme's row of that orientation.
const ThemeLayout& LayoutOf(Theme theme, Orientation orientation);

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

// The line on which a theme centres an item's value and caption, in pixels from the canvas's left edge; none
// where that is the middle of their rectangles. Theirs are not always those of the drawing they stand in.
std::optional<int> ThemeAxis(Theme theme, Orientation orientation, int item);

// The overview pictures of the selection list in theme order. Orientation picks the "all" or the "all3" set,
// which has a form for each language; scene has one form only.
QStringList OverviewPictures(Orientation orientation, InterfaceLanguage language);

// The eleven built-in backgrounds, in list order, and the one a layout starts with.
QStringList BuiltInBackgrounds();
QString DefaultBackground();

// A theme's layout as it comes from the factory.
LayoutRecord FactoryThemeLayout(Theme theme, Orientation orientation, InterfaceLanguage language);

}  // namespace kivo
