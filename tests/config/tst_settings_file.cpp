#include <QTemporaryDir>
#include <QtTest>

#include <limits>

#include "config/settings_file.h"
#include "file_maker.h"
#include "log_catcher.h"
#include "support/test_program.h"

using namespace kivo;
using kivo::test::LogCatcher;

class TestSettingsFile : public QObject, private kivo::test::FileMaker {
    Q_OBJECT

private slots:
    void withoutAFileEveryKeyHasItsDefault() {
        const SettingsReader reader(NewPath());
        for (const NamedSetting& named : AllSettings()) {
            QVERIFY(!reader.Contains(named.key));
            QCOMPARE(reader.Int(named.key, named.setting), named.setting.defaultInt);
            QCOMPARE(reader.Text(named.key), QString());
            QCOMPARE(reader.Rect(named.key), QRect());
        }
        for (const QString& group : ThemeGroups()) {
            QVERIFY(!reader.HasGroup(group));
        }
        QCOMPARE(reader.Int(keys::kCurRectId), 2);
        QCOMPARE(reader.Int(CustomShowKey(1, 4), keys::kCustomShow), -1);
    }

    void readingMakesNoFile() {
        const QString path = NewPath();
        { SettingsReader(path).Int(keys::kMode); }
        QVERIFY(!QFileInfo::exists(path));
    }

    void anOptionalKeyStandsThereOnlyWithAValueOfItsOwn() {
        const QString path = NewPath();
        const QString key = GroupKey(QStringLiteral("H1"), keys::kDim);
        SettingsWriter(path).SetInt(QStringLiteral("H1/XPt"), 1);
        const auto content = [&path] {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        };
        const QByteArray before = content();
        QVERIFY(!before.isEmpty());
        SettingsWriter(path).SetOptionalInt(key, keys::kDim, 30);
        QCOMPARE(SettingsReader(path).Int(key, keys::kDim), 30);
        SettingsWriter(path).SetOptionalInt(key, keys::kDim, 0);
        QVERIFY(!SettingsReader(path).Contains(key));
        QCOMPARE(content(), before);
    }

