#include <QtTest>

#include "outside_caller.h"
#include "session/outside_control.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The running copy's side of the channel, against callers of every kind.
class TestOutsideControl : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void RequestIsTakenAndAnswered();
    void AnswerMayComeLater();
    void RefusalIsToldInOneLine();
    void WhatIsNoRequestIsDismissed_data();
    void WhatIsNoRequestIsDismissed();
    void RequestThatNobodyUnderstandsIsAnswered();
    void RequestOfACallerThatHasGoneIsNotTaken();
    void LateAnswerToACallerThatHasGoneIsDropped();
    void NobodyListens();
    void NextCopyListensOnceTheFirstHasClosed();
    void ManyRequestsAreTakenEach();

private:
    // What was asked for is kept, and answered at once.
    void Open(OutsideControl& control);

    std::unique_ptr<OutsideFolder> m_folder;
    QVector<OutsideCommands> m_taken;
    OutsideAnswer m_answer;
};

#define TRY_OVER(caller) QTRY_VERIFY_WITH_TIMEOUT((caller).IsOver(), 40000)

void TestOutsideControl::init() {
    m_folder = std::make_unique<OutsideFolder>();
    QVERIFY(m_folder->IsValid());
    m_answer = {true, QString()};
}

void TestOutsideControl::cleanup() {
    m_taken.clear();
    m_folder.reset();
}

void TestOutsideControl::Open(OutsideControl& control) {
    control.Open([this](const OutsideCommands& commands, const OutsideReply& reply) {
        m_taken.append(commands);
        reply.give(m_answer);
    });
    QVERIFY(control.IsListening());
}

void TestOutsideControl::RequestIsTakenAndAnswered() {
    OutsideControl control;
    Open(control);
    const OutsideCommands commands = Asked(OutsideKind::Text, "早上好");
    const OutsideCaller caller(commands);
    TRY_OVER(caller);
    QVERIFY(caller.State() == ChannelReply::State::Answered);
    QVERIFY(caller.Answer()->isTaken);
    QCOMPARE(m_taken.size(), 1);
    QVERIFY(m_taken[0] == commands);
    QTRY_COMPARE(control.CallerCount(), 0);
}

void TestOutsideControl::AnswerMayComeLater() {
    OutsideControl control;
    OutsideReply kept;
    control.Open([&kept](const OutsideCommands&, const OutsideReply& reply) { kept = reply; });
    const OutsideCaller first(Asked(OutsideKind::Theme, "1"));
    QTRY_VERIFY_WITH_TIMEOUT(kept.give, 30000);
    const OutsideReply firstReply = kept;
    QVERIFY(firstReply.isAwaited());
    // Another one meanwhile.
    const OutsideCaller second(Asked(OutsideKind::Theme, "2"));
    QTRY_COMPARE_WITH_TIMEOUT(control.CallerCount(), 2, 30000);
    QVERIFY(!first.IsOver());
    firstReply.give({true, QString()});
    TRY_OVER(first);
    QVERIFY(first.Answer()->isTaken);
    kept.give({true, QString()});
    TRY_OVER(second);
    QVERIFY(!firstReply.isAwaited());
}

void TestOutsideControl::RefusalIsToldInOneLine() {
    OutsideControl control;
    Open(control);
    m_answer = {false, QStringLiteral("There is no room.")};
    const OutsideCaller caller(Asked(OutsideKind::Show));
    TRY_OVER(caller);
    QVERIFY(!caller.Answer()->isTaken);
    QCOMPARE(caller.Answer()->line, QStringLiteral("There is no room."));
}

void TestOutsideControl::WhatIsNoRequestIsDismissed_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("another language") << QByteArray("GET / HTTP/1.1\r\n\r\n");
    QTest::newRow("another version") << QByteArray("KIVO\2\1\0\0x", 9);
    QTest::newRow("a length without end") << QByteArray("KIVO\1\xff\xff\xff", 8);
    QTest::newRow("a flood") << QByteArray(4 * 1024 * 1024, 'K');
    QTest::newRow("more than was said") << OutsideRequest(Asked(OutsideKind::Show)) + QByteArray(100, 'x');
}

