#include <QTemporaryDir>
#include <QtTest>

#include "config/ascii_ini.h"
#include "config/settings_file.h"
#include "config/settings_guard.h"
#include "file_maker.h"
#include "log_catcher.h"
#include "support/test_program.h"

using namespace kivo;
using kivo::test::LogCatcher;

namespace {

// Lines end here as they do on Linux; QSettings ends them as the system does.
QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Text) ? file.readAll() : QByteArray("not there");
}

// A text, and the line's value that every Qt's program makes of it.
void EachText() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("value");
    const auto row = [](const char* name, const QString& text, const char* value) {
        QTest::newRow(name) << text << QByteArray(value);
    };
    row("ASCII", QStringLiteral("a~z 09"), "a~z 09");
    row("Chinese", QStringLiteral(u"\u70b9\u51fb\u8f93\u5165"), R"(\x70b9\x51fb\x8f93\x5165)");
    row("Cyrillic", QStringLiteral(u"\u0412\u0442 \u0451"), R"(\x412\x442 \x451)");
    row("Latin-1", QStringLiteral(u"caf\u00e9 45\u00b0"), R"(caf\xe9 45\xb0)");
    row("a digit after a letter", QStringLiteral(u"\u21033 g"), R"(\x2103\x33 g)");
    row("digits after a letter", QStringLiteral(u"\u4e2dBad1g1"), R"(\x4e2d\x42\x61\x64\x31g1)");
    row("a zero and a digit", QStringLiteral(u"\u4e2d") + QChar(0) + QStringLiteral("1"),
        R"(@String(\x4e2d\0\x31))");
    row("beyond the basic plane", QStringLiteral(u"\U0001F600\U00020000!"), R"(\xd83d\xde00\xd840\xdc00!)");
    row("control characters", QStringLiteral(u"\u0001\u001f\u007f\u0080"), R"(\x1\x1f\x7f\x80)");
    row("those with letters of their own", QStringLiteral("\a\b\f\n\r\t\v\"\\"), R"(\a\b\f\n\r\t\v\"\\)");
    row("a byte order mark", QStringLiteral(u"\ufeff\uffff"), R"(\xfeff\xffff)");
    row("quoted", QStringLiteral(u"\u4e2d, \u6587; =%"), R"("\x4e2d, \x6587; =%")");
    row("blanks at both ends", QStringLiteral(u" \u4e2d "), R"(" \x4e2d ")");
    row("an at sign", QStringLiteral(u"@\u4e2d"), R"(@@\x4e2d)");
    row("a Windows path", QStringLiteral(u"C:\\\u041c\u043e\u0438\\\u56fe.png"),
        R"(C:\\\x41c\x43e\x438\\\x56fe.png)");
}

}  // namespace

// What the program of one Qt has written, the program of the other one reads, and both write the same.
class TestAsciiIni : public QObject, private kivo::test::FileMaker {
    Q_OBJECT

private slots:
    void everyQtWritesTheSame_data() { EachText(); }
    void everyQtWritesTheSame() {
        QFETCH(QString, text);
        QFETCH(QByteArray, value);
        const QString path = NewPath();
        {
            SettingsWriter writer(path);
            writer.SetText(QStringLiteral("H1/StringD1"), text);
            writer.SetText(ImageNameKey(QStringLiteral(u"/\u56fe/\u0451 \U0001F600.png")), text);
        }
        QCOMPARE(Content(path), "[H1]\nStringD1=" + value +
                                    "\n\n[ImageNames]\n%U56FE\\%U0451%20%UD83D%UDE00.png=" + value + '\n');
        QVERIFY(IsWellFormedIni(Content(path)));
    }

    void everyQtReadsIt_data() { EachText(); }
    void everyQtReadsIt() {
        QFETCH(QString, text);
        QFETCH(QByteArray, value);
        const QString path =
            FileWith("[H1]\nStringD1=" + value + "\n\n[ImageNames]\n%U56FE\\%U0451.png=" + value + '\n');
        const LogCatcher log;
        const SettingsReader reader(path);
        QCOMPARE(reader.Text(QStringLiteral("H1/StringD1"), QStringLiteral("none")), text);
        QCOMPARE(reader.Text(QStringLiteral(u"ImageNames/\u56fe/\u0451.png"), QStringLiteral("none")), text);
        QCOMPARE(log.lines(), QStringList());
    }

