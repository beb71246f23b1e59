#include "editor/custom_layout_rules.h"

#include <algorithm>
#include <utility>

namespace kivo {

namespace {

// Cleared whenever a single item is chosen. Deliberate: the other two outer slots are left as they are.
constexpr std::array kClearedSlots{0, 3};

// The first slot that holds what becomes something else; nothing happens where none does.
bool ReplaceFirst(SlotRow& row, int what, int by) {
    const auto slot = std::find(row.begin(), row.end(), what);
    if (slot == row.end()) {
        return false;
    }
    *slot = by;
    return true;
}

void Place(int kind, SlotRow& row) {
    const int partner = PartnerOf(kind);
    const bool hasPartner = partner != kEmptySlot && std::count(row.begin(), row.end(), partner) > 0;
    if (!hasPartner) {
        ReplaceFirst(row, kEmptySlot, kind);
    } else if (kind == Time) {
        ReplaceFirst(row, Date, Time);  // the slot shows both from here on
    }
}

void TakeOut(int kind, SlotRow& row, const ItemFlags& ticked) {
    const int partner = PartnerOf(kind);
    if (partner != kEmptySlot) {
        ReplaceFirst(row, kind, ticked[size_t(partner)] ? partner : kEmptySlot);
        return;
    }
    std::replace(row.begin(), row.end(), kind, kEmptySlot);
}

}  // namespace

int PartnerOf(int kind) {
    return kind == Date ? Time : kind == Time ? Date : kEmptySlot;
}

void SetFiveSlotItem(int kind, bool on, SlotRow& row, ItemFlags& ticked) {
    if (!IsItem(kind)) {
        return;
    }
    if (!on) {
        TakeOut(kind, row, ticked);
    } else if (HasLiveValue(kind)) {
        Place(kind, row);
    }
    ticked[size_t(kind)] = on;
}

void SetSingleItem(int kind, bool on, SlotRow& row, ItemFlags& chosen) {
    if (!IsItem(kind)) {
        return;
    }
    if (!on) {
        row[kCentreSlot] = kEmptySlot;
        return;
    }
    chosen.fill(false);
    chosen[size_t(kind)] = true;
    row[kCentreSlot] = kind;
    for (const int slot : kClearedSlots) {
        row[size_t(slot)] = kEmptySlot;
    }
}

bool MayTick(int kind, const ItemFlags& ticked) {
    const int partner = PartnerOf(kind);
    if (partner != kEmptySlot && ticked[size_t(partner)]) {
        return true;
    }
    int count = 0;
    for (int other = 0; other < kLiveValueCount; ++other) {
        count += other != kind && ticked[size_t(other)] ? 1 : 0;
    }
    if (ticked[Time] && ticked[Date]) {
        --count;
    }
    return count <= kSlotCount;
}

void SwapSlots(SlotRow& row, int a, int b) {
    std::swap(row[size_t(a)], row[size_t(b)]);
}

}  // namespace kivo
