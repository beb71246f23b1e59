#include <QtTest>

#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "config/settings_file.h"
#include "log_catcher.h"
#include "private_home.h"
#include "support/full_disk.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QString kCopied = QStringLiteral("File copied successfully.");
const QString kFailed = QStringLiteral("Failed to copy file.");
const QByteArray kDefaultConfig("[Config]\nThemeID=2\n");
const QByteArray kDefaultPicture = QByteArray("\x89PNG default").repeated(20000);

// The folder the program is installed in, with both default files unless one is taken away.
class Program {
public:
    Program() {
        WriteFile(config(), kDefaultConfig);
        WriteFile(picture(), kDefaultPicture);
    }
    QString path() const { return m_dir.path(); }
    QString config() const { return path() + QStringLiteral("/Config.ini"); }
    QString picture() const { return path() + QStringLiteral("/whole.png"); }

private:
    QTemporaryDir m_dir;
};

;

}  // namespace

class TestDefaultProfile : public QObject {
    Q_OBJECT

private:
    static QString UserConfig(const PrivateHome& home) {
        return home.settings(QStringLiteral("/Config.ini"));
    }
    static QString UserPicture(const PrivateHome& home) {
        return home.settings(QStringLiteral("/whole.png"));
    }

    // Nothing but these is left in the settings folder: no half copies, no temporary names.
    static QStringList Names(const PrivateHome& home) {
        return QDir(home.settings())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

private slots:
    void init() { configFolderCreated = 0; }

    void aFirstRunGetsBothFilesAndTheMark() {
        const PrivateHome home;
        const Program program;
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QCOMPARE(ReadFile(UserPicture(home)), kDefaultPicture);
        QCOMPARE(int(configFolderCreated), 1);
        QVERIFY(!IsFirstRun());
        QCOMPARE(log.lines(), (QStringList{kCopied, kCopied}));
        QCOMPARE(Names(home), (QStringList{QStringLiteral("Config.ini"), QStringLiteral("whole.png")}));
    }

    void aFirstRunReplacesWhatStandsThere() {
        const PrivateHome home;
        const Program program;
        QVERIFY(WriteFile(UserConfig(home), "old"));
        QVERIFY(WriteFile(UserPicture(home), "old picture"));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QCOMPARE(ReadFile(UserPicture(home)), kDefaultPicture);
        QCOMPARE(int(configFolderCreated), 1);
        QCOMPARE(log.lines(), (QStringList{kCopied, kCopied}));
    }

    void aLaterRunWithBothFilesDoesNothing() {
        const PrivateHome home;
        const Program program;
        MarkInitialized();
        QVERIFY(WriteFile(UserConfig(home), "mine"));
        QVERIFY(WriteFile(UserPicture(home), "my picture"));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), QByteArray("mine"));
        QCOMPARE(ReadFile(UserPicture(home)), QByteArray("my picture"));
        QCOMPARE(int(configFolderCreated), 0);
        QCOMPARE(log.lines(), QStringList());
    }

    void aLaterRunBringsBackOnlyAMissingConfig() {
        const PrivateHome home;
        const Program program;
        MarkInitialized();
        QVERIFY(WriteFile(UserPicture(home), "my picture"));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QCOMPARE(ReadFile(UserPicture(home)), QByteArray("my picture"));
        QCOMPARE(int(configFolderCreated), 1);
        QCOMPARE(log.lines(), QStringList{kCopied});
    }

    void aLaterRunBringsBackOnlyAMissingPicture() {
        const PrivateHome home;
        const Program program;
        MarkInitialized();
        QVERIFY(WriteFile(UserConfig(home), "mine"));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), QByteArray("mine"));
        QCOMPARE(ReadFile(UserPicture(home)), kDefaultPicture);
        QCOMPARE(int(configFolderCreated), 1);
        QCOMPARE(log.lines(), QStringList{kCopied});
    }

    void aDeletedSettingsFolderIsSeededAgain() {
        const PrivateHome home;
        const Program program;
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QVERIFY(QDir(home.settings()).removeRecursively());
        configFolderCreated = 0;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QCOMPARE(int(configFolderCreated), 1);
    }

    void missingDefaultsAreToldAndTakeNothingAway() {
        const PrivateHome home;
        const Program program;
        QVERIFY(QFile::remove(program.config()));
        QVERIFY(QFile::remove(program.picture()));
        QVERIFY(WriteFile(UserConfig(home), "mine"));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), QByteArray("mine"));
        QCOMPARE(log.lines().count(kFailed), 2);
        QCOMPARE(log.lines().count(kCopied), 0);
        QCOMPARE(Names(home), QStringList{QStringLiteral("Config.ini")});
    }

    void aCopyThatBreaksOffLeavesTheOldFile() {
        const PrivateHome home;
        const Program program;
        QVERIFY(WriteFile(UserConfig(home), "mine"));
        QVERIFY(WriteFile(UserPicture(home), "my picture"));
        const LogCatcher log;
        {
            // Enough for the small file, not for the picture.
            const FullDisk disk(100000);
            SeedDefaultProfile(program.path());
        }
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QCOMPARE(ReadFile(UserPicture(home)), QByteArray("my picture"));
        QCOMPARE(log.lines().count(kCopied), 1);
        QCOMPARE(log.lines().count(kFailed), 1);
        QCOMPARE(Names(home), (QStringList{QStringLiteral("Config.ini"), QStringLiteral("Config.ini.kept"),
                                           QStringLiteral("whole.png")}));
    }

    void aDefaultThatCannotBeReadLeavesTheOldFile() {
        const PrivateHome home;
        const Program program;
        QVERIFY(QFile::remove(program.config()));
        // Opens, but its first byte cannot be read.
        QVERIFY(QFile::link(QStringLiteral("/proc/self/mem"), program.config()));
        QVERIFY(WriteFile(UserConfig(home), "mine"));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), QByteArray("mine"));
        QCOMPARE(log.lines().count(kFailed), 1);
    }

    void aMarkThatCannotBeSetKeepsWhatTheUserHas() {
        const PrivateHome home;
        const Program program;
        QVERIFY(QDir().mkpath(home.marker()));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QCOMPARE(int(configFolderCreated), 1);

        // The next start looks like a first one again.
        QVERIFY(IsFirstRun());
        QVERIFY(WriteFile(UserConfig(home), "mine"));
        QVERIFY(QFile::remove(UserPicture(home)));
        configFolderCreated = 0;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), QByteArray("mine"));
        QCOMPARE(ReadFile(UserPicture(home)), kDefaultPicture);
        QCOMPARE(int(configFolderCreated), 1);
    }

    void copiesOfReadOnlyDefaultsAreWritable() {
        const PrivateHome home;
        const Program program;
        QVERIFY(QFile::setPermissions(program.config(), QFile::ReadOwner | QFile::ReadGroup));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QVERIFY(QFile::permissions(UserConfig(home)).testFlag(QFile::WriteOwner));
        QVERIFY(QFile::permissions(UserConfig(home)).testFlag(QFile::ReadOwner));
        SaveCurRectId(1);
        QCOMPARE(LoadCurRectId(), 1);
        QCOMPARE(SettingsReader().Int(keys::kThemeId), 2);
    }

    void aReadOnlyFileIsReplacedByAWritableOne() {
        const PrivateHome home;
        const Program program;
        QVERIFY(WriteFile(UserConfig(home), "mine"));
        QVERIFY(QFile::setPermissions(UserConfig(home), QFile::ReadOwner));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QVERIFY(QFile::permissions(UserConfig(home)).testFlag(QFile::WriteOwner));
    }

    void aProgramThatLivesInItsSettingsFolderKeepsItsFiles() {
        const PrivateHome home;
        QVERIFY(WriteFile(UserConfig(home), kDefaultConfig));
        QVERIFY(WriteFile(UserPicture(home), kDefaultPicture));
        const LogCatcher log;
        SeedDefaultProfile(home.settings());
        QCOMPARE(ReadFile(UserConfig(home)), kDefaultConfig);
        QCOMPARE(ReadFile(UserPicture(home)), kDefaultPicture);
    }

    void aFolderInAFilesPlaceStays() {
        const PrivateHome home;
        const Program program;
        QVERIFY(QDir().mkpath(UserConfig(home)));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QVERIFY(QFileInfo(UserConfig(home)).isDir());
        QCOMPARE(log.lines().count(kFailed), 1);
        QCOMPARE(ReadFile(UserPicture(home)), kDefaultPicture);
    }

    void aHomeThatCannotBeWrittenIsNoCrash() {
        const PrivateHome home;
        const Program program;
        PrivateHome::Use(QStringLiteral("/proc/self/nowhere"));
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(log.lines().count(kFailed), 2);
    }

    void settingsReadAfterSeedingAreTheSeededOnes() {
        const PrivateHome home;
        const Program program;
        SettingsWriter().SetInt(keys::kThemeId.name, 1);
        const LogCatcher log;
        SeedDefaultProfile(program.path());
        QCOMPARE(SettingsReader().Int(keys::kThemeId), 2);
    }
};

KIVO_GUILESS_TEST(TestDefaultProfile)
#include "tst_default_profile.moc"
