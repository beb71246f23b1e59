#include <QtTest>

#include "support/test_program.h"
#include "telemetry/sleep_watch.h"

using namespace kivo;
using namespace std::chrono_literals;

class TestSleepWatch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void SystemThatNeverSlept() {
        SleepWatch watch;
        for (int reading = 0; reading < 5; ++reading) {
            QVERIFY(!watch.HasSlept(0s));
        }
    }

    void SleepBeforeTheStartDoesNotCount() {
        SleepWatch watch;
        QVERIFY(!watch.HasSlept(9h));
        QVERIFY(!watch.HasSlept(9h));
    }

    void EverySleepCountsOnce() {
        SleepWatch watch;
        QVERIFY(!watch.HasSlept(9h));
        QVERIFY(watch.HasSlept(9h + 1s));
        QVERIFY(!watch.HasSlept(9h + 1s));
        QVERIFY(watch.HasSlept(20h));
        QVERIFY(!watch.HasSlept(20h));
    }

    void UnsteadyReadingsAreNoSleep() {
        SleepWatch watch;
        QVERIFY(!watch.HasSlept(9h));
        for (int reading = 0; reading < 100; ++reading) {
            QVERIFY(!watch.HasSlept(9h + 3ms));
            QVERIFY(!watch.HasSlept(9h));
        }
    }

    void SlowDriftIsNoSleep() {
        SleepWatch watch;
        for (int reading = 0; reading < 1000; ++reading) {
            QVERIFY(!watch.HasSlept(9h + reading * 10ms));
        }
    }
};

KIVO_GUILESS_TEST(TestSleepWatch)
#include "tst_sleep_watch.moc"
