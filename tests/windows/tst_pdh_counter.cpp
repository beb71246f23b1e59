#include <QtTest>

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

QTEST_GUILESS_MAIN(TestPdhCounter)
#include "tst_pdh_counter.moc"
