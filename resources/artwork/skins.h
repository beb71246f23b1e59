#pragma once

#include "skin_parts.h"

#include <QImage>
#include <QLatin1String>

#include "model/theme_table.h"

namespace kivo::artwork {

using kivo::Theme;

// As in the file names.
inline QLatin1String NameOf(Theme theme) {
    return QLatin1String(FactsOf(theme).files);
}

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

QImage DrawThemeIcon(Theme theme, int scale);  // null where the theme has none

}  // namespace kivo::artwork
