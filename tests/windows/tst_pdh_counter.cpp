#include <QtTest>

#include "support/test_program.h"
#include "telemetry/cpu_usage_sampler.h"

using namespace kivo;

// The sampler over the real calls of the performance counters; the library behind them is the one of the
// tests.
class TestPdhCounter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_log.reset(new QTemporaryFile);
        QVERIFY(m_log->open());
        qputenv("KIVO_TEST_PDH_LOG", m_log->fileName().toLocal8Bit());
    }
    void cleanup() { qunsetenv("KIVO_TEST_PDH_FAILS"); }

    void CutsAndClamps() {
        qputenv("KIVO_TEST_UTILISATIONS", "37.99 100.9 112.4 0.4 99.99");
        CpuUsageSampler sampler;
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 0);
        QCOMPARE(sampler.Sample(), 37);
        QCOMPARE(sampler.Sample(), 100);
        QCOMPARE(sampler.Sample(), 100);
        QCOMPARE(sampler.Sample(), 0);
        QCOMPARE(sampler.Sample(), 99);

        // The same selector once more does not begin anew, another one does.
        qputenv("KIVO_TEST_UTILISATIONS", "55");
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 55);
        sampler.SetMode(1);
        QCOMPARE(sampler.Sample(), 0);
        QCOMPARE(sampler.Sample(), 55);
    }

    // The one that fails is 0, and so is the next, which has nothing to compare with: never the average since
    // the machine was started. Only a calculation leaves the sample behind.
    void FailedCallCountsAsNothing_data() {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<int>("next");
        QTest::newRow("the query is not opened") << QByteArray("open") << 0;
        QTest::newRow("the counter is not added") << QByteArray("add") << 0;
        QTest::newRow("nothing is collected") << QByteArray("collect") << 0;
        QTest::newRow("the raw value is not read") << QByteArray("raw") << 0;
        QTest::newRow("the utilisation is not calculated") << QByteArray("calculate") << 40;
    }
    void FailedCallCountsAsNothing() {
        QFETCH(QByteArray, call);
        QFETCH(int, next);
        qputenv("KIVO_TEST_UTILISATIONS", "40");
        CpuUsageSampler sampler;
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 0);
        QCOMPARE(sampler.Sample(), 40);
        for (int round = 0; round < 2; ++round) {
            qputenv("KIVO_TEST_PDH_FAILS", call);
            QCOMPARE(sampler.Sample(), 0);
            QCOMPARE(sampler.Sample(), 0);
            qunsetenv("KIVO_TEST_PDH_FAILS");
            QCOMPARE(sampler.Sample(), next);
            QCOMPARE(sampler.Sample(), 40);
        }
    }

    void FirstSampleThatFails_data() { FailedCallCountsAsNothing_data(); }
    void FirstSampleThatFails() {
        QFETCH(QByteArray, call);
        QFETCH(int, next);
        qputenv("KIVO_TEST_UTILISATIONS", "40");
        qputenv("KIVO_TEST_PDH_FAILS", call);
        CpuUsageSampler sampler;
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 0);
        qunsetenv("KIVO_TEST_PDH_FAILS");
        QCOMPARE(sampler.Sample(), next);
        QCOMPARE(sampler.Sample(), 40);
    }

    // A record that comes back changed in any field would be refused.
    void RecordComesBackWhole() {
        qputenv("KIVO_TEST_UTILISATIONS", "40");
        const auto counter = MakeCpuCounter();
        const CpuRawSample first = counter->Collect();
        const CpuRawSample second = counter->Collect();
        QCOMPARE(counter->Calculate(second, first), 40.0);
        QVERIFY(second.timeStamp - first.timeStamp == 10000000);
        QVERIFY(first.timeStamp > 0x01DC000000000000);
        QVERIFY(second.multiCount == first.multiCount + 1 && first.multiCount > 0x80000000U);
        const auto changed = [&](auto change) {
            CpuRawSample other = first;
            change(other);
            return counter->Calculate(second, other);
        };
        QCOMPARE(changed([](CpuRawSample& sample) { sample.timeStamp ^= 1; }), 0.0);
        QCOMPARE(changed([](CpuRawSample& sample) { sample.timeStamp ^= qint64(1) << 32; }), 0.0);
        QCOMPARE(changed([](CpuRawSample& sample) { sample.firstValue ^= 1; }), 0.0);
        QCOMPARE(changed([](CpuRawSample& sample) { sample.secondValue ^= 4; }), 0.0);
        QCOMPARE(changed([](CpuRawSample& sample) { sample.multiCount ^= 1; }), 0.0);
        QCOMPARE(changed([](CpuRawSample& sample) { sample.status ^= 1; }), 0.0);
    }

    void EveryQueryIsClosed() {
        qputenv("KIVO_TEST_UTILISATIONS", "50");
        CpuUsageSampler sampler;
        sampler.SetMode(0);
        for (int round = 0; round < 3; ++round) {
            sampler.Sample();
        }
        const QByteArray noted = m_log->readAll().replace("\r\n", "\n");
        QCOMPARE(noted, QByteArray("opened\nclosed\nopened\nclosed\nopened\nclosed\n"));
    }

private:
    QScopedPointer<QTemporaryFile> m_log;
};

KIVO_GUILESS_TEST(TestPdhCounter)
#include "tst_pdh_counter.moc"
