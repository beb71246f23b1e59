#include <QTest>

#include "pictures/picture_name.h"
#include "pictures/picture_path.h"
#include "support/test_program.h"

using namespace kivo;

class TestPictureName : public QObject {
    Q_OBJECT

private slots:
    void WhatIsKeptOfAName_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("kept");
        const QString smile = QString::fromUtf8("😀");
        const QString letters(30, QLatin1Char('x'));
        QTest::newRow("as it is") << QStringLiteral("Sea, at 5 o'clock")
                                  << QStringLiteral("Sea, at 5 o'clock");
        QTest::newRow("nothing") << QString() << QString();
        QTest::newRow("blanks") << QStringLiteral("  \t ") << QString();
        QTest::newRow("blanks around") << QStringLiteral("  Sea side ") << QStringLiteral("Sea side");
        QTest::newRow("control characters") << QStringLiteral(
                                                   "S\x01"
                                                   "e\r\na\x7f\x9b")
                                            << QStringLiteral("Sea");
        QTest::newRow("line breaks of Unicode")
            << QStringLiteral(u"S\u2028e\u2029a") << QStringLiteral("Sea");
        QTest::newRow("24 characters") << letters.left(24) << letters.left(24);
        QTest::newRow("25 characters") << letters.left(25) << letters.left(24);
        QTest::newRow("a blank where it is cut")
            << letters.left(23) + QStringLiteral(" yy") << letters.left(23);
        QTest::newRow("a pair at the end") << letters.left(22) + smile << letters.left(22) + smile;
        QTest::newRow("a pair that would be cut") << letters.left(23) + smile << letters.left(23);
        QTest::newRow("blanks before what is counted")
            << QStringLiteral("   ") + letters.left(24) << letters.left(24);
        QTest::newRow("Chinese") << QString::fromUtf8("海边的夕阳") << QString::fromUtf8("海边的夕阳");
    }
    void WhatIsKeptOfAName() {
        QFETCH(QString, typed);
        QFETCH(QString, kept);
        QCOMPARE(CleanPictureName(typed), kept);
        QCOMPARE(CleanPictureName(kept), kept);
    }

    void AFilesNameWithoutItsEnding_data() {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("title");
        QTest::newRow("one ending") << QStringLiteral("/a.b/sea side.jpg") << QStringLiteral("sea side");
        QTest::newRow("several dots") << QStringLiteral("/a/sea.2026.jpg") << QStringLiteral("sea.2026");
        QTest::newRow("no ending") << QStringLiteral("/a.b/sea") << QStringLiteral("sea");
        QTest::newRow("nothing but an ending") << QStringLiteral("/a/.jpg") << QStringLiteral(".jpg");
        QTest::newRow("a dot at the end") << QStringLiteral("/a/sea.") << QStringLiteral("sea");
    }
    void AFilesNameWithoutItsEnding() {
        QFETCH(QString, path);
        QFETCH(QString, title);
        QCOMPARE(PictureFileTitle(path), title);
    }
};

KIVO_APPLESS_TEST(TestPictureName)
#include "tst_picture_name.moc"
