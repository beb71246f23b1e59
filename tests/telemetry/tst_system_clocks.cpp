#include <QtTest>

#include "support/test_program.h"
#include "telemetry/sleep_watch.h"
#include "telemetry/system_clocks.h"

using namespace kivo;
using namespace std::chrono_literals;

class TestSystemClocks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // By about as much as the steady clock: a millisecond is no microsecond.
    void TimeAwakePasses() {
        const auto steadyBefore = std::chrono::steady_clock::now();
        const SystemClocks before = ReadSystemClocks();
        QVERIFY(before.awake > 0ns);
        SystemClocks after = before;
        QTRY_VERIFY((after = ReadSystemClocks()).awake - before.awake > 100ms);
        const auto passed = std::chrono::steady_clock::now() - steadyBefore;
        QVERIFY(after.awake - before.awake < passed + 50ms);
    }

    void NoTimeAsleepPassesWhileAwake() {
        SleepWatch watch;
        const SystemClocks before = ReadSystemClocks();
        QVERIFY(before.asleep > -1s);
        QVERIFY(!watch.HasSlept(before.asleep));
        QTRY_VERIFY(ReadSystemClocks().awake > before.awake + 20ms);
        QVERIFY(!watch.HasSlept(ReadSystemClocks().asleep));
    }
};

KIVO_GUILESS_TEST(TestSystemClocks)
#include "tst_system_clocks.moc"
