#pragma once

// The one colour of each theme beside white, in the themes' stored order, 0xFFRRGGBB. The artwork is drawn
// with them too.

#include <QRgb>
#include <array>

namespace kivo {

constexpr std::array<QRgb, 4> kThemeAccents{
    0xFF5CE6C8,  // default: mint
    0xFFFFFFFF,  // scene: none
    0xFFFFB45A,  // TDP: amber
    0xFF8FC7FF,  // time: ice
};

}  // namespace kivo
