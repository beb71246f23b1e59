#include "compose/theme_catalogue.h"

namespace kivo {

namespace {

// The seven items that a theme can place; custom text belongs to the custom layouts.
constexpr int kPlacedItems = 7;

struct Place {
    QRect tile;
    QRect text;
};

constexpr Place At(QRect tile, QRect text) {
    return {tile, text};
}
constexpr Place At(QRect both) {
    return {both, both};
}
constexpr Place kNowhere{};

struct ThemeLayout {
    int highlight;
    int shownItems;  // bit n: item n is shown
    std::array<Place, kPlacedItems> places;
};

constexpr int kAllSeven = 0x7F;
constexpr int kTimeAndDate = (1 << Time) | (1 << Date);
constexpr int kAllButFan = kAllSeven & ~(1 << FanSpeed);

// Canvas pixels, inclusive corners. The first rectangle is the item's card, the second where its text stands.
constexpr std::array<ThemeLayout, kThemeCount> kLandscape{{
    {CpuPower,
     kAllSeven,
     {{At(Corners(141, 5, 222, 83), Corners(158, 38, 204, 61)),
       At(Corners(227, 86, 308, 164), Corners(245, 119, 291, 142)),
       At(Corners(227, 5, 308, 83), Corners(245, 38, 291, 61)), At(Corners(28, 16, 107, 39)),
       At(Corners(44, 99, 101, 148), Corners(35, 100, 104, 121)), At(Corners(0, 44, 135, 56)),
       At(Corners(141, 86, 222, 164), Corners(158, 119, 204, 142))}}},
    {Time,
     kTimeAndDate,
     {{kNowhere, kNowhere, kNowhere, At(Corners(89, 85, 234, 134)), kNowhere, At(Corners(69, 138, 254, 169)),
       kNowhere}}},
    {CpuPower,
     kAllSeven,
     {{At(Corners(11, 24, 70, 82), Corners(11, 54, 70, 73)),
       At(Corners(11, 78, 70, 136), Corners(11, 108, 70, 127)),
       At(Corners(249, 78, 308, 136), Corners(249, 108, 308, 127)), At(Corners(128, 111, 193, 140)),
       At(Corners(106, 36, 219, 100), Corners(106, 74, 219, 103)), At(Corners(122, 142, 201, 161)),
       At(Corners(249, 24, 308, 82), Corners(249, 54, 308, 73))}}},
    {Time,
     kAllButFan,
     {{At(Corners(6, 3, 65, 61), Corners(12, 13, 58, 27)),
       At(Corners(6, 103, 65, 161), Corners(12, 113, 58, 127)),
       At(Corners(256, 103, 315, 161), Corners(261, 113, 307, 127)), At(Corners(100, 60, 219, 89)),
       At(Corners(256, 3, 315, 61), Corners(261, 13, 307, 27)), At(Corners(100, 103, 219, 132)), kNowhere}}},
}};

constexpr std::array<ThemeLayout, kThemeCount> kPortrait{{
    {CpuPower,
     kAllSeven,
     {{At(Corners(4, 158, 85, 236), Corners(23, 191, 68, 214)),
       At(Corners(88, 239, 169, 317), Corners(107, 272, 152, 295)),
       At(Corners(88, 158, 169, 236), Corners(107, 191, 152, 214)),
       At(Corners(28, 16, 107, 39), Corners(45, 8, 124, 31)),
       At(Corners(52, 88, 119, 133), Corners(52, 88, 119, 109)),
       At(Corners(0, 44, 135, 56), Corners(29, 33, 139, 45)),
       At(Corners(4, 239, 85, 317), Corners(23, 272, 68, 295))}}},
    {Time,
     kTimeAndDate,
     {{kNowhere, kNowhere, kNowhere, At(Corners(89, 85, 234, 134), Corners(12, 223, 157, 272)), kNowhere,
       At(Corners(69, 138, 254, 169), Corners(0, 283, 169, 300)), kNowhere}}},
    {CpuPower,
     kAllSeven,
     {{At(Corners(25, 15, 84, 63), Corners(25, 46, 84, 65)),
       At(Corners(25, 242, 84, 290), Corners(25, 272, 84, 291)),
       At(Corners(88, 15, 147, 63), Corners(88, 46, 147, 65)),
       At(Corners(128, 122, 193, 151), Corners(56, 194, 121, 213)),
       At(Corners(30, 92, 143, 156), Corners(30, 141, 143, 170)),
       At(Corners(122, 153, 201, 172), Corners(46, 215, 125, 234)),
       At(Corners(88, 242, 147, 290), Corners(88, 272, 147, 291))}}},
    {Time,
     kAllButFan,
     {{At(Corners(6, 6, 65, 64), Corners(11, 18, 57, 32)),
       At(Corners(6, 258, 65, 316), Corners(11, 271, 57, 285)),
       At(Corners(105, 258, 164, 316), Corners(111, 271, 157, 285)),
       At(Corners(90, 55, 229, 102), Corners(29, 136, 140, 165)),
       At(Corners(105, 6, 164, 64), Corners(111, 18, 157, 32)),
       At(Corners(124, 103, 203, 116), Corners(30, 177, 132, 190)), kNowhere}}},
}};

constexpr std::array<const char*, kThemeCount> kFileNames{"default", "scene", "TDP", "time"};

QString FileName(Theme theme) {
    return QLatin1String(kFileNames[size_t(theme)]);
}

QString Picture(Theme theme, const char* part, Orientation orientation) {
    return QStringLiteral("://background/%1_%2_0%3.png")
        .arg(FileName(theme), QLatin1String(part))
        .arg(int(orientation) + 1);
}

// Where the theme's own icon lies, in canvas pixels: default's bolt in the ring's opening, time's clock above
// the hour.
QRectF IconRect(Theme theme, Orientation orientation) {
    const bool landscape = orientation == Orientation::Landscape;
    const auto square = [](double centreX, double centreY, double side) {
        return QRectF(centreX - side / 2, centreY - side / 2, side, side);
    };
    if (theme == Theme::Default) {
        return landscape ? square(70, 152.5, 13) : square(85.5, 141, 13);
    }
    if (theme == Theme::Time) {
        // In landscape exactly 24 x 24 pixels of the frame it is drawn on, so that the picture is not
        // resampled there.
        constexpr double kAcross = 320.0 / 433;
        constexpr double kDown = 170.0 / 230;
        return landscape ? QRectF(204 * kAcross, 43 * kDown, 24 * kAcross, 24 * kDown)
                         : square(84.5, 121, 16);
    }
    return QRectF();
}

}  // namespace

QString SkinPicture(Theme theme, Orientation orientation) {
    return Picture(theme, "background", orientation);
}

QString IconPicture(Theme theme) {
    switch (theme) {
        case Theme::Default:
            return QStringLiteral("://background/default_icon.png");
        case Theme::Time:
            return QStringLiteral("://background/time_icon.png");
        case Theme::Scene:
        case Theme::Tdp:
            break;
    }
    return QString();
}

QVector<SkinLayer> SkinLayers(Theme theme, Orientation orientation) {
    const QRectF whole(QPointF(0, 0), QSizeF(CanvasSize(orientation)));
    QVector<SkinLayer> layers{{SkinPicture(theme, orientation), whole},
                              {Picture(theme, "ornaments", orientation), whole}};
    if (theme == Theme::Time) {
        layers.append({Picture(theme, "frame", orientation), whole});
    }
    if (theme != Theme::Scene) {
        layers.append({Picture(theme, "icons", orientation), whole});
    }
    if (const QString icon = IconPicture(theme); !icon.isEmpty()) {
        layers.append({icon, IconRect(theme, orientation)});
    }
    return layers;
}

bool HasGlass(Theme theme) {
    return theme != Theme::Scene;
}

bool HasAccent(Theme theme) {
    return theme != Theme::Scene;
}

std::optional<int> ThemeAxis(Theme theme, Orientation orientation, int item) {
    const bool landscape = orientation == Orientation::Landscape;
    if (theme == Theme::Default && (item == Time || item == Date || item == CpuPower)) {
        return landscape ? 70 : 86;  // of the ring, and of the card around it
    }
    if (theme == Theme::Time && !landscape && item == Date) {
        return 85;  // of the clock
    }
    return std::nullopt;
}

QStringList OverviewPictures(Orientation orientation, InterfaceLanguage language) {
    const QString set =
        orientation == Orientation::Landscape ? QStringLiteral("all") : QStringLiteral("all3");
    QStringList paths;
    for (int k = 0; k < kThemeCount; ++k) {
        const auto theme = Theme(k);
        const bool western = language != InterfaceLanguage::Chinese && theme != Theme::Scene;
        paths.append(QStringLiteral("://background/%1_background_%2%3.png")
                         .arg(FileName(theme), set, western ? QStringLiteral("_en") : QString()));
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

QString SampleOverride(int item, InterfaceLanguage language) {
    if (language != InterfaceLanguage::Russian) {
        return QString();
    }
    switch (item) {
        case CpuPower:
            return QStringLiteral("15Вт");
        case Date:
            return QStringLiteral("31.12.2019");
        default:
            return QString();
    }
}

std::array<QString, kLiveValueCount> SampleTexts(InterfaceLanguage language) {
    std::array<QString, kLiveValueCount> samples{
        QStringLiteral("45℃"),   QStringLiteral("65%"),  QStringLiteral("20%"),
        QStringLiteral("12:00"), QStringLiteral("1300"), QStringLiteral("2019年12月31日"),
        QStringLiteral("1000"),  QLatin1String(""),      QStringLiteral("2019-12-31")};
    for (int item = 0; item < kLiveValueCount; ++item) {
        if (const QString text = SampleOverride(item, language); !text.isNull()) {
            samples[size_t(item)] = text;
        }
    }
    return samples;
}

LayoutRecord FactoryThemeLayout(Theme theme, Orientation orientation, InterfaceLanguage language) {
    const ThemeLayout& layout =
        (orientation == Orientation::Landscape ? kLandscape : kPortrait)[size_t(theme)];
    LayoutRecord record;
    record.highlight = layout.highlight;
    for (size_t item = 0; item < kPlacedItems; ++item) {
        record.shown[item] = (layout.shownItems >> item & 1) != 0;
        record.tile[item] = layout.places[item].tile;
        record.textRect[item] = layout.places[item].text;
    }
    record.sample = SampleTexts(language);
    record.defaultPicture = DefaultBackground();
    return record;
}

}  // namespace kivo
