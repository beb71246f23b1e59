#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include "compose/theme_state.h"
#include "compose_test_support.h"
#include "config/folders.h"
#include "config/portable_folder.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QStringList kGroups{QStringLiteral("H1"),     QStringLiteral("H2"), QStringLiteral("H3"),
                          QStringLiteral("H4"),     QStringLiteral("V1"), QStringLiteral("V2"),
                          QStringLiteral("V3"),     QStringLiteral("V4"), QStringLiteral("CUSTOM0"),
                          QStringLiteral("CUSTOM1")};

void Store(const QString& key, const QVariant& value) {
    QSettings file(ConfigFilePath(), QSettings::IniFormat);
    file.setValue(key, value);
}

QVariant Stored(const QString& key) {
    return QSettings(ConfigFilePath(), QSettings::IniFormat).value(key);
}

// A record in which no two values are alike, different for every seed.
LayoutRecord SpecialRecord(int seed) {
    LayoutRecord record;
    record.xPt = seed * 10 + 1;
    record.yPt = -(seed * 10 + 2);
    record.xZoom = seed + 30;
    record.yZoom = seed + 50;
    record.highlight = seed % 9;
    for (int item = 0; item < kLiveValueCount; ++item) {
        const auto n = size_t(item);
        record.shown[n] = (item + seed) % 2 == 0;
        record.selected[n] = (item + seed) % 3 == 0;
        record.tile[n] = QRect(item + seed, item * 2, 20 + item, 30 + seed);
        record.textRect[n] = QRect(item * 3, seed + item, 10 + item, 12 + item);
        record.sample[n] = QStringLiteral("sample %1, %2; \"℃\"").arg(seed).arg(item);
    }
    record.picture = QStringLiteral("/home/用户/my picture, %1.jpg").arg(seed);
    record.freeText = QStringLiteral("Привет; \n你好 = %1 \\ 😀").arg(seed);
    record.defaultPicture = QStringLiteral("://background/%1.jpg").arg(seed + 1);
    record.sizeIndex = seed % 3;
    record.colorIndex = seed % 6;
    return record;
}

ThemeState SpecialState() {
    ThemeState state;
    state.mode = 1;
    state.theme = 2;
    state.customStyle = 1;
    state.orientation = Orientation::Portrait;
    for (int n = 0; n < kLayoutCount; ++n) {
        state.layouts[size_t(n)] = SpecialRecord(n);
    }
    return state;
}

}  // namespace

class TestThemeState : public QObject {
    Q_OBJECT

private slots:
    void init() { QFile::remove(ConfigFilePath()); }
    void cleanupTestCase() { QFile::remove(ConfigFilePath()); }

    void WithoutAFileEverythingIsAsMade() {
        for (const InterfaceLanguage language : kLanguages) {
            const ThemeState state = LoadThemeState(language);
            QCOMPARE(state.mode, 0);
            QCOMPARE(state.theme, 0);
            QCOMPARE(state.themeStyle, 0);
            QCOMPARE(state.customStyle, 0);
            QCOMPARE(state.orientation, Orientation::Landscape);
            const ThemeState factory = FactoryThemeState(language);
            for (size_t n = 0; n < size_t(kLayoutCount); ++n) {
                QVERIFY(state.layouts[n] == factory.layouts[n]);
            }
        }
        QVERIFY(!QFile::exists(ConfigFilePath()));
    }

    void FactoryOrderIsLandscapePortraitCustom() {
        const ThemeState state = FactoryThemeState(InterfaceLanguage::English);
        for (int theme = 0; theme < kThemeCount; ++theme) {
            QVERIFY(state.layouts[size_t(theme)] ==
                    FactoryThemeLayout(Theme(theme), Orientation::Landscape, InterfaceLanguage::English));
            QVERIFY(state.layouts[size_t(theme + 4)] ==
                    FactoryThemeLayout(Theme(theme), Orientation::Portrait, InterfaceLanguage::English));
            QCOMPARE(ThemeLayoutIndex(Theme(theme), Orientation::Landscape), theme);
            QCOMPARE(ThemeLayoutIndex(Theme(theme), Orientation::Portrait), theme + 4);
        }
        for (int variant = 0; variant < kVariantCount; ++variant) {
            QCOMPARE(CustomLayoutIndex(variant), 8 + variant);
            QVERIFY(state.layouts[size_t(8 + variant)] ==
                    FactoryCustomLayout(variant, InterfaceLanguage::English));
        }
    }

