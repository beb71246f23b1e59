#pragma once

// One layout as the settings keep it: where each item stands, which items are shown and what lies behind
// them. A plain value; compose/theme_catalogue.h makes the factory ones, compose/theme_state.h loads and
// saves them.

#include <QRect>
#include <QString>
#include <array>

#include "model/item_table.h"

namespace kivo {

// A yes or no of each item.
using ItemFlags = std::array<bool, kLiveValueCount>;

struct LayoutRecord {
    // The trim frame over the background picture, in panel pixels: (xPt, yPt) is its upper left corner
    // relative to the untrimmed view, xZoom and yZoom how much narrower and lower it is than the panel. It
    // has the panel's shape, so the larger of the two, the long side's, decides. All 0: untrimmed.
    int xPt = 0;
    int yPt = 0;
    int xZoom = 0;
    int yZoom = 0;

    // What else is made of the picture, in percent: 0 leaves it as it is, 100 leaves a fifth of its
    // brightness, or no more of it than its large shapes.
    int dim = 0;
    int blur = 0;

    bool accentFromPicture = false;  // in the place of the theme's own

    int highlight = 0;  // the emphasised item

    ItemFlags shown{};                          // "Show_"; in custom layout 0 the ticked items
    ItemFlags selected{};                       // "Show2_"; in custom layout 1 the chosen item
    std::array<QRect, kLiveValueCount> tile{};  // "ShowRect_": the item's card, captions are placed by it
    std::array<QRect, kLiveValueCount>
        textRect{};  // "ShowStringRect_": where the text stands and what is sent
    std::array<QString, kLiveValueCount> sample{};  // "String_": what a preview shows before a value arrives

    QString picture;         // "StringPixmap": background picture, empty for the layout's default one
    QString freeText;        // "StringD1": free text of a custom layout
    QString defaultPicture;  // "StringPixmapS"
    int sizeIndex = 0;       // free text size step, 0..2
    int colorIndex = 0;      // free text colour, 0..5
};

// The flags that decide in a custom layout: "ticked" in variant 0, "chosen" in variant 1.
inline const ItemFlags& CustomFlags(const LayoutRecord& layout, int variant) {
    return variant == 0 ? layout.shown : layout.selected;
}
inline ItemFlags& CustomFlags(LayoutRecord& layout, int variant) {
    return variant == 0 ? layout.shown : layout.selected;
}

bool operator==(const LayoutRecord& a, const LayoutRecord& b);
inline bool operator!=(const LayoutRecord& a, const LayoutRecord& b) {
    return !(a == b);
}

}  // namespace kivo
