#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include "config/settings_file.h"
#include "config/settings_guard.h"
#include "file_maker.h"
#include "log_catcher.h"
#include "support/test_program.h"

using namespace kivo;
using kivo::test::LogCatcher;

namespace {

QByteArray RandomBytes(quint32 seed, int size) {
    QRandomGenerator random(seed);
    QByteArray bytes(size, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random.bounded(256));
    }
    return bytes;
}

QByteArray RandomText(quint32 seed, int size) {
    static const QByteArray letters("[]=\"\\;@()%,/ \t\n\r\nabcx01-9\xE4\xFF");
    QRandomGenerator random(seed);
    QByteArray bytes(size, '\0');
    for (char& byte : bytes) {
        byte = letters[random.bounded(letters.size())];
    }
    return bytes;
}

QByteArray Content(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no such file>");
}

QString KeptPath(const QString& path) {
    return path + QStringLiteral(".broken");
}

}  // namespace

// Whatever stands in the file: reading gives values in range, and a write goes through without losing it.
class TestSettingsNoise : public QObject, private kivo::test::FileMaker {
    Q_OBJECT

private:
    // A file as the program writes it, every key filled.
    QByteArray GoodFile() {
        const QString path = NewPath();
        {
            SettingsWriter writer(path);
            for (const NamedSetting& named : AllSettings()) {
                switch (named.setting.type) {
                    case SettingType::Int:
                        writer.SetInt(named.key, 1);
                        break;
                    case SettingType::Text:
                        writer.SetText(named.key, QStringLiteral(u"\u4e2d, \"45\u2103\""));
                        break;
                    case SettingType::Rect:
                        writer.SetRect(named.key, QRect(1, 2, 3, 4));
                        break;
                }
            }
        }
        return Content(path);
    }

