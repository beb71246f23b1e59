#include "config/setting_keys.h"

namespace kivo {
namespace {

// In the order in which a layout group is read and written: the placement, the items, the free text, the
// looks.
constexpr std::array kPlacementKeys{keys::kXPt, keys::kYPt, keys::kXZoom, keys::kYZoom, keys::kHighlight};
constexpr std::array kItemKeys{keys::kShow, keys::kShow2, keys::kShowRect, keys::kShowStringRect,
                               keys::kString};
constexpr std::array kFreeTextKeys{keys::kStringPixmap, keys::kStringD1, keys::kStringPixmapS, keys::kSize,
                                   keys::kColor};
constexpr std::array kLooksKeys{keys::kDim, keys::kBlur, keys::kAccentOfPicture};
constexpr std::array kSingleKeys{keys::kMode, keys::kThemeId,   keys::kStyle,
                                 keys::kHor,  keys::kCurRectId, keys::kLangId,
                                 keys::kUuid, keys::kTest,      keys::kImageCount};
constexpr std::array kAwayKeys{keys::kDarkAtLock, keys::kLitAtSleep, keys::kDarkAtScreenSaver,
                               keys::kDarkAtExit, keys::kNightLight, keys::kNightFrom,
                               keys::kNightTo};

}  // namespace

const QStringList& ThemeGroups() {
    static const QStringList groups = [] {
        QStringList names;
        for (const char orientation : {'H', 'V'}) {
            for (int theme = 1; theme <= kThemeCount; ++theme) {
                names.append(QLatin1Char(orientation) + QString::number(theme));
            }
        }
        for (int row = 0; row < kCustomShowRows; ++row) {
            names.append(QStringLiteral("CUSTOM") + QString::number(row));
        }
        return names;
    }();
    return groups;
}

QList<NamedSetting> AllSettings() {
    QList<NamedSetting> all;
    for (const SettingKey& setting : kSingleKeys) {
        all.append({QString(setting.name), setting});
    }
    for (const SettingKey& setting : kAwayKeys) {
        all.append({QString(setting.name), setting});
    }
    all.append({ImageKey(0), keys::kImagePath});
    all.append({ImageNameKey(QStringLiteral("C:/a.png")), keys::kImageName});
    for (int row = 0; row < kCustomShowRows; ++row) {
        for (int slot = 0; slot < kCustomShowSlots; ++slot) {
            all.append({CustomShowKey(row, slot), keys::kCustomShow});
        }
    }
    for (const QString& group : ThemeGroups()) {
        for (const SettingKey& setting : kPlacementKeys) {
            all.append({GroupKey(group, setting), setting});
        }
        for (int item = 0; item < kLiveValueCount; ++item) {
            for (const SettingKey& setting : kItemKeys) {
                all.append({ItemKey(group, setting, item), setting});
            }
        }
        for (const SettingKey& setting : kFreeTextKeys) {
            all.append({GroupKey(group, setting), setting});
        }
        for (const SettingKey& setting : kLooksKeys) {
            all.append({GroupKey(group, setting), setting});
        }
    }
    return all;
}

QString GroupKey(const QString& group, const SettingKey& setting) {
    return group + QLatin1Char('/') + setting.name;
}

QString ItemKey(const QString& group, const SettingKey& setting, int item) {
    return GroupKey(group, setting) + QString::number(item);
}

QString ImageKey(int index) {
    return keys::kImagePath.name + QString::number(index);
}

QString ImageNameKey(const QString& cleanPath) {
    return keys::kImageName.name + cleanPath;
}

QString CustomShowKey(int row, int slot) {
    return keys::kCustomShow.name + QString::number(row) + QLatin1Char('-') + QString::number(slot);
}

}  // namespace kivo
