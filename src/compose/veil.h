#pragma once

// How dark the flat veil of a custom layout has to be: only as dark as white text needs over this very
// picture. Pure.

#include <QImage>
#include <QVector>

namespace kivo {

constexpr double kStrongestVeil = 0.59;  // opacity of the veil picture itself

// The veil's strength, 0 (none) to kStrongestVeil: the least with which 95 % of the pixels of each text
// rectangle, mixed with the veil's ink, stay dark enough for white text at 4.5 to 1. picture has the panel's
// size; rectangles are in its pixels.
double VeilStrength(const QImage& picture, const QVector<QRect>& textRects);

}  // namespace kivo
