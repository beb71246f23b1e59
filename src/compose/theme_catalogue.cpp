#include "compose/theme_catalogue.h"

namespace kivo {

namespace {

QString FileName(Theme theme) {
    return QLatin1String(FactsOf(theme).files);
}

QString Picture(Theme theme, const char* part, Orientation orientation) {
    return QStringLiteral("://background/%1_%2_0%3.png")
        .arg(FileName(theme), QLatin1String(part))
        .arg(int(orientation) + 1);
}

}  // namespace

const ThemeLayout& LayoutOf(Theme theme, Orientation orientation) {
    const ThemeFacts& facts = FactsOf(theme);
    return orientation == Orientation::Landscape ? facts.landscape : facts.portrait;
}

QString SkinPicture(Theme theme, Orientation orientation) {
    return Picture(theme, "background", orientation);
}

QString IconPicture(Theme theme) {
    return FactsOf(theme).landscape.icon.isNull()
               ? QString()
               : QStringLiteral("://background/%1_icon.png").arg(FileName(theme));
}

QVector<SkinLayer> SkinLayers(Theme theme, Orientation orientation) {
    const QRectF whole(QPointF(0, 0), QSizeF(CanvasSize(orientation)));
    QVector<SkinLayer> layers{{SkinPicture(theme, orientation), whole},
                              {Picture(theme, "ornaments", orientation), whole}};
    if (Has(theme, kTickFrame)) {
        layers.append({Picture(theme, "frame", orientation), whole});
    }
    if (!Has(theme, kHourAlone)) {
        layers.append({Picture(theme, "icons", orientation), whole});
    }
    if (const QString icon = IconPicture(theme); !icon.isEmpty()) {
        layers.append({icon, LayoutOf(theme, orientation).icon});
    }
    return layers;
}

bool HasGlass(Theme theme) {
    return !Has(theme, kHourAlone);
}

std::optional<int> ThemeAxis(Theme theme, Orientation orientation, int item) {
    for (const ThemePlace& place : LayoutOf(theme, orientation).places) {
        if (!place.text.isNull() && place.item == item) {
            return place.axis;
        }
    }
    return std::nullopt;
}

QStringList OverviewPictures(Orientation orientation, InterfaceLanguage language) {
    const QString set =
        orientation == Orientation::Landscape ? QStringLiteral("all") : QStringLiteral("all3");
    const QString ofLanguage = language == InterfaceLanguage::English   ? QStringLiteral("_en")
                               : language == InterfaceLanguage::Russian ? QStringLiteral("_ru")
                                                                        : QString();
    QStringList paths;
    for (const ThemeFacts& facts : kThemeTable) {
        // Figures alone look the same in all languages.
        paths.append(
            QStringLiteral("://background/%1_background_%2%3.png")
                .arg(FileName(facts.theme), set, Has(facts.theme, kHourAlone) ? QString() : ofLanguage));
    }
    return paths;
}

QStringList BuiltInBackgrounds() {
    QStringList paths;
    for (int n = 1; n <= 11; ++n) {
        paths.append(QStringLiteral("://background/%1.%2")
                         .arg(n)
                         .arg(n == 6 ? QStringLiteral("png") : QStringLiteral("jpg")));
    }
    return paths;
}

QString DefaultBackground() {
    return QStringLiteral("://background/2.jpg");
}

LayoutRecord FactoryThemeLayout(Theme theme, Orientation orientation, InterfaceLanguage language) {
    const ThemeLayout& layout = LayoutOf(theme, orientation);
    LayoutRecord record;
    record.highlight = layout.highlight;
    for (const ThemePlace& place : layout.places) {
        if (!place.text.isNull()) {
            const auto item = size_t(place.item);
            record.shown[item] = true;
            record.tile[item] = place.tile;
            record.textRect[item] = place.text;
        }
    }
    record.sample = SampleTexts(language);
    record.defaultPicture = DefaultBackground();
    return record;
}

}  // namespace kivo
