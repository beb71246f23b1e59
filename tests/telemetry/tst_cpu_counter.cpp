#include <QtTest>

#include "support/test_program.h"
#include "telemetry/cpu_counter.h"

using namespace kivo;

namespace {

CpuRawSample Ticks(qint64 busy, qint64 total) {
    CpuRawSample sample;
    sample.firstValue = busy;
    sample.secondValue = total;
    return sample;
}

}  // namespace

class TestCpuCounter : public QObject {
    Q_OBJECT

private slots:
    void countsBusyAndTotal_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<qint64>("busy");
        QTest::addColumn<qint64>("total");
        QTest::newRow("all columns, guest not counted twice")
            << QByteArray("cpu  100 20 30 400 50 6 7 8 90 9\ncpu0 1 2 3 4\n") << qint64(171) << qint64(621);
        QTest::newRow("no guest columns") << QByteArray("cpu 1 2 3 4 5 6 7 8\n") << qint64(27) << qint64(36);
        QTest::newRow("the four columns of old kernels")
            << QByteArray("cpu 1 2 3 4\n") << qint64(6) << qint64(10);
        QTest::newRow("no line end") << QByteArray("cpu 1 2 3 4") << qint64(6) << qint64(10);
        QTest::newRow("a number of the next line is not taken")
            << QByteArray("cpu 1 2 3 4\n 1000 1000") << qint64(6) << qint64(10);
        QTest::newRow("an idle machine") << QByteArray("cpu 0 0 0 9 0 0 0 0 0 0\n") << qint64(0) << qint64(9);
        QTest::newRow("years of ticks on many processors")
            << QByteArray("cpu  4000000000000 0 0 6000000000000 0 0 0 0 0 0\n") << qint64(4000000000000)
            << qint64(10000000000000);
    }
    void countsBusyAndTotal() {
        QFETCH(QByteArray, text);
        QFETCH(qint64, busy);
        QFETCH(qint64, total);
        const CpuRawSample sample = ParseProcStat({text.constData(), std::size_t(text.size())});
        QCOMPARE(sample.status, 0U);
        QCOMPARE(sample.firstValue, busy);
        QCOMPARE(sample.secondValue, total);
    }

    void whatIsNoCounterIsNoData_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("one processor's line") << QByteArray("cpu0 1 2 3 4\n");
        QTest::newRow("the label alone") << QByteArray("cpu ");
        QTest::newRow("three columns") << QByteArray("cpu 1 2 3\n");
        QTest::newRow("words") << QByteArray("cpu one two three four\n");
        QTest::newRow("negative numbers") << QByteArray("cpu -1 -2 -3 -4\n");
        QTest::newRow("more than fits") << QByteArray("cpu 99999999999999999999999 2 3 4\n");
        QTest::newRow("so many that their sum would not fit")
            << QByteArray("cpu 9223372036854775807 1 1 1\n");
        QTest::newRow("noise") << QByteArray("\0\x80\xff cpu", 8);
    }
    void whatIsNoCounterIsNoData() {
        QFETCH(QByteArray, text);
        const CpuRawSample sample = ParseProcStat({text.constData(), std::size_t(text.size())});
        QCOMPARE(sample.status, kCpuSampleNoData);
        QCOMPARE(sample.firstValue, qint64(0));
        QCOMPARE(sample.secondValue, qint64(0));
    }

    void sharesOutTheTimeBetweenTwoSamples_data() {
        QTest::addColumn<qint64>("busy");
        QTest::addColumn<qint64>("total");
        QTest::addColumn<double>("percent");
        QTest::newRow("half busy") << qint64(50) << qint64(100) << 50.0;
        QTest::newRow("a third busy") << qint64(1) << qint64(3) << 100.0 / 3;
        QTest::newRow("idle") << qint64(0) << qint64(100) << 0.0;
        QTest::newRow("all busy") << qint64(100) << qint64(100) << 100.0;
        QTest::newRow("no time passed") << qint64(0) << qint64(0) << 0.0;
        QTest::newRow("the clock ran backwards") << qint64(5) << qint64(-10) << 0.0;
        QTest::newRow("an idle count that was corrected") << qint64(12) << qint64(10) << 120.0;
        QTest::newRow("a busy count that was corrected") << qint64(-1) << qint64(10) << -10.0;
    }
    void sharesOutTheTimeBetweenTwoSamples() {
        QFETCH(qint64, busy);
        QFETCH(qint64, total);
        QFETCH(double, percent);
        QCOMPARE(BusyPercent(Ticks(1000 + busy, 5000 + total), Ticks(1000, 5000)), percent);
    }

    void missingDataOnEitherSideIsZero() {
        const CpuRawSample noData = ParseProcStat({});
        QCOMPARE(BusyPercent(Ticks(50, 100), noData), 0.0);
        QCOMPARE(BusyPercent(noData, Ticks(50, 100)), 0.0);
    }

    void thisMachinesCounterRuns() {
        const CpuRawSample first = MakeCpuCounter()->Collect();
        CpuRawSample second;
        QTRY_VERIFY((second = MakeCpuCounter()->Collect()).secondValue > first.secondValue);
        QVERIFY(second.status <= 1U);  // valid, or on Windows valid and new
        const double percent = MakeCpuCounter()->Calculate(second, first);
        // The kernel corrects its idle figures now and then, so a little beyond either end is allowed.
        QVERIFY2(percent > -5.0 && percent < 105.0, qPrintable(QString::number(percent)));
    }
};

KIVO_APPLESS_TEST(TestCpuCounter)
#include "tst_cpu_counter.moc"
