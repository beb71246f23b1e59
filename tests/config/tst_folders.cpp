#include <QStandardPaths>
#include <QtTest>

#include "config/folders.h"
#include "config/portable_folder.h"
#include "config/settings_file.h"
#include "log_catcher.h"
#include "private_home.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// Before any test, and the program, could touch it.
const int kFlagAtTheStart = configFolderCreated;

}  // namespace

class TestFolders : public QObject {
    Q_OBJECT

private slots:
    void init() { configFolderCreated = 0; }

    void theFlagStartsLow() { QCOMPARE(kFlagAtTheStart, 0); }

    void theSettingsFolderIsMadeOnceAndTold() {
        const PrivateHome home;
        QCOMPARE(SettingsFolder(), home.settings());
        QVERIFY(QFileInfo(home.settings()).isDir());
        QCOMPARE(int(configFolderCreated), 1);
        configFolderCreated = 0;
        QCOMPARE(SettingsFolder(), home.settings());
        QCOMPARE(int(configFolderCreated), 0);
    }

    void aDeletedSettingsFolderIsMadeAgain() {
        const PrivateHome home;
        SettingsFolder();
        configFolderCreated = 0;
        QVERIFY(QDir(home.settings()).removeRecursively());
        SettingsFolder();
        QVERIFY(QFileInfo(home.settings()).isDir());
        QCOMPARE(int(configFolderCreated), 1);
    }

    void theConfigFileStandsInTheSettingsFolder() {
        const PrivateHome home;
        QCOMPARE(ConfigFilePath(), home.settings(QStringLiteral("/Config.ini")));
    }

    void theWorkingFolderStandsInTheHomeWithoutTheFlag() {
        const PrivateHome home;
        QCOMPARE(WorkingFolder(), home.path(QStringLiteral("/Kivo Tool")));
        QVERIFY(QFileInfo(home.path(QStringLiteral("/Kivo Tool"))).isDir());
        QCOMPARE(int(configFolderCreated), 0);
    }

    void movedDocumentsLeaveTheWorkingFolderWhereItIs() {
        const PrivateHome home;
        QVERIFY(WriteFile(home.path(QStringLiteral("/.config/user-dirs.dirs")),
                          "XDG_DOCUMENTS_DIR=\"$HOME/deep/er/Papers\"\n"));
        QCOMPARE(WorkingFolder(), home.path(QStringLiteral("/Kivo Tool")));
        QVERIFY(!QFileInfo::exists(home.path(QStringLiteral("/deep"))));
    }

    void aFileInTheWorkingFoldersPlaceLeavesTheProfile() {
        const PrivateHome home;
        QVERIFY(WriteFile(home.path(QStringLiteral("/Kivo Tool")), "in the way"));
        const LogCatcher log;
        QCOMPARE(WorkingFolder(), home.path());
        QCOMPARE(WorkingFolder(), home.path());
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(ReadFile(home.path(QStringLiteral("/Kivo Tool"))), QByteArray("in the way"));
    }

    void aHomeThatMayNotBeWrittenIsTheWorkingFolder() {
        const PrivateHome home;
        QVERIFY(QFile::setPermissions(home.path(), QFile::Permissions(0x5555)));
        const LogCatcher log;
        {
            const Unprivileged rights;
            QCOMPARE(WorkingFolder(), home.path());
        }
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(QFile::setPermissions(home.path(), QFile::Permissions(0x7755)));
    }

    void aReadOnlyHomeGivesPathsDefaultsAndOneLine() {
        const PrivateHome home;
        PrivateHome::Use(QStringLiteral("/proc/self/nowhere"));
        const LogCatcher log;
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(SettingsFolder(), QStringLiteral("/proc/self/nowhere/.local/share/Kivo Tool"));
            QCOMPARE(LoadCurRectId(), 2);
        }
        QCOMPARE(log.lines().size(), 1);
        QCOMPARE(int(configFolderCreated), 0);
        SaveCurRectId(1);
        QCOMPARE(LoadCurRectId(), 2);
        // One more line: that nothing is kept.
        QCOMPARE(log.lines().size(), 2);
    }

    void aFileInTheSettingsFoldersPlaceIsNoCrash() {
        const PrivateHome home;
        QVERIFY(WriteFile(home.settings(), "in the way"));
        const LogCatcher log;
        QCOMPARE(SettingsFolder(), home.settings());
        SaveCurRectId(1);
        QCOMPARE(LoadCurRectId(), 2);
        QCOMPARE(ReadFile(home.settings()), QByteArray("in the way"));
        QCOMPARE(int(configFolderCreated), 0);
    }

    void homesMayHoldAnyLetters() {
        const PrivateHome home;
        const QString deep = home.path(QStringLiteral(u"/\u4e2d\u6587 \u0412\u0442/\U0001F600 a"));
        PrivateHome::Use(deep);
        QCOMPARE(SettingsFolder(), deep + QStringLiteral("/.local/share/Kivo Tool"));
        QCOMPARE(WorkingFolder(), deep + QStringLiteral("/Kivo Tool"));
        SaveCurRectId(1);
        QCOMPARE(LoadCurRectId(), 1);
        QVERIFY(QFileInfo(ConfigFilePath()).isFile());
    }

    void aPortableFolderThatMayNotBeWrittenGivesTheUsersAndOneLine() {
        const PrivateHome program;
        QVERIFY(WriteFile(program.path(QStringLiteral("/portable.txt")), ""));
        QVERIFY(QDir().mkpath(program.path(QStringLiteral("/data"))));
        QVERIFY(QFile::setPermissions(program.path(), QFile::Permissions(0x7755)));
        const PrivateHome home;
        const LogCatcher log;
        {
            // The folder is there, and nothing can be written into it.
            const Unprivileged rights;
            QCOMPARE(FindPortableFolder(program.path()), QString());
            QCOMPARE(FindPortableFolder(program.path()), QString());
        }
        QCOMPARE(log.lines().size(), 1);
        QVERIFY2(log.lines().constFirst().contains(program.path(QStringLiteral("/data"))),
                 qPrintable(log.lines().constFirst()));
        QCOMPARE(FindPortableFolder(program.path()), program.path(QStringLiteral("/data")));
    }

    void accessorsSeeEachOthersValuesWithoutARestart() {
        const PrivateHome home;
        QCOMPARE(LoadCurRectId(), 2);
        SaveCurRectId(0);
        QCOMPARE(LoadCurRectId(), 0);
        SaveCurRectId(1);
        QCOMPARE(LoadCurRectId(), 1);
        QVERIFY(ReadFile(ConfigFilePath()).contains("CurRectID=1"));
    }
};

KIVO_GUILESS_TEST(TestFolders)
#include "tst_folders.moc"
