#include "pictures/built_in_names.h"

#include <QCoreApplication>
#include <array>

#include "compose/theme_catalogue.h"

namespace kivo {

namespace {

// In list order.
constexpr std::array<const char*, 11> kNames{
    QT_TRANSLATE_NOOP("BuiltInPicture", "黎明"), QT_TRANSLATE_NOOP("BuiltInPicture", "极光"),
    QT_TRANSLATE_NOOP("BuiltInPicture", "沙丘"), QT_TRANSLATE_NOOP("BuiltInPicture", "海岸"),
    QT_TRANSLATE_NOOP("BuiltInPicture", "港湾"), QT_TRANSLATE_NOOP("BuiltInPicture", "剪纸"),
    QT_TRANSLATE_NOOP("BuiltInPicture", "星云"), QT_TRANSLATE_NOOP("BuiltInPicture", "晨雾"),
    QT_TRANSLATE_NOOP("BuiltInPicture", "丝绸"), QT_TRANSLATE_NOOP("BuiltInPicture", "等高线"),
    QT_TRANSLATE_NOOP("BuiltInPicture", "轨道"),
};

}  // namespace

QString BuiltInPictureName(const QString& path) {
    static const QStringList builtIn = BuiltInBackgrounds();
    const int index = int(builtIn.indexOf(path));
    return index >= 0 && index < int(kNames.size())
               ? QCoreApplication::translate("BuiltInPicture", kNames[size_t(index)])
               : QString();
}

}  // namespace kivo