    void PictureOfAPortableProgramIsNamedFromItsFolder() {
        const QTemporaryDir place;
        SetPortableFolder(place.filePath(QStringLiteral("data")));
        ThemeState state = SpecialState();
        state.layouts[3].picture = place.filePath(QStringLiteral("data/a.png"));
        SaveThemeState(state);
        const QString stored = Stored(QStringLiteral("H4/StringPixmap")).toString();
        const QString picture = LoadThemeState(InterfaceLanguage::English).layouts[3].picture;
        SetPortableFolder(QString());
        QCOMPARE(stored, QStringLiteral("data/a.png"));
        QCOMPARE(picture, state.layouts[3].picture);
    }

    void EveryValueComesBack() {
        const ThemeState saved = SpecialState();
        SaveThemeState(saved);
        const ThemeState loaded = LoadThemeState(InterfaceLanguage::Chinese);
        QCOMPARE(loaded.mode, saved.mode);
        QCOMPARE(loaded.theme, saved.theme);
        QCOMPARE(loaded.themeStyle, 0);
        QCOMPARE(loaded.customStyle, saved.customStyle);
        QCOMPARE(loaded.orientation, saved.orientation);
        for (int n = 0; n < kLayoutCount; ++n) {
            QVERIFY2(loaded.layouts[size_t(n)] == saved.layouts[size_t(n)], qPrintable(kGroups[n]));
        }
    }