    void integersAreReadByTheirRow_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<int>("row");  // Config/CurRectID: default 2, range 0 to 2.
        const auto row = [](const char* name, const char* line, int value) {
            QTest::newRow(name) << QByteArray(line) << value;
        };
        row("in range", "CurRectID=1", 1);
        row("blanks around", "CurRectID =  1  ", 1);
        row("quoted", "CurRectID=\"1\"", 1);
        row("out of range", "CurRectID=3", 2);
        row("negative", "CurRectID=-1", 2);
        row("a word converts to zero", "CurRectID=two", 0);
        row("a fraction converts to zero", "CurRectID=1.5", 0);
        row("empty converts to zero", "CurRectID=", 0);
        row("more than an integer holds", "CurRectID=99999999999", 2);
        row("more, and 1 if it wrapped around", "CurRectID=4294967297", 2);
        row("more than any integer holds", "CurRectID=99999999999999999999", 0);
        row("a list", "CurRectID=1, 2", 0);
        row("a rectangle", "CurRectID=@Rect(1 1 1 1)", 0);
        row("no value, as Qt writes it down", "CurRectID=@Invalid()", 2);
        row("another group's key", "[Else]\nCurRectID=1", 2);
        row("the last of two", "CurRectID=0\nCurRectID=1", 1);
        row("Windows line ends", "CurRectID=1\r\n", 1);
        row("a comment", ";CurRectID=1\n", 2);
    }
    void integersAreReadByTheirRow() {
        QFETCH(QByteArray, line);
        const QString path = FileWith("[Config]\n" + line);
        const LogCatcher log;
        QTEST(SettingsReader(path).Int(keys::kCurRectId), "row");
    }

    void aSlotThatIsNoNumberIsEmptyAndAStrangeOneIsKept() {
        const QString path = FileWith("[CustomShow]\n0-0=none\n0-1=77\n0-2=-9\n");
        const LogCatcher log;
        const SettingsReader reader(path);
        QCOMPARE(reader.Int(CustomShowKey(0, 0), keys::kCustomShow), -1);
        QCOMPARE(reader.Int(CustomShowKey(0, 1), keys::kCustomShow), 77);
        QCOMPARE(reader.Int(CustomShowKey(0, 2), keys::kCustomShow), -9);
    }

    void plainIntegersTakeTheirDefaultWhenAbsentOrTooLarge() {
        const QString path = FileWith("[Config]\na=12345678\nb=x\nd=4294967297\n");
        const LogCatcher log;
        const SettingsReader reader(path);
        QCOMPARE(reader.Int(QStringLiteral("Config/a"), 5), 12345678);
        QCOMPARE(reader.Int(QStringLiteral("Config/b"), 5), 0);
        QCOMPARE(reader.Int(QStringLiteral("Config/c"), 5), 5);
        QCOMPARE(reader.Int(QStringLiteral("Config/d"), 5), 5);
    }

    void rectangles_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QRect>("rect");
        const QRect fallback(9, 9, 9, 9);
        QTest::newRow("a good one") << QByteArray("@Rect(1 2 30 40)") << QRect(1, 2, 30, 40);
        QTest::newRow("left of the screen") << QByteArray("@Rect(-5 -6 30 40)") << QRect(-5, -6, 30, 40);
        QTest::newRow("empty") << QByteArray("@Rect(0 0 0 0)") << QRect();
        QTest::newRow("two numbers") << QByteArray("@Rect(1 2)") << fallback;
        QTest::newRow("five numbers") << QByteArray("@Rect(1 2 3 4 5)") << fallback;
        QTest::newRow("words") << QByteArray("@Rect(a b c d)") << QRect();
        QTest::newRow("a point") << QByteArray("@Point(1 2)") << fallback;
        QTest::newRow("negative size") << QByteArray("@Rect(10 10 -5 4)") << fallback;
        QTest::newRow("edges beyond every integer")
            << QByteArray("@Rect(2147483647 0 2147483647 1)") << fallback;
        QTest::newRow("far away") << QByteArray("@Rect(1000000 0 5 5)") << fallback;
        QTest::newRow("too wide") << QByteArray("@Rect(0 0 70000 5)") << fallback;
        QTest::newRow("a number") << QByteArray("7") << fallback;
        QTest::newRow("a text") << QByteArray("1 2 3 4") << fallback;
        QTest::newRow("no value, as Qt writes it down") << QByteArray("@Invalid()") << fallback;
    }
    void rectangles() {
        QFETCH(QByteArray, value);
        QFETCH(QRect, rect);
        const QString path = FileWith("[H1]\nShowRect_0=" + value + "\n");
        const LogCatcher log;
        const SettingsReader reader(path);
        QCOMPARE(reader.Rect(QStringLiteral("H1/ShowRect_0"), QRect(9, 9, 9, 9)), rect);
    }

    void texts_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << QByteArray("abc") << QStringLiteral("abc");
        QTest::newRow("a number is a text too") << QByteArray("45") << QStringLiteral("45");
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("escaped Chinese") << QByteArray("\\x4e2d\\x6587") << QStringLiteral(u"\u4e2d\u6587");
        QTest::newRow("an escaped at sign") << QByteArray("@@Invalid()") << QStringLiteral("@Invalid()");
        QTest::newRow("a bare comma has no one right text") << QByteArray("a, b") << QStringLiteral("none");
        QTest::newRow("a quoted comma") << QByteArray("\"a, b\"") << QStringLiteral("a, b");
        QTest::newRow("a rectangle is no text") << QByteArray("@Rect(1 2 3 4)") << QStringLiteral("none");
        QTest::newRow("half a rectangle is one") << QByteArray("@Rect(1 2)") << QStringLiteral("@Rect(1 2)");
        QTest::newRow("no value, as Qt writes it down") << QByteArray("@Invalid()") << QStringLiteral("none");
        QTest::newRow("longer than any path") << QByteArray(40000, 'x') << QStringLiteral("none");
        QTest::newRow("a broken stored object")
            << QByteArray("@Variant(\\0\\0\\0\\f\\x7f\\xff\\xff\\xf0zz)") << QStringLiteral("none");
    }
    void texts() {
        QFETCH(QByteArray, value);
        const QString path = FileWith("[H1]\nString_0=" + value + "\n");
        const LogCatcher log;
        const SettingsReader reader(path);
        QTEST(reader.Text(QStringLiteral("H1/String_0"), QStringLiteral("none")), "text");
    }

    void whatIsWrittenIsReadBack_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("Chinese") << QStringLiteral(u"\u70b9\u51fb\u8f93\u5165");
        QTest::newRow("Cyrillic and degree") << QStringLiteral(u"15\u0412\u0442 45\u2103");
        QTest::newRow("beyond the basic plane") << QStringLiteral(u"\U0001F600\U00020000");
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
        // Half a character, which only a Windows path may hold; UTF-8, in which Qt 6 writes, has none.
        QTest::newRow("a lone surrogate") << QString(QChar(0xD800));
