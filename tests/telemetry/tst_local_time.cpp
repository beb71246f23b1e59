#include <QtTest>

#include <ctime>

#include "support/test_program.h"
#include "telemetry/local_time.h"

using namespace kivo;

class TestLocalTime : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() {
        qunsetenv("TZ");
        ::tzset();
    }

    void ItIsTheZonesTime_data() {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<int>("minutesEast");
        QTest::newRow("east") << QByteArray("EAST-5:30") << 330;
        QTest::newRow("west") << QByteArray("WEST+7") << -420;
        QTest::newRow("another day most of the time") << QByteArray("FAR-14") << 840;
        QTest::newRow("none") << QByteArray("UTC0") << 0;
    }
    // The zone is changed while the program runs, and counts at once.
    void ItIsTheZonesTime() {
        QFETCH(QByteArray, zone);
        QFETCH(int, minutesEast);
        qputenv("TZ", zone);
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        const LocalTime local = ReadLocalTime();
        const qint64 after = QDateTime::currentSecsSinceEpoch();
        const qint64 shown = QDateTime(local.date, local.time, Qt::UTC).toSecsSinceEpoch() - minutesEast * 60;
        // The kernel's coarse clock is up to a tick behind.
        QVERIFY2(shown >= before - 1 && shown <= after,
                 qPrintable(QStringLiteral("%1: %2..%3").arg(shown).arg(before).arg(after)));
    }
};

KIVO_GUILESS_TEST(TestLocalTime)
#include "tst_local_time.moc"
