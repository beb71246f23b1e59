#pragma once

// Everything that decides a picture but its texts and the user's pixels, as one value. The window shows
// the edited one, the panel the applied one; applying is a copy. What the page in front does not draw keeps
// its first value, so equal pictures have equal states.

#include <QString>
#include <QStringList>
#include <array>

#include "compose/custom_layout.h"
#include "compose/geometry.h"
#include "compose/layout_record.h"
#include "compose/theme_catalogue.h"
#include "model/interface_language.h"

namespace kivo {

constexpr int kBasePixelSize = 18;  // of the values; every other size of the panel follows from it

struct ScreenState {
    bool custom = false;           // the custom page: a custom layout instead of a theme
    Theme theme = Theme::Default;  // of the theme page, as is the style
    int style = 0;                 // of the scene theme: 1 has the smaller date
    int variant = 0;               // of the custom layout, 0 or 1, as are the slots and the row
    Orientation orientation = Orientation::Landscape;
    LayoutRecord layout;  // of the theme in this orientation, or of the custom variant
    SlotRow slotItems{{kEmptySlot, kEmptySlot, kEmptySlot, kEmptySlot, kEmptySlot}};  // of the variant
    int textRow = 2;  // of the free text, 0..2
    InterfaceLanguage language = InterfaceLanguage::Chinese;
    ItemTexts captions;  // the items' names in that language
};

bool operator==(const ScreenState& a, const ScreenState& b);
inline bool operator!=(const ScreenState& a, const ScreenState& b) {
    return !(a == b);
}

// Whether it is a theme of the picture and the hour: time and date are all it shows.
bool IsHourAlone(const ScreenState& state);

// Whether the item's flag of the layout in force is set.
bool IsShown(const ScreenState& state, int item);

// The slot in which an item is drawn in a custom layout, or kEmptySlot. A date that is ticked together with
// the time has no slot of its own: it stands in the time's.
int SlotOf(const ScreenState& state, int item);

// The item that is drawn in a slot of a custom layout, or kEmptySlot. The free text stands in its row, not in
// a slot; an item that stands twice in a damaged table is drawn in the first slot only, where its updates go.
int ItemDrawnIn(const ScreenState& state, int slot);

// Whether the item is drawn anywhere: its flag is set and the layout has a place for it.
bool HasPlace(const ScreenState& state, int item);

// Whether the time's slot holds the date too.
bool TimeSlotHoldsDate(const ScreenState& state);

// The picture behind the layout: its own, else its default one, else the program's.
QString PicturePath(const ScreenState& state);

// That picture and what takes its place where it cannot be shown, one after the other. The last one is part
// of the program.
QStringList PicturePaths(const ScreenState& state);

// What is drawn over a picture: of a stand-in all is shown, for a trim frame belongs to the picture that was
// chosen.
ScreenState DrawnState(ScreenState state, bool isStandIn);

}  // namespace kivo
