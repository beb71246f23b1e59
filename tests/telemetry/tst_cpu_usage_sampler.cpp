#include <QtTest>

#include <limits>
#include <vector>

#include "support/test_program.h"
#include "telemetry/cpu_usage_sampler.h"

using namespace kivo;

namespace {

// What the counters of a test do and what was done to them; outlives every one of them.
struct Script {
    double calculated = 0.0;
    qint64 nextRaw = 1;
    quint32 status = 1;
    int opened = 0;
    int open = 0;
    std::vector<std::pair<qint64, qint64>> calculations;  // (now, previous), as first values.
};

class ScriptedCounter final : public CpuCounter {
public:
    explicit ScriptedCounter(Script* script) : m_script(script) {
        ++m_script->opened;
        ++m_script->open;
    }
    ~ScriptedCounter() override { --m_script->open; }

    CpuRawSample Collect() override {
        const qint64 raw = m_script->nextRaw++;
        CpuRawSample sample;
        sample.status = m_script->status;
        sample.timeStamp = raw * 10;
        sample.firstValue = raw;
        sample.secondValue = raw * 100;
        sample.multiCount = 7;
        return sample;
    }

    double Calculate(const CpuRawSample& now, const CpuRawSample& previous) override {
        m_script->calculations.emplace_back(now.firstValue, previous.firstValue);
        // The record comes back whole.
        const bool whole = previous.status == 1 && previous.timeStamp == previous.firstValue * 10 &&
                           previous.secondValue == previous.firstValue * 100 && previous.multiCount == 7;
        return whole ? m_script->calculated : -1000.0;
    }

private:
    Script* m_script;
};

CpuCounterFactory Factory(Script* script) {
    return [script] { return std::make_unique<ScriptedCounter>(script); };
}

}  // namespace

class TestCpuUsageSampler : public QObject {
    Q_OBJECT

private slots:
    void firstCallAfterStartIsZero() {
        Script script;
        script.calculated = 55.0;
        CpuUsageSampler sampler(Factory(&script));
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 0);
        QVERIFY(script.calculations.empty());
        QCOMPARE(sampler.Sample(), 55);
    }

    void everyCallComparesWithTheOneBefore() {
        Script script;
        CpuUsageSampler sampler(Factory(&script));
        sampler.SetMode(0);
        for (int i = 0; i < 4; ++i) {
            sampler.Sample();
        }
        const std::vector<std::pair<qint64, qint64>> expected{{2, 1}, {3, 2}, {4, 3}};
        QVERIFY(script.calculations == expected);
    }

    void theSameModeDoesNotRestart() {
        Script script;
        script.calculated = 12.0;
        CpuUsageSampler sampler(Factory(&script));
        sampler.SetMode(0);
        sampler.Sample();
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 12);
    }

    void anotherModeRestarts() {
        Script script;
        script.calculated = 12.0;
        CpuUsageSampler sampler(Factory(&script));
        sampler.SetMode(0);
        sampler.Sample();
        QCOMPARE(sampler.Sample(), 12);
        sampler.SetMode(255);
        QCOMPARE(sampler.Sample(), 0);
        QCOMPARE(sampler.Sample(), 12);
    }

    void theFirstModeIsOne() {
        Script script;
        script.calculated = 12.0;
        CpuUsageSampler sampler(Factory(&script));
        sampler.Sample();
        sampler.SetMode(1);
        QCOMPARE(sampler.Sample(), 12);
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 0);
    }

    void cutsAndClamps_data() {
        QTest::addColumn<double>("calculated");
        QTest::addColumn<qint32>("percent");
        QTest::newRow("cut, not rounded") << 37.99 << 37;
        QTest::newRow("just over a hundred") << 100.9 << 100;
        QTest::newRow("a processor above its base frequency") << 112.4 << 100;
        QTest::newRow("a hundred") << 100.0 << 100;
        QTest::newRow("nothing") << 0.0 << 0;
        QTest::newRow("cut towards zero from below") << -0.9 << 0;
        QTest::newRow("no lower clamp") << -3.7 << -3;
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << 0;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << 0;
        QTest::newRow("infinite below") << -std::numeric_limits<double>::infinity() << 0;
        QTest::newRow("more than an integer holds") << 2147483648.0 << 0;
        QTest::newRow("the largest integer") << 2147483647.5 << 100;
        QTest::newRow("the smallest integer") << -2147483648.9 << std::numeric_limits<qint32>::min();
        QTest::newRow("less than an integer holds") << -2147483649.0 << 0;
    }
    void cutsAndClamps() {
        QFETCH(double, calculated);
        QFETCH(qint32, percent);
        Script script;
        script.calculated = calculated;
        CpuUsageSampler sampler(Factory(&script));
        sampler.SetMode(0);
        sampler.Sample();
        QCOMPARE(sampler.Sample(), percent);
    }

    void nothingStaysOpenBetweenCalls() {
        Script script;
        CpuUsageSampler sampler(Factory(&script));
        sampler.SetMode(0);
        sampler.Sample();
        QCOMPARE(script.open, 0);
        sampler.Sample();
        QCOMPARE(script.opened, 2);
        QCOMPARE(script.open, 0);
    }

    void tellsWhetherTheCounterWasRead() {
        Script script;
        script.calculated = 12.0;
        CpuUsageSampler sampler(Factory(&script));
        sampler.SetMode(0);
        for (const quint32 status : {0U, 1U}) {
            script.status = status;
            sampler.Sample();
            QVERIFY(sampler.HasRead());
        }
        script.status = kCpuSampleNoData;
        sampler.Sample();
        QVERIFY(!sampler.HasRead());
        script.status = 1;
        sampler.Sample();
        QVERIFY(sampler.HasRead());
    }

    // Where the counter can be read, a busy processor shows.
    void thisMachineGivesAPercentage() {
        CpuUsageSampler sampler;
        sampler.SetMode(0);
        QCOMPARE(sampler.Sample(), 0);
        if (!sampler.HasRead()) {
            QCOMPARE(sampler.Sample(), 0);
            return;
        }
        qint32 percent = 0;
        const auto sampleAfterWork = [&sampler, &percent] {
            const QDeadlineTimer work(20);
            while (!work.hasExpired()) {
            }
            return percent = sampler.Sample();
        };
        QTRY_VERIFY(sampleAfterWork() > 0);
        QVERIFY2(percent <= 100, qPrintable(QString::number(percent)));
    }
};

KIVO_APPLESS_TEST(TestCpuUsageSampler)
#include "tst_cpu_usage_sampler.moc"
