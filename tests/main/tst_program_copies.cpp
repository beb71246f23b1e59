#include <QProcess>
#include <QtTest>
#include <memory>

#include "../telemetry/energy_library_folders.h"
#include "program_home.h"
#include "support/built_paths.h"
#include "support/test_program.h"

using namespace kivo::test;

// Two copies of the program as processes, one after the other, as a person starts them.
class TestProgramCopies : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void SecondStartEndsAndSaysWhy();
    void ScreenThatIsPluggedInGetsTheSecondStart();
    void SoftwarePanelStaysWithoutAScreen();
    void StartWhileACopyEndsTakesItsPlace();

private:
    void Start(QProcess& process, const QStringList& arguments = {}) const;
    void PlugScreenIn() const;
    bool IsAnyCopyThere() const;

    std::unique_ptr<ProgramHome> m_home;
};

namespace {

// Waits for a line of the process's.
bool Says(QProcess& process, const char* what) {
    QByteArray said;
    do {
        said += process.readAllStandardError();
        if (said.contains(what)) {
            return true;
        }
    } while (process.waitForReadyRead(kLongMs));
    qWarning("It said only: %s", said.constData());
    return false;
}

int CountInFile(const QString& path, const char* what) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().count(what) : 0;
}

}  // namespace

void TestProgramCopies::init() {
    m_home = std::make_unique<ProgramHome>();
    QVERIFY(m_home->IsValid());
    // The first run would be busy with its frame.
    QProcess process;
    Start(process, {QStringLiteral("--virtual-screen"), QStringLiteral("--run-for"), QStringLiteral("1")});
    QCOMPARE(ExitCode(process, kLongMs), 0);
    QVERIFY(!IsAnyCopyThere());
}

void TestProgramCopies::Start(QProcess& process, const QStringList& arguments) const {
    QProcessEnvironment environment = m_home->Environment();
    environment.insert(QStringLiteral("LD_LIBRARY_PATH"), InTestFolder("hidapi"));
    environment.insert(QStringLiteral("KIVO_TEST_SCREEN"), m_home->File(""));
    environment.insert(QStringLiteral("IPG_Dir"), LibraryFolder("calls_hang"));
    environment.insert(QStringLiteral("IPG_Ver"), QStringLiteral("3.6"));
    environment.insert(QStringLiteral("KIVO_TEST_LIBRARY_LOG"), m_home->File("library.log"));
    process.setProcessEnvironment(environment);
    process.setReadChannel(QProcess::StandardError);
    process.start(BuiltProgram("kivo-screen"), arguments);
    QVERIFY(process.waitForStarted());
}

void TestProgramCopies::PlugScreenIn() const {
    QFile plugged(m_home->File("plugged"));
    QVERIFY(plugged.open(QIODevice::WriteOnly));
}

// By the key file of the shared memory.
bool TestProgramCopies::IsAnyCopyThere() const {
    return !QDir(m_home->File("")).entryList({QStringLiteral("qipc_sharedmemory_*")}, QDir::Files).isEmpty();
}

void TestProgramCopies::SecondStartEndsAndSaysWhy() {
    QProcess first;
    Start(first);
    QVERIFY(Says(first, "no screen found"));
    QProcess second;
    Start(second);
    QVERIFY(Says(second, "already running; its window comes to the front.\n"));
    QCOMPARE(ExitCode(second, kLongMs), 0);
    End(first);
}

void TestProgramCopies::ScreenThatIsPluggedInGetsTheSecondStart() {
    QProcess panel;
    Start(panel, {QStringLiteral("--virtual-screen")});
    QTRY_VERIFY(IsAnyCopyThere());
    PlugScreenIn();
    QProcess screen;
    Start(screen);
    QCOMPARE(ExitCode(panel, kLongMs), 0);
    QTRY_VERIFY(IsAnyCopyThere());
    QCOMPARE(screen.state(), QProcess::Running);
    // It is the one that the next start meets.
    QProcess third;
    Start(third);
    QVERIFY(Says(third, "already running; its window comes to the front.\n"));
    End(screen);
    const QByteArray said = screen.readAllStandardError();
    QVERIFY2(!said.contains("already running") && !said.contains("no screen found"), said.constData());
}

void TestProgramCopies::SoftwarePanelStaysWithoutAScreen() {
    QProcess panel;
    Start(panel, {QStringLiteral("--virtual-screen")});
    QTRY_VERIFY(IsAnyCopyThere());
    QProcess second;
    Start(second);
    QVERIFY(Says(second, "already running; its window comes to the front.\n"));
    QVERIFY(HasEnded(second, kLongMs));
    // A second software panel is no reason either.
    PlugScreenIn();
    QProcess third;
    Start(third, {QStringLiteral("--virtual-screen")});
    QVERIFY(Says(third, "already running; its window comes to the front.\n"));
    QVERIFY(HasEnded(third, kLongMs));
    End(panel);
}

void TestProgramCopies::StartWhileACopyEndsTakesItsPlace() {
    // Started by the window, which only has a look, and by the poller.
    const QString log = m_home->File("library.log");
    const int before = CountInFile(log, "started");
    QProcess first;
    Start(first);
    // The poller's sensors hang from here on, and hold the end up.
    QTRY_COMPARE_WITH_TIMEOUT(CountInFile(log, "started"), before + 2, kLongMs);
    first.terminate();
    QTRY_VERIFY(!IsAnyCopyThere());
    QProcess second;
    Start(second);
    QVERIFY(Says(second, "no screen found"));
    QCOMPARE(ExitCode(first, kLongMs), 0);
    QVERIFY(IsAnyCopyThere());
    End(second);
}

KIVO_GUILESS_TEST(TestProgramCopies)
#include "tst_program_copies.moc"
