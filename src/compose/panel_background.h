#pragma once

// What lies behind the texts of a frame, and what of it the texts' own drawing has to know. A value.

#include <QImage>
#include <QRgb>
#include <optional>

namespace kivo {

struct PanelBackground {
    QImage image{};                   // picture and skin, no texts
    std::optional<QRgb> accent = {};  // taken from the picture; none: it is the theme's own
};

}  // namespace kivo
