#include <QtTest>
#include <memory>

#include "../session/instance_copies.h"
#include "support/test_program.h"

using kivo::test::Copy;

// Copies of the program that are killed or stopped while they hold what all copies share. Windows gives a
// semaphore back for nobody.
class TestInstanceGuard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void SecondCopyWakesTheFirst();
    void CopyKilledInside_data();
    void CopyKilledInside();
    void CopyKilledWhileOthersWait();
    void CopiesKilledAtAnyMoment();
    void CopyThatIsStoppedInsideHoldsNobodyUp();
};

void TestInstanceGuard::SecondCopyWakesTheFirst() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    for (int k = 0; k < 2; ++k) {
        Copy second;
        QCOMPARE(second.Ask("start"), QByteArray("second"));
        QCOMPARE(second.End(), 0);
        QCOMPARE(first.Ask("poll"), QByteArray("asked"));
        QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    }
    QCOMPARE(first.End(), 0);
    QCOMPARE(Copy().Ask("start"), QByteArray("first"));
}

void TestInstanceGuard::CopyKilledInside_data() {
    QTest::addColumn<QByteArray>("inside");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("with the semaphore") << QByteArray("hold") << QByteArray("holding");
    QTest::newRow("before the semaphore") << QByteArray("guard") << QByteArray("guarding");
}

void TestInstanceGuard::CopyKilledInside() {
    QFETCH(QByteArray, inside);
    QFETCH(QByteArray, answer);
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    for (int k = 0; k < 2; ++k) {
        Copy holder;
        QCOMPARE(holder.Ask(inside.constData()), answer);
        QVERIFY(holder.Kill());
        // The running copy's window would stand still for ever.
        QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
        QCOMPARE(Copy().Ask("start"), QByteArray("second"));
        QCOMPARE(first.Ask("poll"), QByteArray("asked"));
        Copy next;
        QCOMPARE(next.Ask(inside.constData()), answer);
        QVERIFY(next.Kill());
        // Now a start comes upon it first.
        QCOMPARE(Copy().Ask("start"), QByteArray("second"));
        QCOMPARE(first.Ask("poll"), QByteArray("asked"));
    }
}

void TestInstanceGuard::CopyKilledWhileOthersWait() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    Copy waiting;
    QVERIFY(waiting.WaitStarted());
    Copy holder;
    QCOMPARE(holder.Ask("hold"), QByteArray("holding"));
    waiting.Tell("start");
    QVERIFY(holder.Kill());
    QCOMPARE(waiting.Answer(), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

void TestInstanceGuard::CopiesKilledAtAnyMoment() {
    constexpr quint32 kStartUs = 5000;
    QRandomGenerator random(20260);
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    for (int k = 0; k < 8; ++k) {
        Copy victim;
        // It is up and about to start.
        QCOMPARE(victim.Ask("ready"), QByteArray("ready"));
        victim.Tell("start");
        QThread::usleep(random.bounded(kStartUs));
        QVERIFY(victim.Kill());
        QVERIFY(first.Ask("poll") != "no answer");
    }
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

void TestInstanceGuard::CopyThatIsStoppedInsideHoldsNobodyUp() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    Copy holder;
    QCOMPARE(holder.Ask("hold"), QByteArray("holding"));
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    // It cannot know, and a program that does not start is worse than two.
    QCOMPARE(Copy().Ask("start"), QByteArray("first"));
    QVERIFY(holder.Kill());
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

KIVO_GUILESS_TEST(TestInstanceGuard)
#include "tst_instance_guard.moc"
