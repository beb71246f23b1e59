#pragma once

// The built-in themes, a row each: their pictures, their colour, how they write and where they place the
// items. Counts are derived, so a further theme is a number, a row, its pictures and their drawing. Pure; any
// thread.

#include <QRect>
#include <QRectF>
#include <array>
#include <optional>

#include "model/corners.h"
#include "model/item_table.h"

namespace kivo {

// The numbers are the stored ones ("Config/ThemeID") and the order of the selection list.
enum class Theme { Default = 0, Scene = 1, Tdp = 2, Time = 3 };

// Where a theme places an item, in canvas pixels. One without a text rectangle places none.
struct ThemePlace {
    LiveValue item;
    QRect tile;  // the item's card, its caption goes by it
    QRect text;  // where the value stands
    // The line on which value and caption are centred, from the canvas's left edge; none where that is the
    // middle of their rectangles. Theirs are not always those of the drawing they stand in.
    std::optional<int> axis{};
};

// A theme in one orientation. An item that has a place is shown.
struct ThemeLayout {
    LiveValue highlight;  // the emphasised item
    // Where the theme's own icon lies, in canvas pixels; null where the theme has none.
    QRectF icon;
    double dateGrowth;  // of the date beside an emphasised time
    std::array<ThemePlace, kLiveValueCount> places;
};

// Where the captions stand on the items' cards. The emphasised item's stands at the foot of its card, but for
// CardMiddle.
enum class CaptionPlace {
    CardFoot,
    CardHead,    // beside the card's icon
    CardMiddle,  // below the first third
    BesideCard,  // on the edge of the card
};

// What a theme has that others have not.
// The picture and the hour: time and date alone, whatever else a layout ticks, over a scrim in the place of
// glass and icons.
inline constexpr quint32 kHourAlone = 1;
inline constexpr quint32 kTickFrame = 2;
inline constexpr quint32 kScales = 4;  // ticks under the values that have a range

struct ThemeFacts {
    Theme theme;
    const char* name;   // the display name, to be translated in "MainWindow"
    const char* files;  // what the names of its pictures begin with
    quint32 accent;     // 0xFFRRGGBB, the one colour beside white; kNoAccent where there is none
    quint32 traits;     // as bits
    CaptionPlace captions;
    std::optional<int> mainValueSize;  // of the emphasised value, in pixels; none: by the item
    quint32 sentInHalves;              // bit n: an update of item n goes to the panel in two halves
    ThemeLayout landscape;
    ThemeLayout portrait;
};

inline constexpr quint32 kNoAccent = 0xFFFFFFFF;

namespace theme_rows {

constexpr ThemePlace At(LiveValue item, QRect tile, QRect text) {
    return {item, tile, text};
}
constexpr ThemePlace At(LiveValue item, QRect both) {
    return {item, both, both};
}
constexpr ThemePlace OnAxis(int axis, const ThemePlace& place) {
    return {place.item, place.tile, place.text, axis};
}

constexpr QRectF Square(double centreX, double centreY, double side) {
    return QRectF(centreX - side / 2, centreY - side / 2, side, side);
}

constexpr quint32 Bit(LiveValue item) {
    return 1U << int(item);
}

// What a pixel of the frame that a landscape picture is drawn on is of the canvas.
inline constexpr double kAcross = 320.0 / 433;
inline constexpr double kDown = 170.0 / 230;

}  // namespace theme_rows

inline constexpr std::array kThemeTable = [] {
    using namespace theme_rows;
    return std::array{
        ThemeFacts{
            Theme::Default,
            QT_TRANSLATE_NOOP("MainWindow", "默认"),
            "default",
            0xFF5CE6C8 /* mint */,
            kScales,
            CaptionPlace::CardHead,
            std::nullopt,
            0,
            // The axis is that of the ring, standing of the card around it; the bolt lies in the ring's
            // opening.
            ThemeLayout{CpuPower,
                        Square(70, 152.5, 13),
                        1.5,
                        {{At(CpuTemperature, Corners(141, 5, 222, 83), Corners(158, 38, 204, 61)),
                          At(CpuUsage, Corners(227, 86, 308, 164), Corners(245, 119, 291, 142)),
                          At(MemoryUsage, Corners(227, 5, 308, 83), Corners(245, 38, 291, 61)),
                          OnAxis(70, At(Time, Corners(28, 16, 107, 39))),
                          OnAxis(70, At(CpuPower, Corners(44, 99, 101, 148), Corners(35, 100, 104, 121))),
                          OnAxis(70, At(Date, Corners(0, 44, 135, 56))),
                          At(FanSpeed, Corners(141, 86, 222, 164), Corners(158, 119, 204, 142))}}},
            ThemeLayout{CpuPower,
                        Square(85.5, 141, 13),
                        1.5,
                        {{At(CpuTemperature, Corners(4, 158, 85, 236), Corners(23, 191, 68, 214)),
                          At(CpuUsage, Corners(88, 239, 169, 317), Corners(107, 272, 152, 295)),
                          At(MemoryUsage, Corners(88, 158, 169, 236), Corners(107, 191, 152, 214)),
                          OnAxis(86, At(Time, Corners(28, 16, 107, 39), Corners(45, 8, 124, 31))),
                          OnAxis(86, At(CpuPower, Corners(52, 88, 119, 133), Corners(52, 88, 119, 109))),
                          OnAxis(86, At(Date, Corners(0, 44, 135, 56), Corners(29, 33, 139, 45))),
                          At(FanSpeed, Corners(4, 239, 85, 317), Corners(23, 272, 68, 295))}}},
        },
        ThemeFacts{
            Theme::Scene,
            QT_TRANSLATE_NOOP("MainWindow", "场景"),
            "scene",
            kNoAccent,
            kHourAlone,
            CaptionPlace::CardFoot,
            std::nullopt,
            Bit(Time) | Bit(Date),
            ThemeLayout{Time,
                        QRectF(),
                        1.5,
                        {{At(Time, Corners(89, 85, 234, 134)), At(Date, Corners(69, 138, 254, 169))}}},
            ThemeLayout{Time,
                        QRectF(),
                        1.5,
                        {{At(Time, Corners(89, 85, 234, 134), Corners(12, 223, 157, 272)),
                          At(Date, Corners(69, 138, 254, 169), Corners(0, 283, 169, 300))}}},
        },
        ThemeFacts{
            Theme::Tdp,
            QT_TRANSLATE_NOOP("MainWindow", "功耗表"),
            "TDP",
            0xFFFFB45A /* amber */,
            0,
            CaptionPlace::CardMiddle,
            26,
            Bit(CpuPower),
            // The axis is that of the dial.
            ThemeLayout{CpuPower,
                        QRectF(),
                        1.5,
                        {{At(CpuTemperature, Corners(11, 24, 70, 82), Corners(11, 54, 70, 73)),
                          At(CpuUsage, Corners(11, 78, 70, 136), Corners(11, 108, 70, 127)),
                          At(MemoryUsage, Corners(249, 78, 308, 136), Corners(249, 108, 308, 127)),
                          OnAxis(163, At(Time, Corners(128, 111, 193, 140))),
                          At(CpuPower, Corners(106, 36, 219, 100), Corners(106, 74, 219, 103)),
                          At(Date, Corners(122, 142, 201, 161)),
                          At(FanSpeed, Corners(249, 24, 308, 82), Corners(249, 54, 308, 73))}}},
            ThemeLayout{CpuPower,
                        QRectF(),
                        1.5,
                        {{At(CpuTemperature, Corners(25, 15, 84, 63), Corners(25, 46, 84, 65)),
                          At(CpuUsage, Corners(25, 242, 84, 290), Corners(25, 272, 84, 291)),
                          At(MemoryUsage, Corners(88, 15, 147, 63), Corners(88, 46, 147, 65)),
                          OnAxis(87, At(Time, Corners(128, 122, 193, 151), Corners(56, 194, 121, 213))),
                          At(CpuPower, Corners(30, 92, 143, 156), Corners(30, 141, 143, 170)),
                          OnAxis(87, At(Date, Corners(122, 153, 201, 172), Corners(46, 215, 125, 234))),
                          At(FanSpeed, Corners(88, 242, 147, 290), Corners(88, 272, 147, 291))}}},
        },
        ThemeFacts{
            Theme::Time,
            QT_TRANSLATE_NOOP("MainWindow", "时钟"),
            "time",
            0xFF8FC7FF /* ice */,
            kTickFrame,
            CaptionPlace::BesideCard,
            std::nullopt,
            Bit(Time) | Bit(Date),
            // Values stand on the axis of their cards, as captions and icons do.
            // The clock above the hour lies on exactly 24 x 24 pixels of the frame it is drawn on in
            // landscape, so that the picture is not resampled there.
            ThemeLayout{
                Time,
                QRectF(204 * kAcross, 43 * kDown, 24 * kAcross, 24 * kDown),
                1.5,
                {{At(CpuTemperature, Corners(6, 3, 65, 61), Corners(12, 13, 58, 27)),
                  At(CpuUsage, Corners(6, 103, 65, 161), Corners(12, 113, 58, 127)),
                  OnAxis(286, At(MemoryUsage, Corners(256, 103, 315, 161), Corners(261, 113, 307, 127))),
                  At(Time, Corners(100, 60, 219, 89)),
                  OnAxis(286, At(CpuPower, Corners(256, 3, 315, 61), Corners(261, 13, 307, 27))),
                  At(Date, Corners(100, 103, 219, 132))}}},
            // Standing, the date is narrow; its axis is that of the clock.
            ThemeLayout{
                Time,
                Square(84.5, 121, 16),
                1.3,
                {{OnAxis(36, At(CpuTemperature, Corners(6, 6, 65, 64), Corners(11, 18, 57, 32))),
                  OnAxis(36, At(CpuUsage, Corners(6, 258, 65, 316), Corners(11, 271, 57, 285))),
                  OnAxis(135, At(MemoryUsage, Corners(105, 258, 164, 316), Corners(111, 271, 157, 285))),
                  At(Time, Corners(90, 55, 229, 102), Corners(29, 136, 140, 165)),
                  OnAxis(135, At(CpuPower, Corners(105, 6, 164, 64), Corners(111, 18, 157, 32))),
                  OnAxis(85, At(Date, Corners(124, 103, 203, 116), Corners(30, 177, 132, 190)))}}},
        },
    };
}();

inline constexpr int kThemeCount = int(kThemeTable.size());

constexpr const ThemeFacts& FactsOf(Theme theme) {
    return kThemeTable[size_t(theme)];
}

constexpr bool Has(Theme theme, quint32 trait) {
    return (FactsOf(theme).traits & trait) != 0;
}

// Whether the theme has an accent, which an accent from the picture can take the place of.
constexpr bool HasAccent(Theme theme) {
    return FactsOf(theme).accent != kNoAccent;
}

constexpr bool AreThemesInOrder() {
    int number = 0;
    for (const ThemeFacts& facts : kThemeTable) {
        if (int(facts.theme) != number++) {
            return false;
        }
    }
    return true;
}
static_assert(AreThemesInOrder(), "A theme's row stands at the theme's number.");

}  // namespace kivo
