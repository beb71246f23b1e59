#include <QImage>
#include <QImageReader>
#include <QTest>

#include "compose/theme_catalogue.h"
#include "resources/resources.h"
#include "support/test_program.h"

Q_DECLARE_METATYPE(kivo::Theme)
Q_DECLARE_METATYPE(kivo::Orientation)
Q_DECLARE_METATYPE(kivo::InterfaceLanguage)

using namespace kivo;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

struct PlaceRow {
    Theme theme;
    Orientation orientation;
    int item;
    QRect tile;
    QRect text;
};

PlaceRow Both(Theme theme, Orientation orientation, int item, QRect rect) {
    return {theme, orientation, item, rect, rect};
}

QVector<PlaceRow> LandscapeRows() {
    return {
        {Theme::Default, kLying, CpuTemperature, Corners(141, 5, 222, 83), Corners(158, 38, 204, 61)},
        {Theme::Default, kLying, CpuUsage, Corners(227, 86, 308, 164), Corners(245, 119, 291, 142)},
        {Theme::Default, kLying, MemoryUsage, Corners(227, 5, 308, 83), Corners(245, 38, 291, 61)},
        Both(Theme::Default, kLying, Time, Corners(28, 16, 107, 39)),
        {Theme::Default, kLying, CpuPower, Corners(44, 99, 101, 148), Corners(35, 100, 104, 121)},
        Both(Theme::Default, kLying, Date, Corners(0, 44, 135, 56)),
        {Theme::Default, kLying, FanSpeed, Corners(141, 86, 222, 164), Corners(158, 119, 204, 142)},

        Both(Theme::Scene, kLying, Time, Corners(89, 85, 234, 134)),
        Both(Theme::Scene, kLying, Date, Corners(69, 138, 254, 169)),

        {Theme::Tdp, kLying, CpuTemperature, Corners(11, 24, 70, 82), Corners(11, 54, 70, 73)},
        {Theme::Tdp, kLying, CpuUsage, Corners(11, 78, 70, 136), Corners(11, 108, 70, 127)},
        {Theme::Tdp, kLying, MemoryUsage, Corners(249, 78, 308, 136), Corners(249, 108, 308, 127)},
        Both(Theme::Tdp, kLying, Time, Corners(128, 111, 193, 140)),
        {Theme::Tdp, kLying, CpuPower, Corners(106, 36, 219, 100), Corners(106, 74, 219, 103)},
        Both(Theme::Tdp, kLying, Date, Corners(122, 142, 201, 161)),
        {Theme::Tdp, kLying, FanSpeed, Corners(249, 24, 308, 82), Corners(249, 54, 308, 73)},

        {Theme::Time, kLying, CpuTemperature, Corners(6, 3, 65, 61), Corners(12, 13, 58, 27)},
        {Theme::Time, kLying, CpuUsage, Corners(6, 103, 65, 161), Corners(12, 113, 58, 127)},
        {Theme::Time, kLying, MemoryUsage, Corners(256, 103, 315, 161), Corners(261, 113, 307, 127)},
        Both(Theme::Time, kLying, Time, Corners(100, 60, 219, 89)),
        {Theme::Time, kLying, CpuPower, Corners(256, 3, 315, 61), Corners(261, 13, 307, 27)},
        Both(Theme::Time, kLying, Date, Corners(100, 103, 219, 132)),
    };
}

