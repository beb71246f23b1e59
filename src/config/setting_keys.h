#pragma once

#include <QLatin1String>
#include <QList>
#include <QString>
#include <QStringList>

#include <array>
#include <limits>

namespace kivo {

enum class SettingType { Int, Text, Rect };

/// One row of Config.ini's vocabulary. Texts default to empty, rectangles to QRect().
struct SettingKey {
    QLatin1String name;  ///< Full key, or the key's name inside its family (see the builders below).
    SettingType type = SettingType::Int;
    int defaultInt = 0;  ///< When absent, and when outside minimum..maximum.
    int notANumber = 0;  ///< When present and no whole number.
    int minimum = std::numeric_limits<int>::min();
    int maximum = std::numeric_limits<int>::max();
};

namespace keys {

// Group "Config".
inline constexpr SettingKey kMode{QLatin1String("Config/Mode")};
inline constexpr SettingKey kThemeId{QLatin1String("Config/ThemeID"), SettingType::Int, 0, 0, 0, 3};
inline constexpr SettingKey kStyle{QLatin1String("Config/Style")};
inline constexpr SettingKey kHor{QLatin1String("Config/Hor"), SettingType::Int, 0, 0, 0, 1};
inline constexpr SettingKey kCurRectId{QLatin1String("Config/CurRectID"), SettingType::Int, 2, 0, 0, 2};
inline constexpr SettingKey kLangId{QLatin1String("Config/LangID")};
inline constexpr SettingKey kUuid{QLatin1String("Config/UUid"), SettingType::Text};
// Group "test": written by a button that nobody sees, read by nobody.
inline constexpr SettingKey kTest{QLatin1String("test/test"), SettingType::Text};

// Group "ImageList": the count and, under its decimal index, each picture's path. A count beyond what a
// person could have added by hand is noise.
inline constexpr SettingKey kImageCount{QLatin1String("ImageList/Count"), SettingType::Int, 0, 0, 0, 9999};
inline constexpr SettingKey kImagePath{QLatin1String("ImageList/"), SettingType::Text};

// Group "CustomShow": "0-0" .. "0-4" and "1-0" .. "1-4". Deliberate: no range; a number that is no item kind
// stays in the table and matches nothing.
inline constexpr SettingKey kCustomShow{QLatin1String("CustomShow/"), SettingType::Int, -1, -1};

// Inside a layout group (ThemeGroups).
inline constexpr SettingKey kXPt{QLatin1String("XPt"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kYPt{QLatin1String("YPt"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kXZoom{QLatin1String("XZoom"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kYZoom{QLatin1String("YZoom"), SettingType::Int, 0, 0, -65535, 65535};
inline constexpr SettingKey kHighlight{QLatin1String("highlight"), SettingType::Int, 0, 0, 0, 8};
inline constexpr SettingKey kStringPixmap{QLatin1String("StringPixmap"), SettingType::Text};
inline constexpr SettingKey kStringD1{QLatin1String("StringD1"), SettingType::Text};
inline constexpr SettingKey kStringPixmapS{QLatin1String("StringPixmapS"), SettingType::Text};
inline constexpr SettingKey kSize{QLatin1String("Size"), SettingType::Int, 0, 0, 0, 2};
inline constexpr SettingKey kColor{QLatin1String("Color"), SettingType::Int, 0, 0, 0, 5};

// Inside a layout group, followed by the item's number 0 .. 8.
inline constexpr SettingKey kShow{QLatin1String("Show_")};
inline constexpr SettingKey kShow2{QLatin1String("Show2_")};
inline constexpr SettingKey kShowRect{QLatin1String("ShowRect_"), SettingType::Rect};
inline constexpr SettingKey kShowStringRect{QLatin1String("ShowStringRect_"), SettingType::Rect};
inline constexpr SettingKey kString{QLatin1String("String_"), SettingType::Text};

}  // namespace keys

inline constexpr int kThemeGroupCount = 10;
inline constexpr int kCustomShowRows = 2;
inline constexpr int kCustomShowSlots = 5;
inline constexpr int kItemCount = 9;

/// The layout groups in file order: "H1".."H4", "V1".."V4", "CUSTOM0", "CUSTOM1".
const QStringList& ThemeGroups();

/// Every key Config.ini can hold, written out in full in file order ("ImageList/<n>" once, with n = 0), with
/// its row of the table.
struct NamedSetting {
    QString key;
    SettingKey setting;
};
QList<NamedSetting> AllSettings();

QString GroupKey(const QString& group, const SettingKey& setting);           ///< "H1", kXPt: "H1/XPt".
QString ItemKey(const QString& group, const SettingKey& setting, int item);  ///< "H1", kShow, 3: "H1/Show_3".
QString ImageKey(int index);                                                 ///< 7: "ImageList/7".
QString CustomShowKey(int row, int slot);                                    ///< 1, 4: "CustomShow/1-4".

}  // namespace kivo
