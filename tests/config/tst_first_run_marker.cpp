#include <QtTest>

#include "config/first_run_marker.h"
#include "log_catcher.h"
#include "private_home.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr quint32 kExpandableText = 2;  // REG_EXPAND_SZ
constexpr quint32 kBinary = 3;          // REG_BINARY

}  // namespace

class TestFirstRunMarker : public QObject {
    Q_OBJECT

private slots:
    void theMarkIsFiveBytes() { QCOMPARE(MarkerBytes(), QByteArray("true\0", 5)); }

    void onlyTheExactMarkCounts_data() {
        QTest::addColumn<quint32>("type");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("initialized");
        QTest::newRow("the mark") << kMarkerTextType << QByteArray("true\0", 5) << true;
        QTest::newRow("capitals") << kMarkerTextType << QByteArray("TRUE\0", 5) << false;
        QTest::newRow("a trailing blank") << kMarkerTextType << QByteArray("true \0", 6) << false;
        QTest::newRow("an expandable text") << kExpandableText << QByteArray("true\0", 5) << false;
        QTest::newRow("binary") << kBinary << QByteArray("true\0", 5) << false;
        QTest::newRow("no closing zero") << kMarkerTextType << QByteArray("true") << false;
        QTest::newRow("a blank for the zero") << kMarkerTextType << QByteArray("true ") << false;
        QTest::newRow("two zeros") << kMarkerTextType << QByteArray("true\0\0", 6) << false;
        QTest::newRow("false") << kMarkerTextType << QByteArray("false\0", 6) << false;
        QTest::newRow("nothing") << kMarkerTextType << QByteArray() << false;
    }
    void onlyTheExactMarkCounts() {
        QFETCH(quint32, type);
        QFETCH(QByteArray, bytes);
        QTEST(MeansInitialized(type, bytes), "initialized");
    }

    void withoutAMarkItIsAFirstRunOnceMarkedItIsNot() {
        const PrivateHome home;
        QVERIFY(IsFirstRun());
        QCOMPARE(MarkInitialized(), 0);
        QVERIFY(!IsFirstRun());
        QCOMPARE(MarkInitialized(), 0);
        QVERIFY(!IsFirstRun());
        QVERIFY(QFileInfo(home.marker()).isFile());
    }

    void askingMarksNothing() {
        const PrivateHome home;
        QVERIFY(IsFirstRun());
        QVERIFY(!QFileInfo::exists(home.marker()));
    }

    void theMarkOnDisk_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("firstRun");
        QTest::newRow("the mark") << QByteArray("[General]\nisInitialized=true\n") << false;
        QTest::newRow("quoted") << QByteArray("[General]\nisInitialized=\"true\"\n") << false;
        QTest::newRow("capitals") << QByteArray("[General]\nisInitialized=TRUE\n") << true;
        QTest::newRow("a trailing blank") << QByteArray("[General]\nisInitialized=\"true \"\n") << true;
        QTest::newRow("one") << QByteArray("[General]\nisInitialized=1\n") << true;
        QTest::newRow("empty") << QByteArray("[General]\nisInitialized=\n") << true;
        QTest::newRow("bytes, not text") << QByteArray("[General]\nisInitialized=@ByteArray(true)\n") << true;
        QTest::newRow("a list") << QByteArray("[General]\nisInitialized=true, true\n") << true;
        QTest::newRow("no value") << QByteArray("[General]\nisInitialized=@Invalid()\n") << true;
        QTest::newRow("another group") << QByteArray("[Other]\nisInitialized=true\n") << true;
        QTest::newRow("nothing") << QByteArray() << true;
        QTest::newRow("noise") << QByteArray("\0\xff\x01=[[", 6) << true;
    }
    void theMarkOnDisk() {
        QFETCH(QByteArray, content);
        const PrivateHome home;
        QVERIFY(WriteFile(home.marker(), content));
        QTEST(IsFirstRun(), "firstRun");
        QCOMPARE(MarkInitialized(), 0);
        QVERIFY(!IsFirstRun());
    }

    void aFolderInItsPlaceIsAFirstRunForEver() {
        const PrivateHome home;
        QVERIFY(QDir().mkpath(home.marker()));
        QVERIFY(IsFirstRun());
        QVERIFY(MarkInitialized() != 0);
        QVERIFY(IsFirstRun());
    }

    void aConfigFolderThatCannotBeMade() {
        const PrivateHome home;
        PrivateHome::Use(QStringLiteral("/proc/self/nowhere"));
        QVERIFY(MarkInitialized() != 0);
        QVERIFY(IsFirstRun());
    }
};

KIVO_GUILESS_TEST(TestFirstRunMarker)
#include "tst_first_run_marker.moc"
