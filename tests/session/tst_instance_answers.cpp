#include <QtTest>
#include <memory>
#include <vector>

#include "instance_copies.h"
#include "support/test_program.h"

using kivo::test::Copy;

// What comes of a start that meets a running copy: whatever that does, a copy runs afterwards, and the
// start's request is met.
class TestInstanceAnswers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void RunningCopyComesToTheFront();
    void CopyThatEndsIsReplaced_data();
    void CopyThatEndsIsReplaced();
    void CopyThatAnsweredAndEndedIsReplaced();
    void OneOfSeveralStartsTakesThePlace();
    void CopyThatHasLetGoMissesItsSuccessorsRequests();
    void CopyThatIsSilentIsNotReplaced();
    void SoftwarePanelGivesWayToTheScreen();
    void SoftwarePanelStaysForAnOrdinaryStart();
    void BusySoftwarePanelSaysThatItStays();
    void AnswerThatNobodyReadsIsNoRequest();
    void LesserRequestDoesNotHideAGreaterOne_data();
    void LesserRequestDoesNotHideAGreaterOne();
    void RequestToGiveWayEndsWithItsStart();
};

void TestInstanceAnswers::RunningCopyComesToTheFront() {
    for (const char* start : {"start", "start for the screen"}) {
        Copy first;
        QCOMPARE(first.Ask("start"), QByteArray("first"));
        Copy second;
        QCOMPARE(second.Ask(start), QByteArray("second"));
        second.Tell("answer");
        QCOMPARE(first.Ask("poll"), QByteArray("asked"));
        QCOMPARE(second.Answer(), QByteArray("comes"));
        QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
        QCOMPARE(second.End(), 0);
        QCOMPARE(first.End(), 0);
    }
}

void TestInstanceAnswers::CopyThatEndsIsReplaced_data() {
    QTest::addColumn<QByteArray>("how");
    QTest::newRow("workers still end") << QByteArray("let go");
    QTest::newRow("process ends") << QByteArray("end");
    QTest::newRow("killed") << QByteArray("kill");
}

void TestInstanceAnswers::CopyThatEndsIsReplaced() {
    QFETCH(QByteArray, how);
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    Copy second;
    QCOMPARE(second.Ask("start"), QByteArray("second"));
    second.Tell("answer");
    if (how == "let go") {
        QCOMPARE(first.Ask("let go"), QByteArray("ending"));
    } else {
        QVERIFY(how == "end" ? first.End() == 0 : first.Kill());
    }
    QCOMPARE(second.Answer(), QByteArray("took place"));
    // What it asked the other copy for is its own to do.
    QCOMPARE(second.Ask("poll"), QByteArray("asked"));
    QCOMPARE(second.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(second.Ask("poll"), QByteArray("asked"));
}

void TestInstanceAnswers::CopyThatAnsweredAndEndedIsReplaced() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    Copy second;
    QCOMPARE(second.Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
    QCOMPARE(first.Ask("let go"), QByteArray("ending"));
    QCOMPARE(second.Ask("answer"), QByteArray("took place"));
}

void TestInstanceAnswers::OneOfSeveralStartsTakesThePlace() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    std::vector<std::unique_ptr<Copy>> starts;
    for (int k = 0; k < 5; ++k) {
        starts.push_back(std::make_unique<Copy>());
        QCOMPARE(starts.back()->Ask("start"), QByteArray("second"));
    }
    for (const auto& start : starts) {
        start->Tell("answer");
    }
    QCOMPARE(first.End(), 0);
    // The others wait for the new first copy, which can be told only by whoever has answered.
    Copy* next = nullptr;
    while (next == nullptr) {
        for (const auto& start : starts) {
            next = start->HasAnswer() ? start.get() : next;
        }
    }
    QCOMPARE(next->Answer(), QByteArray("took place"));
    QCOMPARE(next->Ask("poll"), QByteArray("asked"));
    for (const auto& start : starts) {
        if (start.get() != next) {
            QCOMPARE(start->Answer(), QByteArray("comes"));
        }
    }
}