QVector<PlaceRow> PortraitRows() {
    return {
        {Theme::Default, kStanding, CpuTemperature, Corners(4, 158, 85, 236), Corners(23, 191, 68, 214)},
        {Theme::Default, kStanding, CpuUsage, Corners(88, 239, 169, 317), Corners(107, 272, 152, 295)},
        {Theme::Default, kStanding, MemoryUsage, Corners(88, 158, 169, 236), Corners(107, 191, 152, 214)},
        {Theme::Default, kStanding, Time, Corners(28, 16, 107, 39), Corners(45, 8, 124, 31)},
        {Theme::Default, kStanding, CpuPower, Corners(52, 88, 119, 133), Corners(52, 88, 119, 109)},
        {Theme::Default, kStanding, Date, Corners(0, 44, 135, 56), Corners(29, 33, 139, 45)},
        {Theme::Default, kStanding, FanSpeed, Corners(4, 239, 85, 317), Corners(23, 272, 68, 295)},

        {Theme::Scene, kStanding, Time, Corners(89, 85, 234, 134), Corners(12, 223, 157, 272)},
        {Theme::Scene, kStanding, Date, Corners(69, 138, 254, 169), Corners(0, 283, 169, 300)},

        {Theme::Tdp, kStanding, CpuTemperature, Corners(25, 15, 84, 63), Corners(25, 46, 84, 65)},
        {Theme::Tdp, kStanding, CpuUsage, Corners(25, 242, 84, 290), Corners(25, 272, 84, 291)},
        {Theme::Tdp, kStanding, MemoryUsage, Corners(88, 15, 147, 63), Corners(88, 46, 147, 65)},
        {Theme::Tdp, kStanding, Time, Corners(128, 122, 193, 151), Corners(56, 194, 121, 213)},
        {Theme::Tdp, kStanding, CpuPower, Corners(30, 92, 143, 156), Corners(30, 141, 143, 170)},
        {Theme::Tdp, kStanding, Date, Corners(122, 153, 201, 172), Corners(46, 215, 125, 234)},
        {Theme::Tdp, kStanding, FanSpeed, Corners(88, 242, 147, 290), Corners(88, 272, 147, 291)},

        {Theme::Time, kStanding, CpuTemperature, Corners(6, 6, 65, 64), Corners(11, 18, 57, 32)},
        {Theme::Time, kStanding, CpuUsage, Corners(6, 258, 65, 316), Corners(11, 271, 57, 285)},
        {Theme::Time, kStanding, MemoryUsage, Corners(105, 258, 164, 316), Corners(111, 271, 157, 285)},
        {Theme::Time, kStanding, Time, Corners(90, 55, 229, 102), Corners(29, 136, 140, 165)},
        {Theme::Time, kStanding, CpuPower, Corners(105, 6, 164, 64), Corners(111, 18, 157, 32)},
        {Theme::Time, kStanding, Date, Corners(124, 103, 203, 116), Corners(30, 177, 132, 190)},
    };
}

QString Background(const char* name) {
    return QLatin1String("://background/") + QLatin1String(name);
}

QStringList Backgrounds(std::initializer_list<const char*> names) {
    QStringList paths;
    for (const char* name : names) {
        paths.append(Background(name));
    }
    return paths;
}

}  // namespace

