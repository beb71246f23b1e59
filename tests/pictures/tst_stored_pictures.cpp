#include <QTest>

#include "../config/file_maker.h"
#include "../config/log_catcher.h"
#include "config/ascii_ini.h"
#include "config/portable_folder.h"
#include "config/setting_keys.h"
#include "config/settings_file.h"
#include "pictures/picture_name.h"
#include "pictures/picture_path.h"
#include "pictures/stored_pictures.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

QStringList Paths(int count) {
    QStringList paths;
    for (int n = 0; n < count; ++n) {
        paths.append(QStringLiteral("/home/a/图片 %1, b=c;d \"e\" %20.jpg").arg(n));
    }
    return paths;
}

QByteArray Content(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qFatal("The test cannot read its file.");
    }
    return file.readAll();
}

}  // namespace

class TestStoredPictures : public QObject, private FileMaker {
    Q_OBJECT

private slots:
    void WhatIsWrittenIsRead_data() {
        QTest::addColumn<int>("count");
        QTest::newRow("none") << 0;
        QTest::newRow("one") << 1;
        QTest::newRow("a thousand") << 1000;
    }
    void WhatIsWrittenIsRead() {
        QFETCH(int, count);
        const QString file = NewPath();
        QVERIFY(WriteStoredPictures(Paths(count), {}, file));
        QCOMPARE(ReadStoredPictures(file), Paths(count));
        QCOMPARE(SettingsReader(file).Int(keys::kImageCount), count);
    }

    void AStickAtAnotherPlaceHasPicturesAndNames() {
        const auto own = [](const char* place) {
            return QString::fromLatin1(place) + QStringLiteral("/Kivo/data/settings/Pictures/a.png");
        };
        const QString elsewhere = QStringLiteral("/home/a/b.png");
        const QString file = NewPath();
        SetPortableFolder(QStringLiteral("/media/a/Kivo/data"));
        QVERIFY(WriteStoredPictures(
            {own("/media/a"), elsewhere},
            {{own("/media/a"), QStringLiteral("Sea")}, {elsewhere, QStringLiteral("Hill")}}, file));
        QVERIFY(!Content(file).contains("media"));
        SetPortableFolder(QStringLiteral("/media/b/Kivo/data"));
        const QStringList paths = ReadStoredPictures(file);
        const PictureNames names = ReadPictureNames(paths, file);
        SetPortableFolder(QString());
        QCOMPARE(paths, QStringList({own("/media/b"), elsewhere}));
        QCOMPARE(names, PictureNames(
                            {{own("/media/b"), QStringLiteral("Sea")}, {elsewhere, QStringLiteral("Hill")}}));
    }

