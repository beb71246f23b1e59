#include <QTemporaryDir>
#include <QtTest>

#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "config/portable_folder.h"
#include "config/settings_file.h"
#include "log_catcher.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

bool WriteFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no such file>");
}

// A program's folder, with the file that makes it portable and the default files.
class Stick {
public:
    Stick() {
        for (const char* const name : {"portable.txt", "Config.ini", "whole.png"}) {
            if (!WriteFile(path(QLatin1String(name)), name)) {
                qFatal("The program's folder cannot be written.");
            }
        }
    }
    QString path(const QString& name = QString()) const { return QDir::cleanPath(m_folder.filePath(name)); }

private:
    QTemporaryDir m_folder;
};

}  // namespace

class TestPortableFolder : public QObject {
    Q_OBJECT

private slots:
    void init() { configFolderCreated = 0; }
    void cleanup() { SetPortableFolder(QString()); }

    void thisTestHasNone() { QCOMPARE(PortableFolder(), QString()); }

    void withoutTheFileThereIsNone() {
        const QTemporaryDir program;
        QCOMPARE(FindPortableFolder(program.path()), QString());
        QVERIFY(QDir(program.path()).isEmpty());
    }

    void theFileMakesAFolderBesideTheProgram() {
        const Stick stick;
        QCOMPARE(FindPortableFolder(stick.path()), stick.path(QStringLiteral("data")));
        QVERIFY(QFileInfo(stick.path(QStringLiteral("data"))).isDir());
        // The trial has left nothing.
        QVERIFY(QDir(stick.path(QStringLiteral("data"))).isEmpty());
        QCOMPARE(FindPortableFolder(stick.path()), stick.path(QStringLiteral("data")));
    }

    void aFolderOfThatNameAsksForNothing() {
        const QTemporaryDir program;
        QVERIFY(QDir(program.path()).mkdir(QStringLiteral("portable.txt")));
        QCOMPARE(FindPortableFolder(program.path()), QString());
    }

    void aFileInTheFoldersPlaceIsTold() {
        const Stick stick;
        QVERIFY(WriteFile(stick.path(QStringLiteral("data")), "in the way"));
        const LogCatcher log;
        QCOMPARE(FindPortableFolder(stick.path()), QString());
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(log.lines().constFirst().contains(QLatin1String("portable.txt")));
        QCOMPARE(ReadFile(stick.path(QStringLiteral("data"))), QByteArray("in the way"));
    }

    void everythingLiesInIt() {
        const Stick stick;
        SetPortableFolder(FindPortableFolder(stick.path()));
        QCOMPARE(SettingsFolder(), stick.path(QStringLiteral("data/settings")));
        QVERIFY(QFileInfo(SettingsFolder()).isDir());
        QCOMPARE(int(configFolderCreated), 1);
        QCOMPARE(ConfigFilePath(), stick.path(QStringLiteral("data/settings/Config.ini")));
        QCOMPARE(WorkingFolder(), stick.path(QStringLiteral("data/working")));
        QVERIFY(QFileInfo(WorkingFolder()).isDir());
        SaveCurRectId(1);
        QCOMPARE(LoadCurRectId(), 1);
        QVERIFY(ReadFile(ConfigFilePath()).contains("CurRectID=1"));
    }

    void theFirstRunIsTheFoldersAndNotTheUsers() {
        const Stick stick;
        const bool usersFirstRun = IsFirstRun();
        SetPortableFolder(FindPortableFolder(stick.path()));
        QVERIFY(IsFirstRun());
        SeedDefaultProfile(stick.path());
        QVERIFY(!IsFirstRun());
        QCOMPARE(ReadFile(ConfigFilePath()), QByteArray("Config.ini"));
        QCOMPARE(ReadFile(stick.path(QStringLiteral("data/Kivo Config.ini"))),
                 QByteArray("[General]\nisInitialized=true\n"));
        SetPortableFolder(QString());
        QCOMPARE(IsFirstRun(), usersFirstRun);
    }

    // Another computer's user has no mark; the stick has.
    void settingsThatComeAlongAreNoFirstRun() {
        const Stick stick;
        SetPortableFolder(FindPortableFolder(stick.path()));
        SeedDefaultProfile(stick.path());
        QVERIFY(WriteFile(ConfigFilePath(), "mine"));
        configFolderCreated = 0;
        SetPortableFolder(FindPortableFolder(stick.path()));
        SeedDefaultProfile(stick.path());
        QCOMPARE(ReadFile(ConfigFilePath()), QByteArray("mine"));
        QCOMPARE(int(configFolderCreated), 0);
    }

    void aStickThatIsPulledOutIsNoCrash() {
        QString folder;
        {
            const Stick stick;
            folder = FindPortableFolder(stick.path());
            SetPortableFolder(folder);
        }
        QVERIFY(WriteFile(QFileInfo(folder).path(), "no folder any more"));
        const LogCatcher log;
        QCOMPARE(SettingsFolder(), folder + QStringLiteral("/settings"));
        QCOMPARE(WorkingFolder(), folder);
        QVERIFY(IsFirstRun());
        QVERIFY(MarkInitialized() != 0);
        SaveCurRectId(1);
        QCOMPARE(LoadCurRectId(), 2);
        QVERIFY(QFile::remove(QFileInfo(folder).path()));
    }
};

KIVO_GUILESS_TEST(TestPortableFolder)
#include "tst_portable_folder.moc"