class TestThemeCatalogue : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { InitResources(); }

    void SkinAndIcon_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<QString>("landscape");
        QTest::addColumn<QString>("portrait");
        QTest::addColumn<QString>("icon");
        QTest::newRow("default") << Theme::Default << Background("default_background_01.png")
                                 << Background("default_background_02.png") << Background("default_icon.png");
        QTest::newRow("scene") << Theme::Scene << Background("scene_background_01.png")
                               << Background("scene_background_02.png") << QString();
        QTest::newRow("TDP") << Theme::Tdp << Background("TDP_background_01.png")
                             << Background("TDP_background_02.png") << QString();
        QTest::newRow("time") << Theme::Time << Background("time_background_01.png")
                              << Background("time_background_02.png") << Background("time_icon.png");
    }
    void SkinAndIcon() {
        QFETCH(Theme, theme);
        QFETCH(QString, landscape);
        QFETCH(QString, portrait);
        QFETCH(QString, icon);
        QCOMPARE(SkinPicture(theme, kLying), landscape);
        QCOMPARE(SkinPicture(theme, kStanding), portrait);
        QCOMPARE(IconPicture(theme), icon);
        for (const Orientation orientation : {kLying, kStanding}) {
            const QVector<SkinLayer> layers = SkinLayers(theme, orientation);
            QVERIFY(!layers.isEmpty());
            QCOMPARE(layers.first().path, SkinPicture(theme, orientation));
            const auto isIcon = [&](const SkinLayer& layer) { return layer.path == icon; };
            QCOMPARE(std::count_if(layers.begin(), layers.end(), isIcon), icon.isEmpty() ? 0 : 1);
        }
    }

    void OnlyTheSceneHasNoGlass() {
        for (const Theme theme : {Theme::Default, Theme::Tdp, Theme::Time}) {
            QVERIFY(HasGlass(theme));
        }
        QVERIFY(!HasGlass(Theme::Scene));
    }

    void OverviewSets_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<InterfaceLanguage>("language");
        QTest::addColumn<QStringList>("paths");
        const QStringList all = Backgrounds({"default_background_all.png", "scene_background_all.png",
                                             "TDP_background_all.png", "time_background_all.png"});
        const QStringList allEnglish =
            Backgrounds({"default_background_all_en.png", "scene_background_all.png",
                         "TDP_background_all_en.png", "time_background_all_en.png"});
        const QStringList allRussian =
            Backgrounds({"default_background_all_ru.png", "scene_background_all.png",
                         "TDP_background_all_ru.png", "time_background_all_ru.png"});
        const QStringList all3 = Backgrounds({"default_background_all3.png", "scene_background_all3.png",
                                              "TDP_background_all3.png", "time_background_all3.png"});
        const QStringList all3English =
            Backgrounds({"default_background_all3_en.png", "scene_background_all3.png",
                         "TDP_background_all3_en.png", "time_background_all3_en.png"});
        const QStringList all3Russian =
            Backgrounds({"default_background_all3_ru.png", "scene_background_all3.png",
                         "TDP_background_all3_ru.png", "time_background_all3_ru.png"});
        QTest::newRow("landscape, Chinese") << kLying << InterfaceLanguage::Chinese << all;
        QTest::newRow("landscape, English") << kLying << InterfaceLanguage::English << allEnglish;
        QTest::newRow("landscape, Russian") << kLying << InterfaceLanguage::Russian << allRussian;
        QTest::newRow("portrait, Chinese") << kStanding << InterfaceLanguage::Chinese << all3;
        QTest::newRow("portrait, English") << kStanding << InterfaceLanguage::English << all3English;
        QTest::newRow("portrait, Russian") << kStanding << InterfaceLanguage::Russian << all3Russian;
    }
    void OverviewSets() {
        QFETCH(Orientation, orientation);
        QFETCH(InterfaceLanguage, language);
        QFETCH(QStringList, paths);
        QCOMPARE(OverviewPictures(orientation, language), paths);
    }

    void BackgroundsInListOrder() {
        QCOMPARE(BuiltInBackgrounds(), Backgrounds({"1.jpg", "2.jpg", "3.jpg", "4.jpg", "5.jpg", "6.png",
                                                    "7.jpg", "8.jpg", "9.jpg", "10.jpg", "11.jpg"}));
        QVERIFY(BuiltInBackgrounds().contains(DefaultBackground()));
    }

    void EveryPictureOpens() {
        QStringList paths = BuiltInBackgrounds();
        paths << DefaultBackground();
        for (const Orientation orientation : {kLying, kStanding}) {
            for (const InterfaceLanguage language :
                 {InterfaceLanguage::Chinese, InterfaceLanguage::English, InterfaceLanguage::Russian}) {
                paths << OverviewPictures(orientation, language);
            }
            for (int theme = 0; theme < kThemeCount; ++theme) {
                for (const SkinLayer& layer : SkinLayers(Theme(theme), orientation)) {
                    paths << layer.path;
                    QVERIFY2(QRectF(QPointF(0, 0), QSizeF(CanvasSize(orientation))).contains(layer.rect),
                             qPrintable(layer.path));
                }
            }
        }
        paths.removeDuplicates();
        QCOMPARE(paths.size(),
                 11 + 20 + 8 + 8 + 6 + 2 + 2);  // glass, ornaments, icons, frames, own icons
        for (const QString& path : paths) {
            QImageReader reader(path);
            const QImage picture = reader.read();
            QVERIFY2(!picture.isNull(), qPrintable(path + QLatin1String(": ") + reader.errorString()));
        }
    }

    void FactoryRecord_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<int>("highlight");
        QTest::addColumn<QVector<int>>("shown");
        const QVector<int> seven{0, 1, 2, 3, 4, 5, 6};
        QTest::newRow("default: power, all seven") << Theme::Default << 4 << seven;
        QTest::newRow("scene: time and date only") << Theme::Scene << 3 << QVector<int>{3, 5};
        QTest::newRow("TDP: power, all seven") << Theme::Tdp << 4 << seven;
        QTest::newRow("time: time, no fan") << Theme::Time << 3 << QVector<int>{0, 1, 2, 3, 4, 5};
    }
    void FactoryRecord() {
        QFETCH(Theme, theme);
        QFETCH(int, highlight);
        QFETCH(QVector<int>, shown);
        for (const Orientation orientation : {kLying, kStanding}) {
            for (const InterfaceLanguage language :
                 {InterfaceLanguage::Chinese, InterfaceLanguage::English, InterfaceLanguage::Russian}) {
                const LayoutRecord record = FactoryThemeLayout(theme, orientation, language);
                QCOMPARE(record.highlight, highlight);
                for (int item = 0; item < kLiveValueCount; ++item) {
                    QCOMPARE(record.shown[size_t(item)], shown.contains(item));
                    QVERIFY(!record.selected[size_t(item)]);
                }
                QCOMPARE(record.xPt, 0);
                QCOMPARE(record.yPt, 0);
                QCOMPARE(record.xZoom, 0);
                QCOMPARE(record.yZoom, 0);
                QVERIFY(record.sample == SampleTexts(language));
                QVERIFY(record.freeText.isEmpty());
                QCOMPARE(record.sizeIndex, 0);
                QCOMPARE(record.colorIndex, 0);
                // No picture of its own: nothing was chosen yet.
                QVERIFY(record.picture.isEmpty());
            }
        }
    }

    void Places() {
        const QVector<PlaceRow> rows = LandscapeRows() + PortraitRows();
        QCOMPARE(rows.size(), 2 * (7 + 2 + 7 + 6));
        for (const Orientation orientation : {kLying, kStanding}) {
            for (int theme = 0; theme < kThemeCount; ++theme) {
                const LayoutRecord record =
                    FactoryThemeLayout(Theme(theme), orientation, InterfaceLanguage::Chinese);
                for (int item = 0; item < kLiveValueCount; ++item) {
                    const auto row = std::find_if(rows.begin(), rows.end(), [&](const PlaceRow& r) {
                        return r.theme == Theme(theme) && r.orientation == orientation && r.item == item;
                    });
                    const QByteArray where = "theme " + QByteArray::number(theme) + ", item " +
                                             QByteArray::number(item) +
                                             (orientation == kLying ? ", landscape" : ", portrait");
                    const QRect tile = row == rows.end() ? QRect() : row->tile;
                    const QRect text = row == rows.end() ? QRect() : row->text;
                    QVERIFY2(record.tile[size_t(item)] == tile, where);
                    QVERIFY2(record.textRect[size_t(item)] == text, where);
                }
            }
        }
    }

    void EveryShownTextStandsOnTheCanvas() {
        for (const Orientation orientation : {kLying, kStanding}) {
            const QRect canvas(QPoint(0, 0), CanvasSize(orientation));
            for (int theme = 0; theme < kThemeCount; ++theme) {
                const LayoutRecord record =
                    FactoryThemeLayout(Theme(theme), orientation, InterfaceLanguage::Chinese);
                for (size_t item = 0; item < size_t(kLiveValueCount); ++item) {
                    QVERIFY(!record.shown[item] || canvas.contains(record.textRect[item]));
                }
            }
        }
    }
};

KIVO_GUILESS_TEST(TestThemeCatalogue)
#include "tst_theme_catalogue.moc"
