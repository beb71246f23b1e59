#include <QtTest>

#include "panel/retry_schedule.h"
#include "support/test_program.h"

using namespace kivo;
using std::chrono::milliseconds;
using std::chrono::seconds;

// When something that was refused is tried again.
class TestRetrySchedule : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void NothingFailedIsDueAtOnce();
    void EachFailureWaitsLonger();
    void TheWaitBeginsAtTheFailure();
    void ANewScheduleStartsOver();
};

void TestRetrySchedule::NothingFailedIsDueAtOnce() {
    const RetrySchedule schedule;
    QVERIFY(!schedule.HasFailed());
    QVERIFY(schedule.IsDue(milliseconds(0)));
    QVERIFY(schedule.IsDue(seconds(1000000)));
}

void TestRetrySchedule::EachFailureWaitsLonger() {
    RetrySchedule schedule;
    milliseconds now(12345);
    for (const int wait : {1, 2, 5, 15, 60, 60, 60}) {
        schedule.NoteFailure(now);
        QVERIFY(schedule.HasFailed());
        QVERIFY(!schedule.IsDue(now));
        QVERIFY(!schedule.IsDue(now + seconds(wait) - milliseconds(1)));
        now += seconds(wait);
        QVERIFY(schedule.IsDue(now));
    }
}

void TestRetrySchedule::TheWaitBeginsAtTheFailure() {
    RetrySchedule schedule;
    schedule.NoteFailure(seconds(10));
    // Tried long after it was due.
    schedule.NoteFailure(seconds(100));
    QVERIFY(!schedule.IsDue(seconds(101)));
    QVERIFY(schedule.IsDue(seconds(102)));
}

void TestRetrySchedule::ANewScheduleStartsOver() {
    RetrySchedule schedule;
    for (int k = 0; k < 5; ++k) {
        schedule.NoteFailure(seconds(k));
    }
    schedule = {};
    QVERIFY(!schedule.HasFailed());
    schedule.NoteFailure(seconds(10));
    QVERIFY(schedule.IsDue(seconds(11)));
}

KIVO_GUILESS_TEST(TestRetrySchedule)
#include "tst_retry_schedule.moc"
