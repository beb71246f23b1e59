#include <windows.h>

#include <QSignalSpy>
#include <QtTest>

#include "app/quit_signals.h"

using namespace kivo;

// A program started from a console hears that console's Ctrl+C.
class TestConsoleEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void CtrlCAsksToQuit() {
        FreeConsole();  // one of its own, that no other program listens to
        QVERIFY2(AllocConsole() != 0, qPrintable(QString::number(GetLastError())));
        SetConsoleCtrlHandler(nullptr, FALSE);  // a parent may have switched Ctrl+C off
        const QuitSignals quitSignals;
        QSignalSpy asked(&quitSignals, &QuitSignals::quitRequested);
        QVERIFY(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != 0);
        QVERIFY(asked.wait(10000));
        QCOMPARE(asked.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestConsoleEvents)
#include "tst_console_events.moc"
