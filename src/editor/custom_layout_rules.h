#pragma once

// The rules that fill and empty a custom layout when an item is ticked or unticked, and the limit on how many
// may be. Pure.
//
// A row of the slot table holds an item kind at most once. It is filled only at the moment of ticking: a kind
// that found no slot then keeps its flag and gets none later on its own.

#include <array>

#include "compose/custom_layout.h"
#include "compose/layout_record.h"

namespace kivo {

// The kind that an item shares its slot with: the date's and the time's are each other. Else kEmptySlot.
int PartnerOf(int kind);

// Five-slot layout. Date and time share a slot: with both ticked it holds the time. The free texts need no
// slot. A kind that is no item changes nothing.
void SetFiveSlotItem(int kind, bool on, SlotRow& row, ItemFlags& ticked);

// One-item layout: choosing a kind unchooses all others and puts it into the centre slot. Unchoosing empties
// the slot and leaves the flags to the tick box.
void SetSingleItem(int kind, bool on, SlotRow& row, ItemFlags& chosen);

// Whether one more kind may be ticked in the five-slot layout. Deliberate: the kind itself is not counted, so
// a sixth may be ticked while all slots are full; only the seventh is refused. Time and date count as one and
// join each other without being counted. The free text is counted, though it takes no slot.
bool MayTick(int kind, const ItemFlags& ticked);

// Exchanges what two slots hold, whatever it is.
void SwapSlots(SlotRow& row, int a, int b);

}  // namespace kivo
