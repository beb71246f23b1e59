#include <windows.h>

#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

#include "main/console.h"
#include "session/quit_signals.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr char kAsChild[] = "--as-child";

// The test once more, as a program with windows is started from a console: without one, without streams.
// Tells in the file that argv[1] names which code page its console has, before and after it has let go of it;
// 0 is no console.
int RunAsChild(int /*argc*/, char** argv) {
    UseParentConsole();
    const UINT attached = GetConsoleOutputCP();
    LeaveParentConsole();
    const UINT alone = GetConsoleOutputCP();
    QFile file(QString::fromLocal8Bit(argv[1]));
    return file.open(QIODevice::WriteOnly) &&
                   file.write(QByteArray::number(attached) + ' ' + QByteArray::number(alone)) > 0
               ? 0
               : 1;
}
const test::RegisteredRole kChild(kAsChild, RunAsChild);

}  // namespace

// The console a program was started from.
class TestConsoleEvents : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        FreeConsole();  // one of its own, that no other program listens to
        QVERIFY2(AllocConsole() != 0, qPrintable(QString::number(GetLastError())));
    }

    void CtrlCAsksToQuit() {
        SetConsoleCtrlHandler(nullptr, FALSE);  // a parent may have switched Ctrl+C off
        const QuitSignals quitSignals;
        QSignalSpy asked(&quitSignals, &QuitSignals::quitRequested);
        QVERIFY(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0) != 0);
        QVERIFY(asked.wait(10000));
        QCOMPARE(asked.count(), 1);
    }

    void ConsoleIsUsedAndGivenBackAsItWas() {
        constexpr UINT kWesternEurope = 850;
        QVERIFY(SetConsoleOutputCP(kWesternEurope) != 0);
        const QTemporaryDir folder;
        const QString told = folder.filePath(QStringLiteral("told"));
        QProcess child;
        child.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments* arguments) {
            arguments->flags |= DETACHED_PROCESS;
            arguments->startupInfo->dwFlags &= ~DWORD(STARTF_USESTDHANDLES);
        });
        child.start(QCoreApplication::applicationFilePath(), {QLatin1String(kAsChild), told});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitCode(), 0);
        QFile file(told);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("65001 0"));
        QCOMPARE(GetConsoleOutputCP(), kWesternEurope);
    }
};

KIVO_GUILESS_TEST(TestConsoleEvents)

#include "tst_console_events.moc"
