#include <QSet>
#include <QtTest>

#include "config/setting_keys.h"
#include "support/test_program.h"

using namespace kivo;

class TestSettingKeys : public QObject {
    Q_OBJECT

private slots:
    void groupsStandInFileOrder() {
        const QStringList expected{QStringLiteral("H1"),     QStringLiteral("H2"), QStringLiteral("H3"),
                                   QStringLiteral("H4"),     QStringLiteral("V1"), QStringLiteral("V2"),
                                   QStringLiteral("V3"),     QStringLiteral("V4"), QStringLiteral("CUSTOM0"),
                                   QStringLiteral("CUSTOM1")};
        QCOMPARE(ThemeGroups(), expected);
        QCOMPARE(ThemeGroups().size(), kThemeGroupCount);
    }

    void namesArePutTogether() {
        QCOMPARE(GroupKey(QStringLiteral("H1"), keys::kXPt), QStringLiteral("H1/XPt"));
        QCOMPARE(GroupKey(QStringLiteral("CUSTOM1"), keys::kStringPixmapS),
                 QStringLiteral("CUSTOM1/StringPixmapS"));
        QCOMPARE(ItemKey(QStringLiteral("V4"), keys::kShow, 0), QStringLiteral("V4/Show_0"));
        QCOMPARE(ItemKey(QStringLiteral("V4"), keys::kShowStringRect, 8),
                 QStringLiteral("V4/ShowStringRect_8"));
        QCOMPARE(ImageKey(0), QStringLiteral("ImageList/0"));
        QCOMPARE(ImageKey(123), QStringLiteral("ImageList/123"));
        QCOMPARE(ImageNameKey(QStringLiteral("C:/a.png")), QStringLiteral("ImageNames/C:/a.png"));
        QCOMPARE(CustomShowKey(0, 0), QStringLiteral("CustomShow/0-0"));
        QCOMPARE(CustomShowKey(1, 4), QStringLiteral("CustomShow/1-4"));
    }

    void defaultsAndKinds_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("defaultInt");
        const auto row = [](const char* key, SettingType type, int defaultInt) {
            QTest::newRow(key) << QString::fromLatin1(key) << static_cast<int>(type) << defaultInt;
        };
        row("Config/Mode", SettingType::Int, 0);
        row("Config/ThemeID", SettingType::Int, 0);
        row("Config/Style", SettingType::Int, 0);
        row("Config/Hor", SettingType::Int, 0);
        row("Config/CurRectID", SettingType::Int, 2);
        row("Config/LangID", SettingType::Int, 0);
        row("Config/UUid", SettingType::Text, 0);
        row("test/test", SettingType::Text, 0);
        for (const char* key : {"Away/DarkAtLock", "Away/LitAtSleep", "Away/DarkAtScreenSaver",
                                "Away/DarkAtExit", "Away/NightLight"}) {
            row(key, SettingType::Int, 0);
        }
        row("Away/NightFrom", SettingType::Int, 1320);
        row("Away/NightTo", SettingType::Int, 420);
        row("ImageList/Count", SettingType::Int, 0);
        row("ImageList/0", SettingType::Text, 0);
        row("ImageNames/C:/a.png", SettingType::Text, 0);
        for (const char* key :
             {"CustomShow/0-0", "CustomShow/0-1", "CustomShow/0-2", "CustomShow/0-3", "CustomShow/0-4",
              "CustomShow/1-0", "CustomShow/1-1", "CustomShow/1-2", "CustomShow/1-3", "CustomShow/1-4"}) {
            row(key, SettingType::Int, -1);
        }
        for (const char* key : {"H1/XPt", "H1/YPt", "H1/XZoom", "H1/YZoom", "H1/highlight", "CUSTOM0/Size",
                                "CUSTOM0/Color", "H4/Dim", "CUSTOM1/Blur", "V1/AccentOfPicture", "V4/Show_0",
                                "V4/Show_8", "V4/Show2_0", "V4/Show2_8"}) {
            row(key, SettingType::Int, 0);
        }
        for (const char* key :
             {"H2/StringPixmap", "H2/StringD1", "H2/StringPixmapS", "CUSTOM1/String_0", "CUSTOM1/String_8"}) {
            row(key, SettingType::Text, 0);
        }
        for (const char* key :
             {"H3/ShowRect_0", "H3/ShowRect_8", "H3/ShowStringRect_0", "H3/ShowStringRect_8"}) {
            row(key, SettingType::Rect, 0);
        }
    }
    void defaultsAndKinds() {
        QFETCH(QString, key);
        for (const NamedSetting& named : AllSettings()) {
            if (named.key == key) {
                QTEST(static_cast<int>(named.setting.type), "type");
                QTEST(named.setting.defaultInt, "defaultInt");
                return;
            }
        }
        QFAIL("the table does not know this key");
    }

    void theVocabularyIsCompleteAndFreeOfDoubles() {
        QSet<QString> seen;
        for (const NamedSetting& named : AllSettings()) {
            QVERIFY2(!seen.contains(named.key), qPrintable(named.key));
            seen.insert(named.key);
        }
        // 9 single keys, 7 of darkness, one picture and its name, ten slots, and per group thirteen keys and
        // five for each of nine items.
        QCOMPARE(seen.size(), 9 + 7 + 2 + 10 + 10 * (13 + 9 * 5));
    }

    // What is missing has its default; the key of a number that is taken out must mean the same.
    void optionalKeysAreNumbersThatMeanNothingWhereTheyAreMissing() {
        QStringList optional;
        for (const NamedSetting& named : AllSettings()) {
            if (named.setting.isOptional) {
                QCOMPARE(named.setting.type, SettingType::Int);
                QCOMPARE(named.setting.defaultInt, 0);
                optional.append(named.key);
            }
        }
        QVERIFY(optional.contains(QStringLiteral("H1/Dim")));
        QVERIFY(optional.contains(QStringLiteral("CUSTOM1/Blur")));
        QVERIFY(optional.contains(QStringLiteral("H3/AccentOfPicture")));
        QVERIFY(!optional.contains(QStringLiteral("H1/XPt")));
    }

    void everyDefaultIsInsideItsRange() {
        for (const NamedSetting& named : AllSettings()) {
            const SettingKey& setting = named.setting;
            const bool inside =
                setting.defaultInt >= setting.minimum && setting.defaultInt <= setting.maximum &&
                setting.notANumber >= setting.minimum && setting.notANumber <= setting.maximum;
            QVERIFY2(inside, qPrintable(named.key));
        }
    }
};

KIVO_APPLESS_TEST(TestSettingKeys)
#include "tst_setting_keys.moc"
