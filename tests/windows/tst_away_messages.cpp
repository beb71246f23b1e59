#include <windows.h>

#include <wtsapi32.h>

#include <QtTest>
#include <memory>

#include "session/away_watch.h"
#include "support/test_program.h"

using namespace kivo;

// What the system tells of a person who is away, as messages to the watch's own window.
class TestAwayMessages : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_watch.reset(); }
    void LockIsToldOnce();
    void SleepIsToldBeforeTheMessageReturns();
    void WakeUpIsToldOnce();
    void OtherMessagesSayNothing();
    void WindowGoesWithTheWatch();

private:
    LRESULT Send(UINT message, WPARAM what) const { return SendMessageW(m_window, message, what, 0); }

    std::unique_ptr<AwayWatch> m_watch;
    HWND m_window = nullptr;
    QStringList m_told;
};

namespace {

// The watch's window among those of this thread.
HWND WatchWindow() {
    HWND found = nullptr;
    EnumThreadWindows(
        GetCurrentThreadId(),
        [](HWND window, LPARAM result) -> BOOL {
            wchar_t name[64] = {};
            GetClassNameW(window, name, 64);
            if (QString::fromWCharArray(name) != QStringLiteral("KivoAwayWatch")) {
                return TRUE;
            }
            *reinterpret_cast<HWND*>(result) = window;
            return FALSE;
        },
        reinterpret_cast<LPARAM>(&found));
    return found;
}

}  // namespace

void TestAwayMessages::init() {
    m_told.clear();
    m_watch = MakeSystemAwayWatch();
    m_window = WatchWindow();
    QVERIFY(m_window != nullptr);
    QVERIFY(IsWindowVisible(m_window) == FALSE);
    connect(m_watch.get(), &AwayWatch::sleeping, this, [this] { m_told.append(QStringLiteral("sleeping")); });
    connect(m_watch.get(), &AwayWatch::awake, this, [this] { m_told.append(QStringLiteral("awake")); });
    connect(m_watch.get(), &AwayWatch::lockedChanged, this, [this](bool isLocked) {
        m_told.append(isLocked ? QStringLiteral("locked") : QStringLiteral("unlocked"));
    });
}

void TestAwayMessages::LockIsToldOnce() {
    Send(WM_WTSSESSION_CHANGE, WTS_SESSION_LOCK);
    Send(WM_WTSSESSION_CHANGE, WTS_SESSION_LOCK);
    QCOMPARE(m_told, QStringList{QStringLiteral("locked")});
    Send(WM_WTSSESSION_CHANGE, WTS_SESSION_UNLOCK);
    QCOMPARE(m_told, (QStringList{QStringLiteral("locked"), QStringLiteral("unlocked")}));
}

void TestAwayMessages::SleepIsToldBeforeTheMessageReturns() {
    Send(WM_POWERBROADCAST, PBT_APMSUSPEND);
    QCOMPARE(m_told, QStringList{QStringLiteral("sleeping")});
    // Less than the two seconds that the system gives.
    QVERIFY(m_watch->LongestInSleeping() > std::chrono::milliseconds(0));
    QVERIFY(m_watch->LongestInSleeping() < std::chrono::milliseconds(2000));
}

void TestAwayMessages::WakeUpIsToldOnce() {
    Send(WM_POWERBROADCAST, PBT_APMSUSPEND);
    Send(WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC);
    Send(WM_POWERBROADCAST, PBT_APMRESUMESUSPEND);
    QCOMPARE(m_told, (QStringList{QStringLiteral("sleeping"), QStringLiteral("awake")}));
}

void TestAwayMessages::OtherMessagesSayNothing() {
    Send(WM_POWERBROADCAST, PBT_APMPOWERSTATUSCHANGE);
    Send(WM_WTSSESSION_CHANGE, WTS_REMOTE_CONNECT);
    Send(WM_NULL, WTS_SESSION_LOCK);
    QCOMPARE(m_told, QStringList());
}

void TestAwayMessages::WindowGoesWithTheWatch() {
    m_watch.reset();
    QVERIFY(WatchWindow() == nullptr);
    // A second one in the same process finds the class already there.
    m_watch = MakeSystemAwayWatch();
    QVERIFY(WatchWindow() != nullptr);
}

KIVO_TEST(TestAwayMessages)
#include "tst_away_messages.moc"
