#pragma once

// The custom layouts as data: five slots, three text rows, sizes and colours, and the table that says which
// item stands in which slot. The rules that fill the table belong to the editor. Pure but for Load and Save.

#include <QColor>
#include <QRect>
#include <array>

#include "compose/geometry.h"
#include "compose/layout_record.h"
#include "config/folders.h"
#include "config/setting_keys.h"
#include "model/interface_language.h"

namespace kivo {

class SettingsWriter;

constexpr int kSlotCount = kCustomShowSlots;
constexpr int kCentreSlot = 2;
constexpr int kEmptySlot = -1;
constexpr int kVariantCount = kCustomShowRows;  // 0: five items, 1: one item
constexpr int kTextRowCount = 3;
constexpr int kTextSizeCount = 3;
constexpr int kTextColorCount = 6;

// Item numbers by variant and slot, kEmptySlot where none stands.
using SlotRow = std::array<int, kSlotCount>;
using SlotTable = std::array<SlotRow, kVariantCount>;

// A slot on the canvas of that orientation; slot 0..4.
QRect SlotRect(int slot, Orientation orientation);

// The line under a slot that the item's caption stands in: a little wider than the slot, but on the canvas
// and under the middle of the value.
QRect SlotCaptionRect(int slot, Orientation orientation);

// The glass chip that holds a slot's value and caption.
QRect SlotChipRect(int slot, Orientation orientation, bool hasCaption);

// The three rows of the free text as the tables give them; row 0..2.
QRect TextRowRect(int row, Orientation orientation);

// Pixel size of a free-text size step (0..2: 17, 15, 12) and the colour of a colour index (0..5). Indices
// outside count as 0.
int FreeTextPixelSize(int sizeIndex);
QColor FreeTextColor(int colorIndex);

SlotTable EmptySlotTable();
SlotTable FactorySlotTable();

// "CustomShow/0-0" .. "CustomShow/1-4" of the settings file. A missing key or one that is no number is an
// empty slot.
SlotTable LoadSlotTable();
// False, with one log line, when the file could not be written.
bool SaveSlotTable(const SlotTable& table, const QString& filePath = ConfigFilePath());
// The same as part of a larger write.
void WriteSlotTable(SettingsWriter& settings, const SlotTable& table);

// A custom layout as it comes from the factory: variant 0 has the items of the factory table ticked, variant
// 1 its one item chosen.
LayoutRecord FactoryCustomLayout(int variant, InterfaceLanguage language);

}  // namespace kivo