    // The file has one number for both pages.
    void TheStyleOfThePageInFrontIsKept_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("stored");
        QTest::newRow("theme page") << 0 << 1;
        QTest::newRow("custom page") << 1 << -5;
    }
    void TheStyleOfThePageInFrontIsKept() {
        QFETCH(int, mode);
        QFETCH(int, stored);
        ThemeState state = SpecialState();
        state.mode = mode;
        state.themeStyle = 1;
        state.customStyle = -5;
        QVERIFY(SaveThemeState(state));
        QCOMPARE(Stored(QStringLiteral("Config/Style")).toInt(), stored);
        const ThemeState loaded = LoadThemeState(InterfaceLanguage::Chinese);
        QCOMPARE(loaded.themeStyle, mode == 0 ? stored : 0);
        QCOMPARE(loaded.customStyle, mode == 0 ? 0 : stored);
    }

    // Or the panel would be sent the same theme again.
    void TheOtherPagesStyleMakesNoOtherScreen() {
        for (const int mode : {0, 1}) {
            ThemeState state = SpecialState();
            state.mode = mode;
            state.themeStyle = 0;
            state.customStyle = 0;
            ThemeState other = state;
            (mode == 0 ? other.customStyle : other.themeStyle) = 1;
            const auto screen = [](const ThemeState& themes) {
                return MakeScreenState(themes, FactorySlotTable(), 1, InterfaceLanguage::English);
            };
            QVERIFY(screen(other) == screen(state));
        }
    }

    void SavedUnderTheirKeys() {
        SaveThemeState(SpecialState());
        QCOMPARE(Stored(QStringLiteral("Config/Mode")).toInt(), 1);
        QCOMPARE(Stored(QStringLiteral("Config/ThemeID")).toInt(), 2);
        QCOMPARE(Stored(QStringLiteral("Config/Style")).toInt(), 1);
        QCOMPARE(Stored(QStringLiteral("Config/Hor")).toInt(), 1);
        for (int n = 0; n < kLayoutCount; ++n) {
            const LayoutRecord record = SpecialRecord(n);
            const auto value = [&](const char* key) {
                return Stored(kGroups[n] + QLatin1Char('/') + QLatin1String(key));
            };
            QCOMPARE(value("XPt").toInt(), record.xPt);
            QCOMPARE(value("YPt").toInt(), record.yPt);
            QCOMPARE(value("XZoom").toInt(), record.xZoom);
            QCOMPARE(value("YZoom").toInt(), record.yZoom);
            QCOMPARE(value("highlight").toInt(), record.highlight);
            QCOMPARE(value("StringPixmap").toString(), record.picture);
            QCOMPARE(value("StringD1").toString(), record.freeText);
            QCOMPARE(value("StringPixmapS").toString(), record.defaultPicture);
            QCOMPARE(value("Size").toInt(), record.sizeIndex);
            QCOMPARE(value("Color").toInt(), record.colorIndex);
            for (int item = 0; item < kLiveValueCount; ++item) {
                const auto itemValue = [&](const char* key) { return value(key + QByteArray::number(item)); };
                QCOMPARE(itemValue("Show_").toInt(), int(record.shown[size_t(item)]));
                QCOMPARE(itemValue("Show2_").toInt(), int(record.selected[size_t(item)]));
                QCOMPARE(itemValue("ShowRect_").toRect(), record.tile[size_t(item)]);
                QCOMPARE(itemValue("ShowStringRect_").toRect(), record.textRect[size_t(item)]);
                QCOMPARE(itemValue("String_").toString(), record.sample[size_t(item)]);
            }
        }
        QCOMPARE(QSettings(ConfigFilePath(), QSettings::IniFormat).allKeys().size(), 4 + 10 * (10 + 9 * 5));
    }

    void WhatIsMadeOfThePictureComesBack() {
        ThemeState saved = SpecialState();
        saved.layouts[1].dim = 100;
        saved.layouts[6].blur = 10;
        saved.layouts[9].dim = 70;
        saved.layouts[9].blur = 40;
        saved.layouts[3].accentFromPicture = true;
        SaveThemeState(saved);
        QCOMPARE(Stored(QStringLiteral("H2/Dim")).toInt(), 100);
        QCOMPARE(Stored(QStringLiteral("V3/Blur")).toInt(), 10);
        QCOMPARE(Stored(QStringLiteral("H4/AccentOfPicture")).toInt(), 1);
        const ThemeState loaded = LoadThemeState(InterfaceLanguage::Chinese);
        for (int n = 0; n < kLayoutCount; ++n) {
            QVERIFY2(loaded.layouts[size_t(n)] == saved.layouts[size_t(n)], qPrintable(kGroups[n]));
        }
    }

    // A file in which nobody chose it is what it always was, also after somebody chose it and went back.
    void NothingMadeOfThePictureLeavesNoKey() {
        const auto content = [] {
            QFile file(ConfigFilePath());
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        ThemeState state = SpecialState();
        SaveThemeState(state);
        const QByteArray before = content();
        QVERIFY(!before.contains("Dim") && !before.contains("Blur") && !before.contains("Accent"));
        state.layouts[0].dim = 20;
        state.layouts[3].accentFromPicture = true;
        state.layouts[8].blur = 20;
        SaveThemeState(state);
        QVERIFY(content() != before);
        SaveThemeState(SpecialState());
        QCOMPARE(content(), before);
    }

    void FactoryStateComesBackInEveryLanguage() {
        for (const InterfaceLanguage language : kLanguages) {
            SaveThemeState(FactoryThemeState(language));
            const ThemeState loaded = LoadThemeState(language);
            const ThemeState factory = FactoryThemeState(language);
            for (int n = 0; n < kLayoutCount; ++n) {
                QVERIFY2(loaded.layouts[size_t(n)] == factory.layouts[size_t(n)], qPrintable(kGroups[n]));
            }
        }
    }

    void AMissingGroupIsAsMade() {
        SaveThemeState(SpecialState());
        {
            QSettings file(ConfigFilePath(), QSettings::IniFormat);
            file.remove(QStringLiteral("V3"));
            file.remove(QStringLiteral("CUSTOM1"));
        }
        const ThemeState loaded = LoadThemeState(InterfaceLanguage::Chinese);
        const ThemeState factory = FactoryThemeState(InterfaceLanguage::Chinese);
        for (int n = 0; n < kLayoutCount; ++n) {
            const bool missing = kGroups[n] == QLatin1String("V3") || kGroups[n] == QLatin1String("CUSTOM1");
            QVERIFY2(loaded.layouts[size_t(n)] == (missing ? factory.layouts[size_t(n)] : SpecialRecord(n)),
                     qPrintable(kGroups[n]));
        }
    }

    void MissingKeysOfAGroupAreZero() {
        Store(QStringLiteral("H2/highlight"), 3);
        Store(QStringLiteral("H2/Show_3"), 1);
        const LayoutRecord record = LoadThemeState(InterfaceLanguage::Chinese).layouts[1];
        LayoutRecord expected;
        expected.highlight = 3;
        expected.shown[Time] = true;
        QVERIFY(record == expected);
        for (const QString& sample : record.sample) {
            QVERIFY(sample.isEmpty());
        }
    }

    void AFileWithoutOrientationIsLandscape() {
        Store(QStringLiteral("Config/Mode"), 1);
        Store(QStringLiteral("Config/ThemeID"), 3);
        const ThemeState state = LoadThemeState(InterfaceLanguage::Chinese);
        QCOMPARE(state.orientation, Orientation::Landscape);
        QCOMPARE(state.mode, 1);
        QCOMPARE(state.theme, 3);
        QCOMPARE(StyleInForce(state), 0);
    }

    void RussianPutsItsOwnSamplesOverTheFile() {
        SaveThemeState(SpecialState());
        const ThemeState loaded = LoadThemeState(InterfaceLanguage::Russian);
        for (int n = 0; n < kLayoutCount; ++n) {
            LayoutRecord expected = SpecialRecord(n);
            expected.sample[Date] = QStringLiteral("31.12.2019");
            expected.sample[CpuPower] = QStringLiteral("15Вт");
            QVERIFY2(loaded.layouts[size_t(n)] == expected, qPrintable(kGroups[n]));
        }
    }

    void OtherLanguagesKeepTheFilesSamples() {
        SaveThemeState(SpecialState());
        for (const InterfaceLanguage language : {InterfaceLanguage::Chinese, InterfaceLanguage::English}) {
            const ThemeState loaded = LoadThemeState(language);
            for (int n = 0; n < kLayoutCount; ++n) {
                QVERIFY(loaded.layouts[size_t(n)].sample == SpecialRecord(n).sample);
            }
        }
    }

    void Noise_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("value");
        const auto row = [](const char* name, const char* key, const QVariant& value) {
            QTest::newRow(name) << QString(QLatin1String(key)) << value;
        };
        row("theme beyond the last", "Config/ThemeID", 4);
        row("negative theme", "Config/ThemeID", -1);
        row("theme as a word", "Config/ThemeID", QStringLiteral("time"));
        row("orientation of a third kind", "Config/Hor", 2);
        row("negative orientation", "Config/Hor", -1);
        row("mode as a word", "Config/Mode", QStringLiteral("custom"));
        row("style too large for an integer", "Config/Style", QStringLiteral("99999999999999999999"));
        row("emphasis on no item", "H1/highlight", 9);
        row("negative emphasis", "H1/highlight", -4);
        row("size that is not there", "CUSTOM0/Size", 3);
        row("colour that is not there", "CUSTOM0/Color", 77);
        row("dimmed to less than nothing", "H1/Dim", 101);
        row("dimmed the other way", "H1/Dim", -10);
        row("accent from elsewhere", "H1/AccentOfPicture", 2);
        row("blurred by a word", "CUSTOM0/Blur", QStringLiteral("much"));
        row("offset beyond reason", "H1/XPt", 2000000000);
        row("zoom as a word", "H1/XZoom", QStringLiteral("wide"));
        row("rectangle as a word", "H1/ShowStringRect_0", QStringLiteral("everywhere"));
        row("rectangle with a negative size", "H1/ShowRect_0", QRect(10, 10, -30, -20));
        row("rectangle at the end of the world", "H1/ShowStringRect_0",
            QRect(std::numeric_limits<int>::max() - 5, 0, 3, 3));
        row("flag as a word", "H1/Show_0", QStringLiteral("yes"));
        row("sample as bytes", "H1/String_0", QByteArray("\x00\xFF\xFE", 3));
    }
    void Noise() {
        QFETCH(QString, key);
        QFETCH(QVariant, value);
        SaveThemeState(FactoryThemeState(InterfaceLanguage::Chinese));
        Store(key, value);
        const LogLines log;
        const ThemeState state = LoadThemeState(InterfaceLanguage::Chinese);
        QCOMPARE(state.theme, 0);
        QCOMPARE(state.orientation, Orientation::Landscape);
        const SlotTable table = FactorySlotTable();
        const ScreenState screen = MakeScreenState(state, table, 2, InterfaceLanguage::Chinese);
        QVERIFY(screen.layout.highlight >= 0 && screen.layout.highlight <= 8);
        QVERIFY(screen.layout.xPt >= -65535 && screen.layout.xPt <= 65535);
        QVERIFY(screen.layout.sizeIndex == 0 && screen.layout.colorIndex == 0);
        QVERIFY(screen.layout.dim == 0 && screen.layout.blur == 0 && !screen.layout.accentFromPicture);
        QVERIFY(state.layouts[8].blur == 0);
        QVERIFY(LogLines::Lines().size() <= 1);
    }

    void WhatMakesNoSenseComesBackFromTheFactory() {
        SaveThemeState(FactoryThemeState(InterfaceLanguage::Chinese));
        Store(QStringLiteral("H2/ShowStringRect_3"), QStringLiteral("garbage"));
        Store(QStringLiteral("H2/ShowRect_3"), QRect(10, 10, -30, -20));
        Store(QStringLiteral("H2/highlight"), 99);
        const LogLines log;
        const LayoutRecord scene = LoadThemeState(InterfaceLanguage::Chinese).layouts[1];
        const LayoutRecord factory =
            FactoryThemeLayout(Theme::Scene, Orientation::Landscape, InterfaceLanguage::Chinese);
        QCOMPARE(scene.textRect[Time], factory.textRect[Time]);
        QCOMPARE(scene.tile[Time], factory.tile[Time]);
        QCOMPARE(scene.highlight, factory.highlight);
    }

    void ATextOffTheCanvasComesBackToItsPlace_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("layout");
        QTest::addColumn<QRect>("rect");
        QTest::newRow("right of the landscape canvas")
            << QStringLiteral("H1/ShowStringRect_0") << 0 << QRect(320, 10, 40, 20);
        QTest::newRow("above it") << QStringLiteral("H1/ShowStringRect_0") << 0 << QRect(10, -30, 40, 20);
        QTest::newRow("right of the portrait canvas, though landscape would hold it")
            << QStringLiteral("V1/ShowStringRect_0") << 4 << QRect(170, 10, 40, 20);
        QTest::newRow("below the landscape canvas, though portrait would hold it")
            << QStringLiteral("H1/ShowStringRect_0") << 0 << QRect(10, 170, 40, 20);
    }
    void ATextOffTheCanvasComesBackToItsPlace() {
        QFETCH(QString, key);
        QFETCH(int, layout);
        QFETCH(QRect, rect);
        const ThemeState factory = FactoryThemeState(InterfaceLanguage::Chinese);
        SaveThemeState(factory);
        Store(key, rect);
        const ThemeState state = LoadThemeState(InterfaceLanguage::Chinese);
        QCOMPARE(state.layouts[size_t(layout)].textRect[0], factory.layouts[size_t(layout)].textRect[0]);
    }

    void ATextPartlyOnTheCanvasStaysWhereItWasPut() {
        SaveThemeState(FactoryThemeState(InterfaceLanguage::Chinese));
        const QRect put(300, 160, 40, 30);
        Store(QStringLiteral("H1/ShowStringRect_0"), put);
        QCOMPARE(LoadThemeState(InterfaceLanguage::Chinese).layouts[0].textRect[0], put);
    }

    void PlacedItemsGetTheirFlag() {
        ThemeState state = FactoryThemeState(InterfaceLanguage::Chinese);
        LayoutRecord& five = state.layouts[8];
        LayoutRecord& one = state.layouts[9];
        five.shown.fill(false);
        five.shown[Date] = true;  // shares the time's slot, keeps its flag
        one.selected.fill(false);
        TickPlacedItems(state,
                        {{{Time, OtherText, FanSpeed, 42, -9}, {CpuPower, -1, CpuUsage, OtherText2, Time}}});
        for (int item = 0; item < kLiveValueCount; ++item) {
            QCOMPARE(five.shown[size_t(item)], item == Time || item == FanSpeed || item == Date);
            QVERIFY(!five.selected[size_t(item)]);
            QCOMPARE(one.selected[size_t(item)], item == CpuUsage);
            QVERIFY(!one.shown[size_t(item)]);
        }
        QVERIFY(state.layouts[0] == FactoryThemeState(InterfaceLanguage::Chinese).layouts[0]);
    }

    void ScreenForModeStyleAndOrientation_data() {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("style");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<bool>("custom");
        QTest::addColumn<int>("layout");
        constexpr auto landscape = Orientation::Landscape;
        constexpr auto portrait = Orientation::Portrait;
        QTest::newRow("theme, landscape") << 0 << 0 << landscape << false << 2;
        QTest::newRow("theme, portrait") << 0 << 0 << portrait << false << 6;
        QTest::newRow("theme, style 1") << 0 << 1 << landscape << false << 2;
        QTest::newRow("custom layout 0") << 1 << 0 << landscape << true << 8;
        QTest::newRow("custom layout 0, portrait") << 1 << 0 << portrait << true << 8;
        QTest::newRow("custom layout 1") << 1 << 1 << landscape << true << 9;
        QTest::newRow("any other style is custom layout 1") << 1 << 7 << portrait << true << 9;
        QTest::newRow("negative style too") << 1 << -1 << portrait << true << 9;
        QTest::newRow("any other mode is the custom page") << 5 << 0 << landscape << true << 8;
    }
    void ScreenForModeStyleAndOrientation() {
        QFETCH(int, mode);
        QFETCH(int, style);
        QFETCH(Orientation, orientation);
        QFETCH(bool, custom);
        QFETCH(int, layout);
        ThemeState state = SpecialState();
        state.mode = mode;
        SetStyleInForce(state, style);
        state.orientation = orientation;
        const SlotTable table = FactorySlotTable();
        const ScreenState screen = MakeScreenState(state, table, 1, InterfaceLanguage::English);
        QCOMPARE(screen.layout, state.layouts[size_t(LayoutIndexInForce(state))]);
        QCOMPARE(screen.custom, custom);
        QCOMPARE(screen.orientation, orientation);
        QCOMPARE(screen.language, InterfaceLanguage::English);
        QVERIFY(screen.layout == SpecialRecord(layout));
        // Of the other page it says nothing.
        const ScreenState plain;
        QCOMPARE(screen.variant, custom ? layout - 8 : plain.variant);
        QVERIFY(screen.slotItems == (custom ? table[size_t(layout - 8)] : plain.slotItems));
        QCOMPARE(screen.textRow, custom ? 1 : plain.textRow);
        QCOMPARE(screen.theme, custom ? plain.theme : Theme::Tdp);
        QCOMPARE(screen.style, custom ? plain.style : style);
    }

    void PictureOfALayout() {
        ScreenState screen = ThemeScreen(Theme::Time, Orientation::Landscape);
        screen.layout.picture = QStringLiteral("own.png");
        screen.layout.defaultPicture = QStringLiteral("://background/7.jpg");
        QCOMPARE(PicturePath(screen), QStringLiteral("own.png"));
        screen.layout.picture.clear();
        QCOMPARE(PicturePath(screen), QStringLiteral("://background/7.jpg"));
        screen.layout.defaultPicture.clear();
        QCOMPARE(PicturePath(screen), DefaultBackground());
    }

    void DisplayNamesInThreeLanguages() {
        const ItemTexts chinese{
            QStringLiteral("CPU温度"),  QStringLiteral("CPU使用率"), QStringLiteral("内存使用率"),
            QStringLiteral("时间"),     QStringLiteral("功耗"),      QStringLiteral("日期"),
            QStringLiteral("风扇转速"), QStringLiteral("其他"),      QStringLiteral("其他")};
        QVERIFY(CaptionsIn(InterfaceLanguage::Chinese) == chinese);
        QVERIFY(ItemCaptions() == chinese);  // without a translation the source texts show
        for (const InterfaceLanguage language : {InterfaceLanguage::English, InterfaceLanguage::Russian}) {
            const ItemTexts& captions = CaptionsIn(language);
            for (size_t item = 0; item < captions.size(); ++item) {
                QVERIFY2(!captions[item].isEmpty() && captions[item] != chinese[item],
                         qPrintable(captions[item]));
            }
            QCOMPARE(captions[OtherText], captions[OtherText2]);
        }
        QCOMPARE(CaptionsIn(InterfaceLanguage::English)[CpuTemperature], QStringLiteral("CPU Temp"));
        QCOMPARE(CaptionsIn(InterfaceLanguage::Russian)[CpuPower], QStringLiteral("Мощн."));
    }
};

KIVO_GUILESS_TEST(TestThemeState)
#include "tst_theme_state.moc"
