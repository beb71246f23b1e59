#pragma once

#include "skins.h"

#include <QImage>

namespace kivo::artwork {

// The frame as the panel shows it, without any text: picture, skin layers, icon. 320 x 170 or 170 x 320,
// put together the way the program does it (landscape at 433 x 230, then reduced), in RGB565.
QImage ComposePanel(Theme theme, Orientation orientation, const SkinLayers& layers, const QImage& icon,
                    const QImage& background);

// Overview picture of a theme for the selection list, 85 x 98: emblem and small panel.
QImage DrawOverview(Theme theme, Orientation orientation, const QImage& panel);

}  // namespace kivo::artwork
