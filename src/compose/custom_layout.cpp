#include "compose/custom_layout.h"

#include "compose/theme_catalogue.h"
#include "config/settings_file.h"

namespace kivo {

namespace {

using SlotRects = std::array<QRect, kSlotCount>;
using RowRects = std::array<QRect, kTextRowCount>;

// Canvas pixels, inclusive corners; slots: top left, bottom left, centre, bottom right, top right.
constexpr SlotRects kLandscapeSlots{Corners(10, 16, 91, 45), Corners(10, 116, 91, 145),
                                    Corners(120, 60, 201, 89), Corners(227, 116, 308, 145),
                                    Corners(227, 16, 308, 45)};
constexpr SlotRects kPortraitSlots{Corners(1, 18, 67, 41), Corners(1, 271, 67, 294),
                                   Corners(29, 145, 140, 174), Corners(101, 271, 167, 294),
                                   Corners(101, 18, 167, 41)};

// With a caption.
constexpr SlotRects kLandscapeChips{Corners(6, 11, 95, 62), Corners(6, 111, 95, 162),
                                    Corners(108, 53, 213, 107), Corners(223, 111, 312, 162),
                                    Corners(223, 11, 312, 62)};
constexpr SlotRects kPortraitChips{Corners(3, 13, 65, 60), Corners(3, 266, 65, 313),
                                   Corners(21, 139, 148, 193), Corners(103, 266, 165, 313),
                                   Corners(103, 13, 165, 60)};

constexpr RowRects kLandscapeRows{Corners(10, 10, 309, 49), Corners(10, 63, 309, 102),
                                  Corners(10, 115, 309, 154)};
constexpr RowRects kPortraitRows{Corners(10, 36, 159, 73), Corners(10, 131, 159, 168),
                                 Corners(10, 225, 159, 262)};

constexpr std::array<int, kTextSizeCount> kTextSizes{17, 15, 12};

constexpr std::array<QRgb, kTextColorCount> kTextColors{qRgb(255, 255, 255), qRgb(0, 0, 0),
                                                        qRgb(255, 100, 34),  qRgb(245, 224, 33),
                                                        qRgb(66, 131, 228),  qRgb(58, 200, 163)};

template <typename Table>
const typename Table::value_type& Entry(const Table& table, int index) {
    return table[index >= 0 && size_t(index) < table.size() ? size_t(index) : 0];
}

}  // namespace

QRect SlotRect(int slot, Orientation orientation) {
    return Entry(orientation == Orientation::Landscape ? kLandscapeSlots : kPortraitSlots, slot);
}

QRect SlotCaptionRect(int slot, Orientation orientation) {
    constexpr int kHeight = 16;
    constexpr int kMostGrow = 10;
    const QRect rect = SlotRect(slot, orientation);
    const int beside = CanvasSize(orientation).width() - 1 - rect.right();
    const int grow = qMin(kMostGrow, qMin(rect.left(), beside));
    return QRect(rect.left() - grow, rect.bottom() + 1, rect.width() + 2 * grow, kHeight);
}

QRect SlotChipRect(int slot, Orientation orientation, bool hasCaption) {
    const bool isLying = orientation == Orientation::Landscape;
    QRect chip = Entry(isLying ? kLandscapeChips : kPortraitChips, slot);
    if (!hasCaption) {
        // As far below the value as it begins above it: else a time, or a time over a date, would hang from
        // the chip's top.
        const QRect value = SlotRect(slot, orientation);
        chip.setBottom(value.bottom() + value.top() - chip.top());
    }
    return chip;
}

QRect TextRowRect(int row, Orientation orientation) {
    return Entry(orientation == Orientation::Landscape ? kLandscapeRows : kPortraitRows, row);
}

int FreeTextPixelSize(int sizeIndex) {
    return Entry(kTextSizes, sizeIndex);
}

QColor FreeTextColor(int colorIndex) {
    return QColor(Entry(kTextColors, colorIndex));
}

SlotTable EmptySlotTable() {
    SlotTable table;
    for (SlotRow& row : table) {
        row.fill(kEmptySlot);
    }
    return table;
}

SlotTable FactorySlotTable() {
    return {{{CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower},
             {kEmptySlot, kEmptySlot, CpuTemperature, kEmptySlot, kEmptySlot}}};
}

SlotTable LoadSlotTable() {
    const SettingsReader settings;
    SlotTable table = EmptySlotTable();
    for (int variant = 0; variant < kVariantCount; ++variant) {
        for (int slot = 0; slot < kSlotCount; ++slot) {
            table[size_t(variant)][size_t(slot)] =
                settings.Int(CustomShowKey(variant, slot), keys::kCustomShow);
        }
    }
    return table;
}

void WriteSlotTable(SettingsWriter& settings, const SlotTable& table) {
    for (int variant = 0; variant < kVariantCount; ++variant) {
        for (int slot = 0; slot < kSlotCount; ++slot) {
            settings.SetInt(CustomShowKey(variant, slot), table[size_t(variant)][size_t(slot)]);
        }
    }
}

bool SaveSlotTable(const SlotTable& table, const QString& filePath) {
    SettingsWriter settings(filePath);
    WriteSlotTable(settings, table);
    return settings.Commit();
}

LayoutRecord FactoryCustomLayout(int variant, InterfaceLanguage language) {
    LayoutRecord record;
    record.sample = SampleTexts(language);
    record.defaultPicture = DefaultBackground();
    const SlotTable slotTable = FactorySlotTable();
    for (const int item : slotTable[size_t(variant)]) {
        if (item != kEmptySlot) {
            CustomFlags(record, variant)[size_t(item)] = true;
        }
    }
    return record;
}

}  // namespace kivo
