#pragma once

#include "skins.h"

#include <QImage>

namespace kivo::artwork {

// Overview picture of a theme for the selection list, 85 x 98 window pixels at 1 or 2 device pixels each:
// emblem and small panel. panel is the frame as the screen shows it.
QImage DrawOverview(Theme theme, Orientation orientation, const QImage& panel, int scale);

}  // namespace kivo::artwork
