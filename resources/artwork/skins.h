#pragma once

#include "skin_parts.h"

#include <QImage>
#include <QLatin1String>
#include <QRectF>

#include <array>

namespace kivo::artwork {

enum class Theme { Default, Scene, Tdp, Time };
constexpr std::array<Theme, 4> kThemes = {Theme::Default, Theme::Scene, Theme::Tdp, Theme::Time};

QLatin1String NameOf(Theme theme);  // as in the file names

// One skin, cut as the frame composer stacks it: glass, ornaments, frame, icons. A theme without a layer
// has a null image there.
struct SkinLayers {
    QImage glass;
    QImage ornaments;
    QImage frame;
    QImage icons;
};
// At scale 2 it is for a window that shows the panel magnified, in 32-bit colour: without grain.
SkinLayers DrawSkin(Theme theme, Orientation orientation, int scale);

// Where the separate icon (default_icon.png, time_icon.png) is drawn last, in panel pixels; null rectangle
// where the theme has none.
QRectF IconRect(Theme theme, Orientation orientation);
QImage DrawThemeIcon(Theme theme, int scale);  // null where the theme has none

}  // namespace kivo::artwork
