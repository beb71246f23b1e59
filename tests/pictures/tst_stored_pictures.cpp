#include <QTest>

#include "../config/file_maker.h"
#include "../config/log_catcher.h"
#include "config/setting_keys.h"
#include "config/settings_file.h"
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
        QVERIFY(WriteStoredPictures(Paths(count), file));
        QCOMPARE(ReadStoredPictures(file), Paths(count));
        QCOMPARE(SettingsReader(file).Int(keys::kImageCount), count);
    }

    void NoUserPicturesWriteACountOfNought() {
        const QString file = NewPath();
        QVERIFY(WriteStoredPictures({}, file));
        QVERIFY(SettingsReader(file).Contains(QString(keys::kImageCount.name)));
        QCOMPARE(SettingsReader(file).Int(keys::kImageCount), 0);
    }

    void NumbersBeyondTheCountGo() {
        const QString file = NewPath();
        QVERIFY(WriteStoredPictures(Paths(5), file));
        QVERIFY(WriteStoredPictures(Paths(2), file));
        const SettingsReader reader(file);
        QVERIFY(reader.Contains(ImageKey(1)));
        for (int n = 2; n < 5; ++n) {
            QVERIFY(!reader.Contains(ImageKey(n)));
        }
    }

    void OtherSettingsStay() {
        const QString file = FileWith("[Config]\nThemeID=2\n[H1]\nStringPixmap=/a.jpg\n");
        QVERIFY(WriteStoredPictures(Paths(3), file));
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
        QVERIFY(WriteStoredPictures(all, file));
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
    void ALongListCanBeStoredOrIsRefused() {
        QVERIFY(CanBeStored({}));
        QVERIFY(CanBeStored(Paths(1000)));
        QStringList longest;
        while (CanBeStored(longest + Paths(200))) {
            longest += Paths(200);
        }
        const QString file = NewPath();
        QVERIFY(WriteStoredPictures(longest, file));
        QVERIFY(QFileInfo(file).size() < kLargestSettingsFile);
        QCOMPARE(ReadStoredPictures(file), longest);
        QStringList tooMany;
        for (int n = 0; n <= keys::kImageCount.maximum; ++n) {
            tooMany.append(QStringLiteral("a"));
        }
        QVERIFY(!CanBeStored(tooMany));
    }
};

KIVO_GUILESS_TEST(TestStoredPictures)
#include "tst_stored_pictures.moc"
