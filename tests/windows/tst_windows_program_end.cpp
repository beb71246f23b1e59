#include <QThread>
#include <QtTest>
#include <atomic>
#include <memory>

#include "support/test_program.h"
#include "windows_desk.h"
#include "windows_program.h"

using namespace kivo;
using namespace kivo::test;

// How the program ends: by itself, with the session, while it is asked or still starts.
class TestWindowsProgramEnd : public WindowsProgram {
    Q_OBJECT

private Q_SLOTS:
    void EndClosesTheHelperWindow();
    void HelperWindowThatDoesNotAnswer();
    void EndOfTheSessionEndsIt();
    void EndOfTheSessionThatIsCalledOff();
    void EndOfTheSessionWhileTheExitIsAskedFor();
    void EndOfTheSessionWhileItStarts();
};

void TestWindowsProgramEnd::EndClosesTheHelperWindow() {
    const HelperWindow helper;
    QVERIFY(helper.window != nullptr);
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Reports().size() > 0, kPatienceMs);
    // A second copy never had a window of its own, and closes nobody's.
    std::atomic<bool> endedWell{false};
    const std::unique_ptr<QThread> starter(QThread::create([&] { endedWell = SecondCopyEndsWell(); }));
    starter->start();
    QTRY_VERIFY_WITH_TIMEOUT(starter->isFinished(), kPatienceMs);
    QVERIFY(endedWell);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    QCOMPARE(helperCloseMessages, 0);
    SendMessageW(Window(), WM_ENDSESSION, TRUE, 0);
    QTRY_COMPARE_WITH_TIMEOUT(int(m_process->state()), int(QProcess::NotRunning), kPatienceMs);
    QCOMPARE(helperCloseMessages, 1);
}

void TestWindowsProgramEnd::HelperWindowThatDoesNotAnswer() {
    const HelperWindow helper;
    QVERIFY(helper.window != nullptr);
    Start({QStringLiteral("--run-for"), QStringLiteral("3")});
    // Nobody looks at this window's messages meanwhile.
    QVERIFY(EndsWell());
    QCOMPARE(helperCloseMessages, 0);
}

void TestWindowsProgramEnd::EndOfTheSessionEndsIt() {
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Window() != nullptr && IsMarked(), kPatienceMs);
    // An ordinary close only hides it.
    SendMessageW(Window(), WM_CLOSE, 0, 0);
    QTest::qWait(1000);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    QVERIFY(EndsWellWithTheSession());
}

void TestWindowsProgramEnd::EndOfTheSessionThatIsCalledOff() {
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Window() != nullptr && IsMarked(), kPatienceMs);
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    SendMessageW(Window(), WM_ENDSESSION, FALSE, 0);
    const quint64 areas = Panel().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > areas + 5, kPatienceMs);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    // It is as before: a close only hides it, and an end that comes does end it.
    SendMessageW(Window(), WM_CLOSE, 0, 0);
    QTest::qWait(1000);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    QVERIFY(EndsWellWithTheSession());
}

void TestWindowsProgramEnd::EndOfTheSessionWhileTheExitIsAskedFor() {
    Mark(QByteArray("true\0", 5));
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 12, kPatienceMs);
    QVERIFY(SecondCopyEndsWell());
    QTRY_VERIFY_WITH_TIMEOUT(IsWindowVisible(Window()) && GetForegroundWindow() == Window(), kPatienceMs);
    // The exit button, by hand; the box that asks disables the window.
    RECT place = {};
    QVERIFY(GetWindowRect(Window(), &place) != 0);
    QTRY_VERIFY_WITH_TIMEOUT((ClickAt(place.left + 918, place.top + 19), !IsWindowEnabled(Window())),
                             kPatienceMs);
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    QVERIFY(EndsWellWithTheSession());
}

// Told once, as soon as there is a window: before the event loop runs, or just after.
void TestWindowsProgramEnd::EndOfTheSessionWhileItStarts() {
    Mark(QByteArray("true\0", 5));
    for (int time = 0; time < 3; ++time) {
        Start();
        QElapsedTimer timer;
        timer.start();
        while (Window() == nullptr && timer.elapsed() < kPatienceMs) {
            Sleep(0);
        }
        SendMessageW(Window(), WM_ENDSESSION, TRUE, 0);
        QVERIFY(EndsWell());
    }
}

KIVO_GUILESS_TEST(TestWindowsProgramEnd)
#include "tst_windows_program_end.moc"
