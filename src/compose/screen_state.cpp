#include "compose/screen_state.h"

#include <algorithm>
#include <tuple>

namespace kivo {

namespace {

auto Tied(const ScreenState& s) {
    return std::tie(s.custom, s.theme, s.style, s.variant, s.orientation, s.layout, s.slotItems, s.textRow,
                    s.language, s.captions);
}

int SlotHolding(const ScreenState& state, int item) {
    if (state.variant != 0) {
        // The one-item layout shows its centre slot; what the others may hold is left over.
        return state.slotItems[kCentreSlot] == item ? kCentreSlot : kEmptySlot;
    }
    const auto slot = std::find(state.slotItems.begin(), state.slotItems.end(), item);
    return slot == state.slotItems.end() ? kEmptySlot : int(slot - state.slotItems.begin());
}

}  // namespace

bool operator==(const ScreenState& a, const ScreenState& b) {
    return Tied(a) == Tied(b);
}

bool IsHourAlone(const ScreenState& state) {
    return !state.custom && Has(state.theme, kHourAlone);
}

bool IsShown(const ScreenState& state, int item) {
    if (!IsItem(item) || (IsHourAlone(state) && item != Time && item != Date)) {
        return false;
    }
    return CustomFlags(state.layout, state.custom ? state.variant : 0)[size_t(item)];
}

bool TimeSlotHoldsDate(const ScreenState& state) {
    return state.custom && state.variant == 0 && IsShown(state, Time) && IsShown(state, Date) &&
           SlotHolding(state, Time) != kEmptySlot && SlotHolding(state, Date) == kEmptySlot;
}

int SlotOf(const ScreenState& state, int item) {
    if (item == Date && TimeSlotHoldsDate(state)) {
        return SlotHolding(state, Time);
    }
    return SlotHolding(state, item);
}

int ItemDrawnIn(const ScreenState& state, int slot) {
    const int item = state.slotItems[size_t(slot)];
    const bool drawn = HasLiveValue(item) && IsShown(state, item) && SlotOf(state, item) == slot;
    return drawn ? item : kEmptySlot;
}

bool HasPlace(const ScreenState& state, int item) {
    if (!IsShown(state, item)) {
        return false;
    }
    return state.custom ? SlotOf(state, item) != kEmptySlot : !state.layout.textRect[size_t(item)].isEmpty();
}

QString PicturePath(const ScreenState& state) {
    return PicturePaths(state).constFirst();
}

QStringList PicturePaths(const ScreenState& state) {
    QStringList paths;
    for (const QString& path : {state.layout.picture, state.layout.defaultPicture, DefaultBackground()}) {
        if (!path.isEmpty() && !paths.contains(path)) {
            paths.append(path);
        }
    }
    return paths;
}

ScreenState DrawnState(ScreenState state, bool isStandIn) {
    if (isStandIn) {
        state.layout.xPt = 0;
        state.layout.yPt = 0;
        state.layout.xZoom = 0;
        state.layout.yZoom = 0;
    }
    return state;
}

}  // namespace kivo