    void CheckEveryValueIsUsable(const QString& path) {
        const SettingsReader reader(path);
        for (const NamedSetting& named : AllSettings()) {
            const int number = reader.Int(named.key, named.setting);
            QVERIFY(number >= named.setting.minimum && number <= named.setting.maximum);
            QVERIFY(reader.Text(named.key).size() <= kLongestSettingText);
            const QRect rect = reader.Rect(named.key);
            QVERIFY(qAbs(rect.left()) <= kFarthestRectEdge && qAbs(rect.bottom()) <= kFarthestRectEdge);
            QVERIFY(rect.width() >= 0 && rect.height() >= 0);
        }
    }

private slots:
    void anyNoise_data() {
        QTest::addColumn<QByteArray>("content");
        for (quint32 seed = 1; seed <= 20; ++seed) {
            QTest::addRow("random bytes %u", seed) << RandomBytes(seed, static_cast<int>(seed * 137));
            QTest::addRow("random text %u", seed) << RandomText(seed, static_cast<int>(seed * 97));
        }
        QTest::newRow("all zero, as a power cut leaves it") << QByteArray(8192, '\0');
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("one zero byte") << QByteArray(1, '\0');
        QTest::newRow("one bracket") << QByteArray("[");
        QTest::newRow("one quote") << QByteArray("\"");
        QTest::newRow("one backslash") << QByteArray("\\");
        QTest::newRow("one equals sign") << QByteArray("=");
        QTest::newRow("a byte order mark") << QByteArray("\xEF\xBB\xBF");
        QTest::newRow("UTF-16") << QByteArray("\xFF\xFE[\0C\0o\0n\0f\0i\0g\0]\0\n\0", 20);
        QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16);
        QTest::newRow("giant numbers") << QByteArray(
            "[Config]\nMode=99999999999999999999\nThemeID=-2147483649\nHor=1e300\n[ImageList]\nCount="
            "2147483647\n[H1]\nXPt=2147483648\nShowRect_0=@Rect(2147483647 2147483647 2147483647 1)\n");
        QTest::newRow("a giant line") << "[Config]\nMode=" + QByteArray(600000, '7');
        QTest::newRow("a giant section") << "[" + QByteArray(600000, 'H') + "]\nXPt=1";
        QTest::newRow("a hundred thousand sections") << QByteArray("[H1]\n").repeated(100000);
        QTest::newRow("every value of the wrong kind") << QByteArray(
            "[Config]\nMode=@Rect(1 2 3 4)\nThemeID=@ByteArray(\\0)\nHor=a,b\nUUid=@Size(1 2)\n[H1]\n"
            "ShowRect_0=@Invalid()\nShowRect_1=@Rect(1 2)\nString_0=@Rect(1 2 3 4)\nXPt=@Variant(x)\n");
    }
    void anyNoise() {
        QFETCH(QByteArray, content);
        const QString path = FileWith(content);
        const LogCatcher log;
        CheckEveryValueIsUsable(path);
        CheckEveryValueIsUsable(path);
        QCOMPARE(Content(path), content);

        const bool mustBeKept = InspectSettingsFile(path) != SettingsFileState::Usable;
        {
            SettingsWriter writer(path);
            writer.SetInt(keys::kCurRectId.name, 1);
            QVERIFY(writer.Commit());
        }
        QCOMPARE(SettingsReader(path).Int(keys::kCurRectId), 1);
        QCOMPARE(InspectSettingsFile(path), SettingsFileState::Usable);
        QCOMPARE(QFileInfo::exists(KeptPath(path)), mustBeKept);
        if (mustBeKept) {
            QCOMPARE(Content(KeptPath(path)), content);
        }
        // At most one line each about the file, its values, and where it is kept.
        QVERIFY2(log.lines().size() <= 3, qPrintable(log.lines().join(QLatin1Char('\n'))));
    }

    void aGoodFileCutAnywhere() {
        const QByteArray good = GoodFile();
        QCOMPARE(InspectSettingsFile(FileWith(good)), SettingsFileState::Usable);
        const LogCatcher log;
        QRandomGenerator random(7);
        for (int i = 0; i < 60; ++i) {
            const QString path = FileWith(good.left(static_cast<int>(random.bounded(good.size()))));
            CheckEveryValueIsUsable(path);
            SettingsWriter(path).SetInt(keys::kMode.name, 1);
            QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
        }
    }

    void aGoodFileWithFlippedBytes() {
        const QByteArray good = GoodFile();
        const LogCatcher log;
        QRandomGenerator random(11);
        for (int i = 0; i < 60; ++i) {
            QByteArray content = good;
            for (int flip = 0; flip < 20; ++flip) {
                content[random.bounded(content.size())] = static_cast<char>(random.bounded(256));
            }
            CheckEveryValueIsUsable(FileWith(content));
        }
    }

    void theReadableLinesOfADamagedFileCountAndStay() {
        const QByteArray content("[Config]\nThemeID=3\nthis is no line\nHor=1\n");
        const QString path = FileWith(content);
        const LogCatcher log;
        QCOMPARE(SettingsReader(path).Int(keys::kThemeId), 3);
        QCOMPARE(SettingsReader(path).Int(keys::kHor), 1);
        QCOMPARE(log.lines().size(), 1);
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QCOMPARE(SettingsReader(path).Int(keys::kThemeId), 3);
        QCOMPARE(Content(KeptPath(path)), content);
    }

    void aFileWithZeroBytesCountsForNothingAndIsNotCarriedOver() {
        const QByteArray content = "[Config]\nThemeID=3\n" + QByteArray(100, '\0') + "\nHor=1\n";
        const QString path = FileWith(content);
        const LogCatcher log;
        QCOMPARE(SettingsReader(path).Int(keys::kThemeId), 0);
        QCOMPARE(SettingsReader(path).Int(keys::kHor), 0);
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QCOMPARE(Content(path).replace("\r\n", "\n"), QByteArray("[Config]\nMode=1\n"));
        QCOMPARE(Content(KeptPath(path)), content);
    }

    void aWriterThatWritesNothingKeepsNothingAside() {
        const QString path = FileWith("noise");
        { SettingsWriter writer(path); }
        QVERIFY(!QFileInfo::exists(KeptPath(path)));
        QCOMPARE(Content(path), QByteArray("noise"));
    }

    void aSecondBrokenFileDoesNotReplaceTheFirst() {
        const QString path = FileWith("noise 1");
        const LogCatcher log;
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        for (int i = 2; i <= 11; ++i) {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("noise " + QByteArray::number(i));
            file.close();
            SettingsWriter(path).SetInt(keys::kMode.name, i);
        }
        QCOMPARE(Content(KeptPath(path)), QByteArray("noise 1"));
        QCOMPARE(Content(KeptPath(path) + QStringLiteral(".2")), QByteArray("noise 2"));
        QCOMPARE(Content(KeptPath(path) + QStringLiteral(".8")), QByteArray("noise 8"));
        // The ninth place is used again and again.
        QCOMPARE(Content(KeptPath(path) + QStringLiteral(".9")), QByteArray("noise 11"));
        QVERIFY(!QFileInfo::exists(KeptPath(path) + QStringLiteral(".10")));
    }

    void aFolderInItsPlace() {
        const QString path = NewPath();
        QVERIFY(QDir().mkpath(path + QStringLiteral("/inside")));
        const LogCatcher log;
        CheckEveryValueIsUsable(path);
        QCOMPARE(log.lines().size(), 1);
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
        QVERIFY(QFileInfo(KeptPath(path) + QStringLiteral("/inside")).isDir());
    }

    void aHundredMegabytes() {
        constexpr qint64 kSize = qint64{100} * 1024 * 1024;
        const QString path = NewPath();
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.resize(kSize));
        file.close();
        const LogCatcher log;
        CheckEveryValueIsUsable(path);
        QCOMPARE(log.lines().size(), 1);
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
        QCOMPARE(QFileInfo(KeptPath(path)).size(), kSize);
    }

    void aFileOfTheLargestSizeIsRead() {
        const QByteArray head("[Config]\nThemeID=3\n;");
        const QByteArray exact = head + QByteArray(static_cast<int>(kLargestSettingsFile) - head.size(), 'x');
        const LogCatcher log;
        QCOMPARE(SettingsReader(FileWith(exact)).Int(keys::kThemeId), 3);
        QCOMPARE(SettingsReader(FileWith(exact + 'x')).Int(keys::kThemeId), 0);
    }

    void wellFormedLines_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("wellFormed");
        QTest::newRow("nothing") << QByteArray() << true;
        QTest::newRow("section and key") << QByteArray("[a]\nb=c\n") << true;
        QTest::newRow("blank lines, comments, blanks") << QByteArray("\n ;x\n  [a] \n\t b = c\r\n") << true;
        QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF[a]\nb=c\n") << true;
        QTest::newRow("old Macintosh line ends") << QByteArray("[a]\rb=c\r") << true;
        QTest::newRow("escaped quote") << QByteArray("[a]\nb=\"x\\\"y\"\n") << true;
        QTest::newRow("no value") << QByteArray("b=\n") << true;
        QTest::newRow("an empty key") << QByteArray("=b\n") << true;
        QTest::newRow("no equals sign") << QByteArray("[a]\nb\n") << false;
        QTest::newRow("open section") << QByteArray("[a\nb=c\n") << false;
        QTest::newRow("open quote") << QByteArray("[a]\nb=\"c\n") << false;
        QTest::newRow("control character") << QByteArray("[a]\nb=\x01\n") << false;
    }
    void wellFormedLines() {
        QFETCH(QByteArray, content);
        QTEST(IsWellFormedIni(content), "wellFormed");
    }
};

KIVO_GUILESS_TEST(TestSettingsNoise)
#include "tst_settings_noise.moc"
