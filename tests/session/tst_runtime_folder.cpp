#include <sys/stat.h>
#include <unistd.h>
#include <QtTest>

#include "outside_caller.h"
#include "session/log_file.h"
#include "session/runtime_folder_linux.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// Where the log lies on Linux, and for whom.
class TestRuntimeFolder : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_folder.reset(); }
    void LogIsItsUsersAlone();
    void FolderThatIsOpenToOthersHasNoLog();
    void LinkToAFolderHasNoLog();
    void FolderThatIsMissingIsNotMade();
    void ACronJobIsToldOfNone();

private:
    QString Folder() const { return QDir::cleanPath(m_folder->Path("")); }

    std::unique_ptr<OutsideFolder> m_folder;
};

void TestRuntimeFolder::init() {
    m_folder = std::make_unique<OutsideFolder>();
    QVERIFY(m_folder->IsValid());
}

void TestRuntimeFolder::LogIsItsUsersAlone() {
    const mode_t former = ::umask(0);
    LogFile log(LogFilePath());
    log.Append(QStringLiteral("one"));
    ::umask(former);
    QCOMPARE(LogFilePath(), Folder() + QStringLiteral("/kivo-screen.log"));
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(LogFilePath()).constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0600);
    QCOMPARE(log.LastLines(2), QStringList{QStringLiteral("one")});
}

void TestRuntimeFolder::FolderThatIsOpenToOthersHasNoLog() {
    QCOMPARE(::chmod(QFile::encodeName(Folder()).constData(), 0755), 0);
    QCOMPARE(LogFilePath(), QString());
}

void TestRuntimeFolder::LinkToAFolderHasNoLog() {
    const QString link = m_folder->Path("link");
    QVERIFY(QDir(Folder()).mkdir(QStringLiteral("other")));
    QCOMPARE(::chmod(QFile::encodeName(m_folder->Path("other")).constData(), 0700), 0);
    QVERIFY(QFile::link(m_folder->Path("other"), link));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder->Path("other")));
    QVERIFY(!LogFilePath().isEmpty());
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(link));
    QCOMPARE(LogFilePath(), QString());
}

void TestRuntimeFolder::FolderThatIsMissingIsNotMade() {
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder->Path("none")));
    QCOMPARE(LogFilePath(), QString());
    QVERIFY(QDir(Folder()).isEmpty());
}

void TestRuntimeFolder::ACronJobIsToldOfNone() {
    qunsetenv("XDG_RUNTIME_DIR");
    QCOMPARE(RuntimeFolderPath(), QStringLiteral("/run/user/%1").arg(::geteuid()));
}

KIVO_GUILESS_TEST(TestRuntimeFolder)
#include "tst_runtime_folder.moc"
