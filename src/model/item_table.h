#pragma once

// The items a panel can show, a row each: every text that is known before a value arrives, and what follows
// from it. Counts and lists are derived, so a further item is a number, a row and what reads its value. Pure;
// any thread.

#include <QString>
#include <array>
#include <optional>

#include "model/interface_language.h"

namespace kivo {

// The numbers are the live-value indices, the item kinds of a layout and the suffixes of the item keys in
// Config.ini at once, so they never change. OtherText and OtherText2 are the free texts: they have no live
// value.
enum LiveValue : int {
    CpuTemperature = 0,
    CpuUsage = 1,
    MemoryUsage = 2,
    Time = 3,
    CpuPower = 4,
    Date = 5,
    FanSpeed = 6,
    OtherText = 7,
    OtherText2 = 8,
};

// A text as the three languages write it. Null: there is none; in Russian: the same.
struct LanguageText {
    const char* usual = nullptr;
    const char* russian = nullptr;
};

// What a value runs between, in its own unit.
struct ValueRange {
    double least;
    double most;
};

// Where an item's caption stands beside its value.
enum class CaptionIn { Nowhere, Slots, SlotsAndThemes };

struct ItemFacts {
    LiveValue item;
    bool hasLiveValue;
    const char* caption;  // the display name, to be translated in kCaptionContext
    CaptionIn captionIn;
    LanguageText sample;      // in the settings; what a preview shows before a value arrives
    LanguageText startText;   // left out of the refresh thread's first round
    const char* placeholder;  // stands for "drawn, but by no text of its own" after a whole frame
    LanguageText widest;      // the widest text that the value usually has; none where its size hangs on none
    std::optional<ValueRange> range{};  // of a value that can be drawn as a share
};

// The layout editor's own texts are translated in the same one.
inline constexpr const char* kCaptionContext = "ZoomWidget";

inline constexpr std::array kItemTable{
    // A temperature of three digits is so rare that it may be drawn smaller than the rest.
    ItemFacts{CpuTemperature, true, QT_TRANSLATE_NOOP("ZoomWidget", "CPU温度"), CaptionIn::SlotsAndThemes,
              LanguageText{"45℃"}, LanguageText{"45℃"}, "00℃", LanguageText{"99℃"}, ValueRange{30, 100}},
    ItemFacts{CpuUsage, true, QT_TRANSLATE_NOOP("ZoomWidget", "CPU使用率"), CaptionIn::SlotsAndThemes,
              LanguageText{"65%"}, LanguageText{"65%"}, "00%", LanguageText{"100%"}, ValueRange{0, 100}},
    // Deliberate, fixed: the memory's placeholder has the form of a date.
    ItemFacts{MemoryUsage, true, QT_TRANSLATE_NOOP("ZoomWidget", "内存使用率"), CaptionIn::SlotsAndThemes,
              LanguageText{"20%"}, LanguageText{"20%"}, "0000.00.00", LanguageText{"100%"},
              ValueRange{0, 100}},
    // Time and date speak for themselves; no theme writes a caption beside them.
    ItemFacts{Time, true, QT_TRANSLATE_NOOP("ZoomWidget", "时间"), CaptionIn::Nowhere, LanguageText{"12:00"},
              LanguageText{"18:46"}, "00:00", LanguageText{}},
    // Deliberate: the power starts with a sample in Russian only.
    ItemFacts{CpuPower, true, QT_TRANSLATE_NOOP("ZoomWidget", "功耗"), CaptionIn::SlotsAndThemes,
              LanguageText{"1300", "15Вт"}, LanguageText{nullptr, "15Вт"}, "0000",
              LanguageText{"125w", "125Вт"}},
    ItemFacts{Date, true, QT_TRANSLATE_NOOP("ZoomWidget", "日期"), CaptionIn::Slots,
              LanguageText{"2019年12月31日", "31.12.2019"}, LanguageText{"2019.12.21", "21.12.2019"},
              "0000.00.00", LanguageText{}},
    ItemFacts{FanSpeed, true, QT_TRANSLATE_NOOP("ZoomWidget", "风扇转速"), CaptionIn::SlotsAndThemes,
              LanguageText{"1000"}, LanguageText{"1000"}, "0000", LanguageText{"3500"}},
    ItemFacts{OtherText, false, QT_TRANSLATE_NOOP("ZoomWidget", "其他"), CaptionIn::Nowhere, LanguageText{""},
              LanguageText{}, "", LanguageText{}},
    ItemFacts{OtherText2, false, QT_TRANSLATE_NOOP("ZoomWidget", "其他"), CaptionIn::Nowhere,
              LanguageText{"2019-12-31"}, LanguageText{}, "", LanguageText{}},
};

// Of all items, the free texts among them.
inline constexpr int kLiveValueCount = int(kItemTable.size());

constexpr bool IsItem(int item) {
    return item >= 0 && item < kLiveValueCount;
}

// Of an item; no other number may be asked for.
constexpr const ItemFacts& FactsOf(int item) {
    return kItemTable[size_t(item)];
}

// Whether a slot and a theme can hold the item. False for numbers that are none.
constexpr bool HasLiveValue(int item) {
    return IsItem(item) && FactsOf(item).hasLiveValue;
}
constexpr bool IsFreeText(int item) {
    return IsItem(item) && !HasLiveValue(item);
}

constexpr size_t CountOfLiveItems() {
    size_t count = 0;
    for (const ItemFacts& facts : kItemTable) {
        count += facts.hasLiveValue ? 1 : 0;
    }
    return count;
}
constexpr std::array<LiveValue, CountOfLiveItems()> LiveItems() {
    std::array<LiveValue, CountOfLiveItems()> items{};
    size_t next = 0;
    for (const ItemFacts& facts : kItemTable) {
        if (facts.hasLiveValue) {
            items[next++] = facts.item;
        }
    }
    return items;
}
// The items that have a live value, by their numbers.
inline constexpr auto kLiveItems = LiveItems();

constexpr bool AreItemsInOrder() {
    int number = 0;
    for (const ItemFacts& facts : kItemTable) {
        if (facts.item != number++) {
            return false;
        }
    }
    return true;
}
static_assert(AreItemsInOrder(), "An item's row stands at the item's number.");

using ItemTexts = std::array<QString, kLiveValueCount>;  // by item

// The text of that language; null where there is none.
QString TextIn(const LanguageText& text, InterfaceLanguage language);

// One column of the table for all items.
ItemTexts SampleTexts(InterfaceLanguage language);
ItemTexts StartTexts(InterfaceLanguage language);
const ItemTexts& PlaceholderTexts();
// The display names in the language of the translator that is installed (source texts: Chinese).
ItemTexts ItemCaptions();

// The sample that the Russian interface puts in place of whatever a layout holds; null for all other items.
QString SampleOverride(int item, InterfaceLanguage language);

}  // namespace kivo