    // Settings of a stick that has always named its pictures in full.
    void AFullPathOfAnotherPlaceKeepsItsName() {
        const QTemporaryDir stick;
        const QString path = stick.filePath(QStringLiteral("Kivo/data/settings/Pictures/a.png"));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()) && QFile::copy(FileWith("a picture"), path));
        const QString file = FileWith(
            "[ImageList]\nCount=1\n0=E:/Kivo/data/settings/Pictures/a.png\n"
            "[ImageNames]\nE%3A\\Kivo\\data\\settings\\Pictures\\a.png=Sea\n");
        SetPortableFolder(stick.filePath(QStringLiteral("Kivo/data")));
        const QStringList paths = ReadStoredPictures(file);
        const PictureNames names = ReadPictureNames(paths, file);
        SetPortableFolder(QString());
        QCOMPARE(paths, QStringList(path));
        QCOMPARE(names, PictureNames({{path, QStringLiteral("Sea")}}));
    }

    void NoUserPicturesWriteACountOfNought() {
        const QString file = NewPath();
        QVERIFY(WriteStoredPictures({}, {}, file));
        QVERIFY(SettingsReader(file).Contains(QString(keys::kImageCount.name)));
        QCOMPARE(SettingsReader(file).Int(keys::kImageCount), 0);
    }

    void NumbersBeyondTheCountGo() {
        const QString file = NewPath();
        QVERIFY(WriteStoredPictures(Paths(5), {}, file));
        QVERIFY(WriteStoredPictures(Paths(2), {}, file));
        const SettingsReader reader(file);
        QVERIFY(reader.Contains(ImageKey(1)));
        for (int n = 2; n < 5; ++n) {
            QVERIFY(!reader.Contains(ImageKey(n)));
        }
    }

    void OtherSettingsStay() {
        const QString file = FileWith("[Config]\nThemeID=2\n[H1]\nStringPixmap=/a.jpg\n");
        QVERIFY(WriteStoredPictures(Paths(3), {}, file));
        QCOMPARE(SettingsReader(file).Int(keys::kThemeId), 2);
        QCOMPARE(SettingsReader(file).Text(GroupKey(QStringLiteral("H1"), keys::kStringPixmap)),
                 QStringLiteral("/a.jpg"));
    }

    // Whatever the count says: no path that can be read is lost, and nothing takes long.
    void ACountThatCannotBeBelieved_data() {
        QTest::addColumn<QByteArray>("count");
        QTest::newRow("negative") << QByteArray("-1");
        QTest::newRow("least") << QByteArray("-2147483648");
        QTest::newRow("2^31") << QByteArray("2147483648");
        QTest::newRow("2^31 - 1") << QByteArray("2147483647");
        QTest::newRow("beyond every integer") << QByteArray("99999999999999999999999");
        QTest::newRow("text") << QByteArray("three");
        QTest::newRow("a number and more") << QByteArray("3 pictures");
        QTest::newRow("nothing") << QByteArray("");
        QTest::newRow("fraction") << QByteArray("2.5");
        QTest::newRow("list") << QByteArray("1, 2, 3");
        QTest::newRow("invalid") << QByteArray("@Invalid()");
    }
    void ACountThatCannotBeBelieved() {
        QFETCH(QByteArray, count);
        const LogCatcher log;
        const QString file = FileWith("[ImageList]\nCount=" + count + "\n0=/a.jpg\n1=/b.jpg\n2=/c.jpg\n");
        const QStringList all = {QStringLiteral("/a.jpg"), QStringLiteral("/b.jpg"),
                                 QStringLiteral("/c.jpg")};
        QCOMPARE(ReadStoredPictures(file), all);
        QVERIFY(WriteStoredPictures(all, {}, file));
        QCOMPARE(SettingsReader(file).Int(keys::kImageCount), 3);
    }

    void OnlyAsManyAsTheCountSays() {
        QCOMPARE(ReadStoredPictures(FileWith("[ImageList]\nCount=1\n0=/a.jpg\n1=/b.jpg\n")),
                 QStringList{QStringLiteral("/a.jpg")});
    }

    void ACountLargerThanTheListHoldsWhatIsThere() {
        QCOMPARE(ReadStoredPictures(FileWith("[ImageList]\nCount=5000\n0=/a.jpg\n3=/d.jpg\n")),
                 QStringList({QStringLiteral("/a.jpg"), QStringLiteral("/d.jpg")}));
    }

    void WithoutACountThereIsNone() {
        QVERIFY(ReadStoredPictures(FileWith("[ImageList]\n0=/a.jpg\n")).isEmpty());
        QVERIFY(ReadStoredPictures(NewPath()).isEmpty());
        QVERIFY(ReadStoredPictures(FileWith("")).isEmpty());
    }

    // A settings file that is too large is taken for noise at the next start.
    void ALongListCanBeStoredOrIsRefused_data() {
        QTest::addColumn<QStringList>("many");
        QTest::newRow("odd") << Paths(200);
        // A digit behind an escape is escaped too, and so on to the end of the name.
        QStringList digits;
        for (int n = 0; n < 200; ++n) {
            digits.append(QString::fromUtf8("/图") +
                          QString(200, QLatin1Char("0123456789abcdefABCDEF"[n % 22])));
        }
        QTest::newRow("digits") << digits;
    }
    void ALongListCanBeStoredOrIsRefused() {
        QFETCH(QStringList, many);
        QVERIFY(CanBeStored({}));
        QVERIFY(CanBeStored(Paths(1000)));
        QStringList longest;
        while (CanBeStored(longest + many)) {
            longest += many;
        }
        const QString file = NewPath();
        QVERIFY(WriteStoredPictures(longest, {}, file));
        QVERIFY(QFileInfo(file).size() < kLargestSettingsFile);
        QCOMPARE(ReadStoredPictures(file), longest);
        QStringList tooMany;
        for (int n = 0; n <= keys::kImageCount.maximum; ++n) {
            tooMany.append(QStringLiteral("a"));
        }
        QVERIFY(!CanBeStored(tooMany));
    }

    // By path, so that a new order of the list and other pictures take none away.
    void NamesAreReadByTheirPath_data() {
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << QStringLiteral("/home/a/sea.jpg");
        QTest::newRow("odd") << Paths(1).constFirst();
        QTest::newRow("drive") << QStringLiteral("C:/Users/A B/sea.jpg");
        QTest::newRow("share") << QStringLiteral("//server/share/sea.jpg");
        QTest::newRow("backslash in a name") << QStringLiteral("/home/a/se\\a.jpg");
        QTest::newRow("not in the clean form") << QStringLiteral("/home/b/../a/sea.jpg");
        QTest::newRow("beyond 16 bit") << QString::fromUtf8("/home/a/😀.jpg");
        QTest::newRow("percent") << QStringLiteral("/home/a/100%25.jpg");
    }
    void NamesAreReadByTheirPath() {
        QFETCH(QString, path);
        const QString file = NewPath();
        const QStringList paths = Paths(2) + QStringList(path);
        const QString name = QString::fromUtf8("海, \"a\" = 45%;\\😀");
        QVERIFY(WriteStoredPictures(paths, {{CleanPicturePath(path), name}}, file));
        const QStringList others = {QStringLiteral("/other.jpg"), path};
        QCOMPARE(ReadPictureNames(others, file), (PictureNames{{CleanPicturePath(path), name}}));
        QVERIFY(ReadPictureNames({QStringLiteral("/other.jpg")}, file).isEmpty());
        // The list is what it is without names.
        QCOMPARE(ReadStoredPictures(file), paths);
    }

    void ANameGoesWithItsPicture() {
        const QString file = NewPath();
        PictureNames names;
        for (const QString& path : Paths(3)) {
            names.insert(CleanPicturePath(path), QStringLiteral("name of ") + path.mid(8, 4));
        }
        QVERIFY(WriteStoredPictures(Paths(3), names, file));
        const QString gone = CleanPicturePath(Paths(3).at(1));
        const QStringList left = {Paths(3).at(2), Paths(3).at(0)};
        QVERIFY(WriteStoredPictures(left, names, file));
        names.remove(gone);
        QCOMPARE(ReadPictureNames(Paths(3), file), names);
        QVERIFY(WriteStoredPictures({}, {}, file));
        QVERIFY(!SettingsReader(file).HasGroup(QStringLiteral("ImageNames")));
    }

    // As the program wrote it when it knew no names.
    void WithoutNamesTheFileIsTheSame() {
        const QByteArray before = "[Config]\nThemeID=2\n\n[ImageList]\n0=/old.jpg\n1=/older.jpg\nCount=2\n";
        const QString expected = FileWith(before);
        {
            QSettings settings(expected, QSettings::IniFormat);
            settings.remove(QStringLiteral("ImageList"));
            settings.setValue(QStringLiteral("ImageList/Count"), 3);
            for (int n = 0; n < 3; ++n) {
                settings.setValue(QStringLiteral("ImageList/%1").arg(n), Paths(3).at(n));
            }
        }
        QCOMPARE(MakeIniAscii(expected), QString());
        const QString file = FileWith(before);
        QVERIFY(ReadPictureNames(Paths(3), file).isEmpty());
        QCOMPARE(Content(file), before);
        QVERIFY(WriteStoredPictures(Paths(3), {}, file));
        QCOMPARE(Content(file), Content(expected));
        // Nor do names change what stands beside them.
        QVERIFY(
            WriteStoredPictures(Paths(3), {{CleanPicturePath(Paths(3).at(0)), QStringLiteral("Sea")}}, file));
        QVERIFY(Content(file) != Content(expected));
        QVERIFY(WriteStoredPictures(Paths(3), {}, file));
        QCOMPARE(Content(file), Content(expected));
    }

    void NamesWrittenByHand_data() {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << QByteArray("a.jpg=Sea") << QStringLiteral("Sea");
        QTest::newRow("too long") << QByteArray("a.jpg=" + QByteArray(500, 'x'))
                                  << QString(kLongestPictureName, QLatin1Char('x'));
        QTest::newRow("control characters") << QByteArray("a.jpg=\"S\\x1\\nea\"") << QStringLiteral("Sea");
        QTest::newRow("blank") << QByteArray("a.jpg=\"  \"") << QString();
        QTest::newRow("nothing") << QByteArray("a.jpg=") << QString();
        QTest::newRow("list") << QByteArray("a.jpg=a, b") << QString();
        QTest::newRow("invalid") << QByteArray("a.jpg=@Invalid()") << QString();
        QTest::newRow("of no picture") << QByteArray("b.jpg=Sea") << QString();
        QTest::newRow("a number") << QByteArray("a.jpg=007") << QStringLiteral("007");
    }
    void NamesWrittenByHand() {
        QFETCH(QByteArray, line);
        QFETCH(QString, name);
        const LogCatcher log;
        const QString file = FileWith("[ImageList]\nCount=1\n0=/a.jpg\n[ImageNames]\n" + line + '\n');
        const QString path = QStringLiteral("/a.jpg");
        QCOMPARE(ReadPictureNames({path}, file).value(path), name);
        QCOMPARE(ReadPictureNames({path}, file).isEmpty(), name.isEmpty());
        QCOMPARE(ReadStoredPictures(file), QStringList{path});
    }

    // The longest list and as many names as there may be still leave a file that is read again.
    void NamesHaveAShareOfTheirOwn() {
        QVERIFY(CanNamesBeStored({}));
        PictureNames names;
        // A letter that could be a digit of the character before it is written out too.
        const QString longest = QString::fromUtf8("海a海a海a海a海a海a海a海a海a海a海a海a");
        QCOMPARE(longest.size(), kLongestPictureName);
        QStringList named;
        while (CanNamesBeStored(names)) {
            named.append(QString::fromUtf8("/图/%1.jpg").arg(named.size()));
            names.insert(named.last(), longest);
        }
        names.remove(named.takeLast());
        QVERIFY(named.size() > 500);
        const QString file = NewPath();
        QStringList paths = named;
        while (CanBeStored(paths + Paths(200))) {
            paths += Paths(200);
        }
        QVERIFY(WriteStoredPictures(paths, names, file));
        QVERIFY(QFileInfo(file).size() < kLargestSettingsFile);
        QCOMPARE(ReadStoredPictures(file), paths);
        QCOMPARE(ReadPictureNames(named, file), names);
    }
};

KIVO_GUILESS_TEST(TestStoredPictures)
#include "tst_stored_pictures.moc"
