#include "compose/layout_record.h"

#include <tuple>

namespace kivo {

namespace {

auto Tied(const LayoutRecord& r) {
    return std::tie(r.xPt, r.yPt, r.xZoom, r.yZoom, r.dim, r.blur, r.accentFromPicture, r.highlight, r.shown,
                    r.selected, r.tile, r.textRect, r.sample, r.picture, r.freeText, r.defaultPicture,
                    r.sizeIndex, r.colorIndex);
}

}  // namespace

bool operator==(const LayoutRecord& a, const LayoutRecord& b) {
    return Tied(a) == Tied(b);
}

}  // namespace kivo