    void numbersAndRectanglesToo() {
        const QString path = NewPath();
        {
            SettingsWriter writer(path);
            // In the order of the alphabet: Windows keeps the order of writing.
            writer.SetRect(QStringLiteral("H1/ShowRect_0"), QRect(-1, 2, 30, 40));
            writer.SetText(QStringLiteral("H1/String_0"), QString());
            writer.SetInt(QStringLiteral("H1/XPt"), -2147483647);
            writer.SetText(QStringLiteral("test/test"), QStringLiteral("@Rect(1 2 3 4)"));
        }
        QCOMPARE(Content(path), QByteArray("[H1]\nShowRect_0=@Rect(-1 2 30 40)\nString_0=\nXPt=-2147483647\n"
                                           "\n[test]\ntest=@@Rect(1 2 3 4)\n"));
    }

    // As Qt 6 leaves the file before it is made ASCII: every byte of a text is as it is, and so is a digit
    // after it.
    void textsAsTheyAreAreEscaped_data() {
        QTest::addColumn<QByteArray>("raw");
        QTest::addColumn<QByteArray>("ascii");
        QTest::newRow("nothing") << QByteArray() << QByteArray();
        QTest::newRow("ASCII") << QByteArray("[H1]\na=\\x4e2d\\x31\n")
                               << QByteArray("[H1]\na=\\x4e2d\\x31\n");
        QTest::newRow("letters") << QByteArray("a=\xe4\xb8\xad\xd0\x92\xc2\xb0\n")
                                 << QByteArray("a=\\x4e2d\\x412\\xb0\n");
        QTest::newRow("digits after one") << QByteArray(
                                                 "a=\xe4\xb8\xad"
                                                 "1f g1\n")
                                          << QByteArray("a=\\x4e2d\\x31\\x66 g1\n");
        QTest::newRow("an escape after one")
            << QByteArray("a=\xe4\xb8\xad\\x1b\n") << QByteArray("a=\\x4e2d\\x1b\n");
        QTest::newRow("beyond the basic plane") << QByteArray(
                                                       "a=\xf0\x9f\x98\x80"
                                                       "f\n")
                                                << QByteArray("a=\\xd83d\\xde00\\x66\n");
        QTest::newRow("a deletion") << QByteArray(
                                           "a=\x7f"
                                           "7\n")
                                    << QByteArray("a=\\x7f\\x37\n");
        QTest::newRow("quoted, at the end")
            << QByteArray("a=\"\xe4\xb8\xad\"") << QByteArray("a=\"\\x4e2d\"");
    }
    void textsAsTheyAreAreEscaped() {
        QFETCH(QByteArray, raw);
        QFETCH(QByteArray, ascii);
        QCOMPARE(AsciiIni(raw), ascii);
        const QString path = FileWith(raw);
        QCOMPARE(MakeIniAscii(path), QString());
        QCOMPARE(Content(path), ascii);
    }

    void anAsciiFileIsLeftAlone() {
        const QString path = FileWith("[H1]\nXPt=1\n");
        QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner));
        const QDateTime before = QFileInfo(path).lastModified();
        QCOMPARE(MakeIniAscii(path), QString());
        QCOMPARE(QFileInfo(path).lastModified(), before);
        QCOMPARE(QFileInfo(path).permissions() & QFileDevice::WriteOwner, QFileDevice::Permissions());
    }

    void aFileThatIsGoneIsTrouble() { QVERIFY(!MakeIniAscii(NewPath()).isEmpty()); }

    // The file is another one than QSettings wrote; the program's later accesses go on with it.
    void accessesGoOnAfterwards() {
        const QString path = NewPath();
        const QString text = QStringLiteral(u"\u4e2d\u6587");
        SettingsWriter first(path);
        first.SetText(QStringLiteral("H1/StringD1"), text);
        QVERIFY(first.Commit());
        QCOMPARE(SettingsReader(path).Text(QStringLiteral("H1/StringD1")), text);
        first.SetInt(QStringLiteral("H1/XPt"), 1);
        SettingsWriter(path).SetInt(QStringLiteral("H1/YPt"), 2);
        QVERIFY(first.Commit());
        QCOMPARE(Content(path), QByteArray("[H1]\nStringD1=\\x4e2d\\x6587\nXPt=1\nYPt=2\n"));
    }
};

KIVO_GUILESS_TEST(TestAsciiIni)
#include "tst_ascii_ini.moc"
