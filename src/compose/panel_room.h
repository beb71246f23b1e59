#pragma once

// The room on the panel: one list of what is taken and by what, and the areas that are left for the free
// text. Drawing, live cuts and the editor's marks go by the same list. Pure; any thread.

#include <QMargins>
#include <QRect>
#include <QVector>

#include "compose/geometry.h"

namespace kivo {

enum class RoomOf {
    Value,     // an item's text: the whole rectangle, whatever the value is at the moment
    Caption,   // the ink of an item's name
    Chip,      // the glass under a slot's value and caption
    FreeText,  // the ink of all its lines
    Pill,      // the plate that may lie under the free text
};

struct TakenRoom {
    RoomOf of = RoomOf::Value;
    int item = 0;  // live-value index; OtherText for the free text and its pill
    QRect rect;    // canvas pixels
};

inline bool operator==(const TakenRoom& a, const TakenRoom& b) {
    return a.of == b.of && a.item == b.item && a.rect == b.rect;
}

// Whether text stands there, which a cut through it has to show. Glass belongs to the background.
inline bool IsText(const TakenRoom& room) {
    return room.of == RoomOf::Value || room.of == RoomOf::Caption || room.of == RoomOf::FreeText;
}

constexpr double kChipRadius = 10;  // of a chip's corners, canvas pixels
constexpr double kPillRadius = 8;

// How far a pill reaches beyond its text.
constexpr QMargins kPillPadding{8, 4, 8, 4};

// Areas in which the ink of a free text may lie: at least 6 px from any other text, and its pill 3 px from
// any chip and off the panel's edge. None of them could be wider or taller, except that areas which lie
// beside the middle come with their largest part that is symmetric about it. The first one is the widest.
QVector<QRect> FreeAreas(const QVector<TakenRoom>& taken, Orientation orientation);

}  // namespace kivo