void TestOutsideControl::WhatIsNoRequestIsDismissed() {
    QFETCH(QByteArray, bytes);
    OutsideControl control;
    Open(control);
    const OutsideCaller caller(bytes);
    TRY_OVER(caller);
    QVERIFY(caller.State() == ChannelReply::State::Silent);
    QTRY_COMPARE(control.CallerCount(), 0);
    QVERIFY(m_taken.isEmpty());
}

void TestOutsideControl::RequestThatNobodyUnderstandsIsAnswered() {
    OutsideControl control;
    Open(control);
    const OutsideCaller caller(QByteArray("KIVO\1\5\0\0quit\0", 13));
    TRY_OVER(caller);
    QVERIFY(caller.Answer() && !caller.Answer()->isTaken && !caller.Answer()->line.isEmpty());
    QVERIFY(m_taken.isEmpty());
}

void TestOutsideControl::RequestOfACallerThatHasGoneIsNotTaken() {
    OutsideControl control;
    Open(control);
    // No event comes meanwhile, as in a copy that hangs.
    const ChannelReply reply =
        CallChannel(OutsideRequest(Asked(OutsideKind::Theme, "3")), IsWholeMessage, QDeadlineTimer(50));
    QVERIFY(reply.state == ChannelReply::State::Silent);
    const OutsideCaller next(Asked(OutsideKind::Theme, "1"));
    TRY_OVER(next);
    QCOMPARE(m_taken.size(), 1);
    QVERIFY(m_taken[0] == Asked(OutsideKind::Theme, "1"));
    QTRY_COMPARE(control.CallerCount(), 0);
}

void TestOutsideControl::LateAnswerToACallerThatHasGoneIsDropped() {
    OutsideReply kept;
    {
        OutsideControl control;
        control.Open([&kept](const OutsideCommands&, const OutsideReply& reply) { kept = reply; });
        const OutsideCaller caller(OutsideRequest(Asked(OutsideKind::Show)), 2000);
        QTRY_VERIFY_WITH_TIMEOUT(kept.give, 30000);
        TRY_OVER(caller);
        QTRY_VERIFY(!kept.isAwaited());
        kept.give({true, QString()});
    }
    QVERIFY(!kept.isAwaited());
    kept.give({true, QString()});
}

void TestOutsideControl::NobodyListens() {
    const QByteArray request = OutsideRequest(Asked(OutsideKind::Show));
    QVERIFY(CallChannel(request, IsWholeMessage, QDeadlineTimer(1000)).state == ChannelReply::State::Nobody);
    OutsideControl control;
    Open(control);
    control.Close();
    QVERIFY(CallChannel(request, IsWholeMessage, QDeadlineTimer(1000)).state == ChannelReply::State::Nobody);
}

void TestOutsideControl::NextCopyListensOnceTheFirstHasClosed() {
    OutsideControl first;
    Open(first);
    OutsideControl second;
    second.Open([](const OutsideCommands&, const OutsideReply& reply) { reply.give({true, QString()}); });
    QVERIFY(!second.IsListening());
    first.Close();
    QTRY_VERIFY_WITH_TIMEOUT(second.IsListening(), 30000);
    const OutsideCaller caller(Asked(OutsideKind::Show));
    TRY_OVER(caller);
    QVERIFY(caller.Answer()->isTaken);
    QVERIFY(m_taken.isEmpty());
}

void TestOutsideControl::ManyRequestsAreTakenEach() {
    OutsideControl control;
    Open(control);
    for (int round = 0; round < 20; ++round) {
        std::vector<std::unique_ptr<OutsideCaller>> callers;
        for (int number = 0; number < 10; ++number) {
            callers.push_back(std::make_unique<OutsideCaller>(Asked(OutsideKind::Theme, "1")));
        }
        for (const auto& caller : callers) {
            TRY_OVER(*caller);
            QVERIFY(caller->Answer() && caller->Answer()->isTaken);
        }
    }
    QCOMPARE(m_taken.size(), 200);
    QTRY_COMPARE(control.CallerCount(), 0);
}

KIVO_GUILESS_TEST(TestOutsideControl)
#include "tst_outside_control.moc"
