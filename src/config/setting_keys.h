#pragma once

#include <QLatin1String>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <limits>

#include "model/item_table.h"
#include "model/theme_table.h"

namespace kivo {

enum class SettingType { Int, Text, Rect };

// One row of Config.ini's vocabulary. Texts default to empty, rectangles to QRect().
struct SettingKey {
    QLatin1String name;  // Full key, or the key's name inside its family (see the builders below).
    SettingType type = SettingType::Int;
    int defaultInt = 0;  // When absent, and when outside minimum..maximum.
    int notANumber = 0;  // When present and no whole number.
    int minimum = std::numeric_limits<int>::min();
    int maximum = std::numeric_limits<int>::max();
    // Stands in the file only where it has another value than its default: a file in which nobody chose it
    // is what it was before there was such a choice.
    bool isOptional = false;
};

namespace keys {

// A literal with its length counted by the compiler: the constructor that counts for itself is no constant
// expression for every compiler.
template <int N>
constexpr QLatin1String Name(const char (&literal)[N]) {
    return QLatin1String(literal, N - 1);
}

// Group "Config".
inline constexpr SettingKey kMode{Name("Config/Mode")};
inline constexpr SettingKey kThemeId{Name("Config/ThemeID"), SettingType::Int, 0, 0, 0, kThemeCount - 1};
inline constexpr SettingKey kStyle{Name("Config/Style")};
inline constexpr SettingKey kHor{Name("Config/Hor"), SettingType::Int, 0, 0, 0, 1};
inline constexpr SettingKey kCurRectId{Name("Config/CurRectID"), SettingType::Int, 2, 0, 0, 2};
inline constexpr SettingKey kLangId{Name("Config/LangID")};
inline constexpr SettingKey kUuid{Name("Config/UUid"), SettingType::Text};
// Group "Away": when the panel is dark. That it is dark while the system sleeps is what it does where nobody
// chose, so the key says that it is not.
inline constexpr SettingKey kDarkAtLock{Name("Away/DarkAtLock"), SettingType::Int, 0, 0, 0, 1, true};
inline constexpr SettingKey kLitAtSleep{Name("Away/LitAtSleep"), SettingType::Int, 0, 0, 0, 1, true};
inline constexpr SettingKey kDarkAtScreenSaver{
    Name("Away/DarkAtScreenSaver"), SettingType::Int, 0, 0, 0, 1, true};
inline constexpr SettingKey kDarkAtExit{Name("Away/DarkAtExit"), SettingType::Int, 0, 0, 0, 1, true};
// NightLight, and its first minute and the first after it, since midnight.
inline constexpr SettingKey kNightLight{Name("Away/NightLight"), SettingType::Int, 0, 0, 0, 2, true};
inline constexpr SettingKey kNightFrom{
    Name("Away/NightFrom"), SettingType::Int, 22 * 60, 22 * 60, 0, 24 * 60 - 1};
inline constexpr SettingKey kNightTo{Name("Away/NightTo"), SettingType::Int, 7 * 60, 7 * 60, 0, 24 * 60 - 1};
// Group "test": written by a button that nobody sees, read by nobody.
inline constexpr SettingKey kTest{Name("test/test"), SettingType::Text};

// Group "ImageList": the count and, under its decimal index, each picture's path. A count beyond what a
// person could have added by hand is noise.
inline constexpr SettingKey kImageCount{Name("ImageList/Count"), SettingType::Int, 0, 0, 0, 9999};
inline constexpr SettingKey kImagePath{Name("ImageList/"), SettingType::Text};
// Group "ImageNames": under a picture's path, what its user calls it.
inline constexpr SettingKey kImageName{Name("ImageNames/"), SettingType::Text};

// Group "CustomShow": "0-0" .. "0-4" and "1-0" .. "1-4". Deliberate: no range; a number that is no item kind
// stays in the table and matches nothing.
inline constexpr SettingKey kCustomShow{Name("CustomShow/"), SettingType::Int, -1, -1};

// Inside a layout group (ThemeGroups).
inline constexpr SettingKey kXPt{Name("XPt"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kYPt{Name("YPt"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kXZoom{Name("XZoom"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kYZoom{Name("YZoom"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kHighlight{Name("highlight"), SettingType::Int, 0, 0, 0, kLiveValueCount - 1};
inline constexpr SettingKey kStringPixmap{Name("StringPixmap"), SettingType::Text};
inline constexpr SettingKey kStringD1{Name("StringD1"), SettingType::Text};
inline constexpr SettingKey kStringPixmapS{Name("StringPixmapS"), SettingType::Text};
inline constexpr SettingKey kSize{Name("Size"), SettingType::Int, 0, 0, 0, 2};
inline constexpr SettingKey kColor{Name("Color"), SettingType::Int, 0, 0, 0, 5};
inline constexpr SettingKey kDim{Name("Dim"), SettingType::Int, 0, 0, 0, 100, true};
inline constexpr SettingKey kBlur{Name("Blur"), SettingType::Int, 0, 0, 0, 100, true};
inline constexpr SettingKey kAccentOfPicture{Name("AccentOfPicture"), SettingType::Int, 0, 0, 0, 1, true};

// Inside a layout group, followed by the item's number (LiveValue).
inline constexpr SettingKey kShow{Name("Show_")};
inline constexpr SettingKey kShow2{Name("Show2_")};
inline constexpr SettingKey kShowRect{Name("ShowRect_"), SettingType::Rect};
inline constexpr SettingKey kShowStringRect{Name("ShowStringRect_"), SettingType::Rect};
inline constexpr SettingKey kString{Name("String_"), SettingType::Text};

}  // namespace keys

inline constexpr int kCustomShowRows = 2;
inline constexpr int kCustomShowSlots = 5;
// Each theme lying and standing, and the custom layouts.
inline constexpr int kThemeGroupCount = 2 * kThemeCount + kCustomShowRows;

// The layout groups in file order: "H1" and on for the themes lying, "V1" and on for them standing,
// "CUSTOM0", "CUSTOM1".
const QStringList& ThemeGroups();

// Every key Config.ini can hold, written out in full in file order ("ImageList/<n>" once, with n = 0, and
// "ImageNames/<path>" with an example), with its row of the table.
struct NamedSetting {
    QString key;
    SettingKey setting;
};
QList<NamedSetting> AllSettings();

QString GroupKey(const QString& group, const SettingKey& setting);           // "H1", kXPt: "H1/XPt".
QString ItemKey(const QString& group, const SettingKey& setting, int item);  // "H1", kShow, 3: "H1/Show_3".
QString ImageKey(int index);                                                 // 7: "ImageList/7".
// The path in one form for all ways to write it, with slashes: "C:/a.png": "ImageNames/C:/a.png". QSettings
// takes several slashes in a row for one.
QString ImageNameKey(const QString& cleanPath);
QString CustomShowKey(int row, int slot);  // 1, 4: "CustomShow/1-4".

}  // namespace kivo