#endif
        QTest::newRow("a zero character") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
        QTest::newRow("looks like no value") << QStringLiteral("@Invalid()");
        QTest::newRow("looks like a rectangle") << QStringLiteral("@Rect(1 2 3 4)");
        QTest::newRow("looks like a section") << QStringLiteral("[H1]\nXPt=5");
        QTest::newRow("commas, quotes, semicolons") << QStringLiteral("a, \"b\"; c=d \\ %");
        QTest::newRow("a Windows path") << QStringLiteral("C:\\Users\\x, y\\new.png");
        QTest::newRow("blanks at both ends") << QStringLiteral("  a  ");
        QTest::newRow("line ends and tabs") << QStringLiteral("a\r\nb\tc");
    }
    void whatIsWrittenIsReadBack() {
        QFETCH(QString, text);
        const QString path = NewPath();
        {
            SettingsWriter writer(path);
            writer.SetText(QStringLiteral("H1/StringD1"), text);
            writer.SetInt(QStringLiteral("H1/XPt"), std::numeric_limits<int>::min());
            writer.SetRect(QStringLiteral("H1/ShowRect_0"), QRect(-1, 2, 3, 4));
        }
        // Moved, so that nothing can come out of a memory of what was written.
        const QString moved = NewPath();
        QVERIFY(QFile::rename(path, moved));
        const LogCatcher log;
        const SettingsReader reader(moved);
        QCOMPARE(reader.Text(QStringLiteral("H1/StringD1"), QStringLiteral("none")), text);
        QCOMPARE(reader.Int(QStringLiteral("H1/XPt")), std::numeric_limits<int>::min());
        QCOMPARE(reader.Rect(QStringLiteral("H1/ShowRect_0")), QRect(-1, 2, 3, 4));
        QCOMPARE(log.lines(), QStringList());
    }

    void groupsAndKeysAreFound() {
        const QString path = FileWith("[H1]\nXPt=1\n[CUSTOM0]\nShow_3=1\n");
        const SettingsReader reader(path);
        QVERIFY(reader.HasGroup(QStringLiteral("H1")));
        QVERIFY(reader.HasGroup(QStringLiteral("CUSTOM0")));
        QVERIFY(!reader.HasGroup(QStringLiteral("H2")));
        QVERIFY(!reader.HasGroup(QStringLiteral("XPt")));
        QVERIFY(reader.Contains(QStringLiteral("H1/XPt")));
        QVERIFY(!reader.Contains(QStringLiteral("H1/YPt")));
        QVERIFY(!reader.Contains(QStringLiteral("H1")));
    }

    void aGroupIsRemovedWhole() {
        const QString path = FileWith("[ImageList]\nCount=2\n0=a\n1=b\n[H1]\nXPt=1\n");
        {
            SettingsWriter writer(path);
            writer.Remove(QStringLiteral("ImageList"));
            writer.SetInt(keys::kImageCount.name, 1);
            writer.SetText(ImageKey(0), QStringLiteral("c"));
        }
        const SettingsReader reader(path);
        QCOMPARE(reader.Int(keys::kImageCount), 1);
        QCOMPARE(reader.Text(ImageKey(0)), QStringLiteral("c"));
        QVERIFY(!reader.Contains(ImageKey(1)));
        QCOMPARE(reader.Int(QStringLiteral("H1/XPt")), 1);
    }

    void writersSeeEachOthersValues() {
        const QString path = NewPath();
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        SettingsWriter(path).SetInt(keys::kHor.name, 1);
        const SettingsReader reader(path);
        QCOMPARE(reader.Int(keys::kMode), 1);
        QCOMPARE(reader.Int(keys::kHor), 1);
    }

    void aCommittedValueIsOnDiskBeforeTheWriterGoes() {
        const QString path = NewPath();
        SettingsWriter writer(path);
        QVERIFY(writer.Commit());
        QVERIFY(!QFileInfo::exists(path));
        writer.SetInt(keys::kMode.name, 1);
        QVERIFY(writer.Commit());
        QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
    }

    void anIntegerReadAsTextIsItsDigits() {
        const QString path = NewPath();
        SettingsWriter(path).SetInt(QStringLiteral("H1/String_0"), 45);
        QCOMPARE(SettingsReader(path).Text(QStringLiteral("H1/String_0")), QStringLiteral("45"));
    }

    void unusableValuesAreCountedInOneLine() {
        const QString path = FileWith("[Config]\nMode=x\nHor=9\nThemeID=1\n[H1]\nShowRect_0=7\n");
        const LogCatcher log;
        for (int i = 0; i < 3; ++i) {
            const SettingsReader reader(path);
            reader.Int(keys::kThemeId);
            reader.Int(keys::kMode);
            reader.Int(keys::kHor);
            reader.Rect(QStringLiteral("H1/ShowRect_0"));
        }
        QCOMPARE(log.lines().size(), 1);
        QVERIFY2(log.lines().first().contains(QStringLiteral("3 value(s)")), qPrintable(log.lines().first()));
        QVERIFY(log.lines().first().contains(QStringLiteral("Config/Mode")));
    }

    void pathsMayHoldAnyLetters() {
        const QString folder =
            m_dir.filePath(QStringLiteral(u"\u4e2d\u6587 \u0412\u0442 \U0001F600/a b/\u00e9"));
        QVERIFY(QDir().mkpath(folder));
        const QString path = folder + QStringLiteral("/Config.ini");
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
        QVERIFY(QFileInfo(path).isFile());
    }
};

KIVO_GUILESS_TEST(TestSettingsFile)
#include "tst_settings_file.moc"