void TestInstanceAnswers::CopyThatHasLetGoMissesItsSuccessorsRequests() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    QCOMPARE(first.Ask("let go"), QByteArray("ending"));
    Copy next;
    QCOMPARE(next.Ask("start"), QByteArray("first"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(first.Ask("poll"), QByteArray("quiet"));
    QCOMPARE(next.Ask("poll"), QByteArray("asked"));
    QCOMPARE(first.End(), 0);
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(next.Ask("poll"), QByteArray("asked"));
}

void TestInstanceAnswers::CopyThatIsSilentIsNotReplaced() {
    Copy first;
    QCOMPARE(first.Ask("start"), QByteArray("first"));
    Copy second;
    QCOMPARE(second.Ask("start"), QByteArray("second"));
    QCOMPARE(second.Ask("answer now"), QByteArray("silence"));
    QCOMPARE(second.End(), 0);
    // It comes as soon as it can.
    QCOMPARE(first.Ask("poll"), QByteArray("asked"));
}

void TestInstanceAnswers::SoftwarePanelGivesWayToTheScreen() {
    Copy panel;
    QCOMPARE(panel.Ask("start"), QByteArray("first"));
    Copy screen;
    QCOMPARE(screen.Ask("start for the screen"), QByteArray("second"));
    screen.Tell("answer");
    QCOMPARE(panel.Ask("poll on a panel"), QByteArray("gives way"));
    QCOMPARE(screen.Answer(), QByteArray("took place"));
    QCOMPARE(panel.Ask("poll on a panel"), QByteArray("quiet"));
    QCOMPARE(screen.Ask("poll"), QByteArray("asked"));
    QCOMPARE(panel.End(), 0);
    QCOMPARE(Copy().Ask("start for the screen"), QByteArray("second"));
}

void TestInstanceAnswers::SoftwarePanelStaysForAnOrdinaryStart() {
    Copy panel;
    QCOMPARE(panel.Ask("start"), QByteArray("first"));
    Copy second;
    QCOMPARE(second.Ask("start"), QByteArray("second"));
    QCOMPARE(panel.Ask("poll on a panel"), QByteArray("asked"));
    QCOMPARE(second.Ask("answer"), QByteArray("comes"));
}

void TestInstanceAnswers::BusySoftwarePanelSaysThatItStays() {
    Copy panel;
    QCOMPARE(panel.Ask("start"), QByteArray("first"));
    for (int k = 0; k < 2; ++k) {
        Copy screen;
        QCOMPARE(screen.Ask("start for the screen"), QByteArray("second"));
        Copy another;
        QCOMPARE(another.Ask("start for the screen"), QByteArray("second"));
        QCOMPARE(panel.Ask("poll on a panel, busy"), QByteArray("asked"));
        QCOMPARE(screen.Ask("answer"), QByteArray("stays"));
        QCOMPARE(another.Ask("answer"), QByteArray("stays"));
        QCOMPARE(panel.Ask("poll on a panel"), QByteArray("quiet"));
    }
    // When it is done, the next start gets what it asks for.
    Copy screen;
    QCOMPARE(screen.Ask("start for the screen"), QByteArray("second"));
    QCOMPARE(panel.Ask("poll on a panel"), QByteArray("gives way"));
    QCOMPARE(screen.Ask("answer"), QByteArray("took place"));
}

void TestInstanceAnswers::AnswerThatNobodyReadsIsNoRequest() {
    Copy panel;
    QCOMPARE(panel.Ask("start"), QByteArray("first"));
    Copy screen;
    QCOMPARE(screen.Ask("start for the screen"), QByteArray("second"));
    QCOMPARE(panel.Ask("poll on a panel, busy"), QByteArray("asked"));
    QVERIFY(screen.Kill());
    QCOMPARE(panel.Ask("poll on a panel"), QByteArray("quiet"));
    QCOMPARE(Copy().Ask("start"), QByteArray("second"));
    QCOMPARE(panel.Ask("poll on a panel"), QByteArray("asked"));
}

void TestInstanceAnswers::LesserRequestDoesNotHideAGreaterOne_data() {
    QTest::addColumn<QByteArray>("earlier");
    QTest::addColumn<QByteArray>("later");
    QTest::newRow("lesser one later") << QByteArray("start for the screen") << QByteArray("start");
    QTest::newRow("lesser one earlier") << QByteArray("start") << QByteArray("start for the screen");
}

void TestInstanceAnswers::LesserRequestDoesNotHideAGreaterOne() {
    QFETCH(QByteArray, earlier);
    QFETCH(QByteArray, later);
    Copy panel;
    QCOMPARE(panel.Ask("start"), QByteArray("first"));
    Copy one;
    QCOMPARE(one.Ask(earlier.constData()), QByteArray("second"));
    Copy other;
    QCOMPARE(other.Ask(later.constData()), QByteArray("second"));
    QCOMPARE(panel.Ask("poll on a panel, busy"), QByteArray("asked"));
    Copy& forScreen = earlier == "start" ? other : one;
    Copy& ordinary = earlier == "start" ? one : other;
    QCOMPARE(ordinary.Ask("answer"), QByteArray("comes"));
    QCOMPARE(forScreen.Ask("answer"), QByteArray("stays"));
}

void TestInstanceAnswers::RequestToGiveWayEndsWithItsStart() {
    Copy panel;
    QCOMPARE(panel.Ask("start"), QByteArray("first"));
    Copy screen;
    QCOMPARE(screen.Ask("start for the screen"), QByteArray("second"));
    QCOMPARE(screen.Ask("answer now"), QByteArray("silence"));
    QCOMPARE(screen.End(), 0);
    // Nobody would take its place.
    QCOMPARE(panel.Ask("poll on a panel"), QByteArray("asked"));
}

KIVO_GUILESS_TEST(TestInstanceAnswers)
#include "tst_instance_answers.moc"
