#include <sys/stat.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QtTest>

#include "config/replace_file.h"
#include "config/settings_file.h"
#include "config/settings_guard.h"
#include "log_catcher.h"
#include "private_home.h"
#include "support/full_disk.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr char kWriteForEver[] = "--write-for-ever";
constexpr int kValues = 200;

QString Key(int index) {
    return QStringLiteral("H1/Value_%1").arg(index);
}

// Writes the same number under every key of the file that argv[1] names, then the next number, until it is
// killed; tells on its output that the first round is on disk.
int WriteForEver(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QString path = QFile::decodeName(argv[1]);
    for (int round = 1;; ++round) {
        {
            SettingsWriter writer(path);
            for (int i = 0; i < kValues; ++i) {
                writer.SetInt(Key(i), round);
            }
        }
        if (round == 1) {
            puts("ready");
            fflush(stdout);
        }
    }
}
const RegisteredRole kWriter(kWriteForEver, WriteForEver);

}  // namespace

class TestSettingsSafety : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir{kReachableFolder};

private slots:
    void aWriteReplacesTheFileInsteadOfChangingIt() {
        const QString path = m_dir.filePath(QStringLiteral("replaced.ini"));
        QVERIFY(WriteFile(path, "[Config]\nMode=0\n"));
        // A second name of the old file: it shows whether a byte of that very file is touched.
        const QString second = path + QStringLiteral(".second");
        QCOMPARE(link(QFile::encodeName(path).constData(), QFile::encodeName(second).constData()), 0);
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
        QCOMPARE(ReadFile(second), QByteArray("[Config]\nMode=0\n"));
    }

    void aKilledWriterLeavesAWholeFileAndHoldsNobodyUp() {
        QRandomGenerator random(3);
        for (int round = 0; round < 25; ++round) {
            const QString path = m_dir.filePath(QStringLiteral("killed-%1.ini").arg(round));
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(kWriteForEver), path});
            QVERIFY(child.waitForReadyRead());
            // Killed at any moment of its work; there is no signal for "in the middle of a write".
            const qint64 moment = random.bounded(3000000);
            QElapsedTimer clock;
            clock.start();
            while (clock.nsecsElapsed() < moment) {
            }
            child.kill();
            QVERIFY(child.waitForFinished());

            QCOMPARE(InspectSettingsFile(path), SettingsFileState::Usable);
            {
                const SettingsReader reader(path);
                const int first = reader.Int(Key(0));
                QVERIFY(first >= 1);
                for (int i = 1; i < kValues; ++i) {
                    QCOMPARE(reader.Int(Key(i)), first);
                }
            }
            SettingsWriter writer(path);
            writer.SetInt(keys::kMode.name, 1);
            QVERIFY(writer.Commit());
        }
    }

    void anEmptyLockThatAKilledWriterLeftGoes() {
        const QString path = m_dir.filePath(QStringLiteral("left-lock.ini"));
        QVERIFY(WriteFile(path + QStringLiteral(".lock"), QByteArray()));
        QElapsedTimer clock;
        clock.start();
        {
            SettingsWriter writer(path);
            writer.SetInt(keys::kMode.name, 1);
            QVERIFY(writer.Commit());
        }
        // Qt's own patience with such a lock is 30 seconds, in which the window would stand still.
        QVERIFY2(clock.elapsed() < 20000, qPrintable(QString::number(clock.elapsed())));
        QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
        QVERIFY(!QFileInfo::exists(path + QStringLiteral(".lock")));
    }

    void aFolderInTheLocksPlaceIsToldAndHoldsNobodyUp() {
        const QString path = m_dir.filePath(QStringLiteral("lock-folder.ini"));
        const QByteArray content("[Config]\nThemeID=3\n");
        QVERIFY(WriteFile(path, content));
        QVERIFY(QDir().mkpath(path + QStringLiteral(".lock")));
        const LogCatcher log;
        {
            SettingsWriter writer(path);
            writer.SetInt(keys::kThemeId.name, 1);
            QVERIFY(!writer.Commit());
        }
        QCOMPARE(ReadFile(path), content);
        QCOMPARE(log.lines().size(), 1);
    }

    void aFolderThatMayNotBeWrittenKeepsTheOldFile() {
        QVERIFY(QFile::setPermissions(m_dir.path(), QFile::Permissions(0x7755)));
        const QString folder = m_dir.filePath(QStringLiteral("locked"));
        const QString path = folder + QStringLiteral("/Config.ini");
        const QByteArray content("[Config]\nThemeID=3\n");
        QVERIFY(WriteFile(path, content));
        QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x4444)));
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
        const LogCatcher log;
        {
            const Unprivileged rights;
            QCOMPARE(SettingsReader(path).Int(keys::kThemeId), 3);
            for (int i = 0; i < 3; ++i) {
                SettingsWriter writer(path);
                writer.SetInt(keys::kThemeId.name, 1);
                QVERIFY(!writer.Commit());
            }
            QCOMPARE(ReadFile(path), content);
        }
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x7755)));
        QCOMPARE(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
                 QStringList{QStringLiteral("Config.ini")});
    }

    void aBrokenFileThatCannotBeKeptIsNotWrittenOver() {
        const QString folder = m_dir.filePath(QStringLiteral("locked-noise"));
        const QString path = folder + QStringLiteral("/Config.ini");
        QVERIFY(WriteFile(path, "noise"));
        QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x6666)));
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
        const LogCatcher log;
        {
            const Unprivileged rights;
            SettingsWriter writer(path);
            writer.SetInt(keys::kMode.name, 1);
            QVERIFY(!writer.Commit());
        }
        QCOMPARE(ReadFile(path), QByteArray("noise"));
        QCOMPARE(log.lines().size(), 1);
        QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x7755)));
    }

    void aFileThatMayNotBeReadIsLeftAlone() {
        const QString path = m_dir.filePath(QStringLiteral("unreadable.ini"));
        QVERIFY(QFile::link(QStringLiteral("/proc/self/mem"), path));
        const LogCatcher log;
        QCOMPARE(InspectSettingsFile(path), SettingsFileState::Unreadable);
        QCOMPARE(SettingsReader(path).Int(keys::kCurRectId), 2);
        SettingsWriter writer(path);
        writer.SetInt(keys::kMode.name, 1);
        QVERIFY(!writer.Commit());
        QVERIFY(QFileInfo(path).isSymLink());
        QCOMPARE(log.lines().size(), 1);
    }

    void aFileOfAnotherUserIsLeftAlone() {
        const QString path = m_dir.filePath(QStringLiteral("secret.ini"));
        QVERIFY(WriteFile(path, "[Config]\nThemeID=3\n"));
        QVERIFY(QFile::setPermissions(path, QFile::Permissions()));
        const LogCatcher log;
        {
            const Unprivileged rights;
            QCOMPARE(SettingsReader(path).Int(keys::kThemeId), 0);
            SettingsWriter writer(path);
            writer.SetInt(keys::kMode.name, 1);
            QVERIFY(!writer.Commit());
        }
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
        QCOMPARE(ReadFile(path), QByteArray("[Config]\nThemeID=3\n"));
    }

    void aPipeInItsPlaceHoldsNobodyUp() {
        const QString path = m_dir.filePath(QStringLiteral("pipe.ini"));
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        const LogCatcher log;
        QCOMPARE(SettingsReader(path).Int(keys::kCurRectId), 2);
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QCOMPARE(SettingsReader(path).Int(keys::kMode), 1);
    }

    // However little room there is: a part of the settings must not take the place of all of them.
    void aFullDiskKeepsTheFile() {
        const QString path = m_dir.filePath(QStringLiteral("full.ini"));
        {
            SettingsWriter writer(path);
            for (int i = 0; i < kValues; ++i) {
                writer.SetText(Key(i), QString(40, QLatin1Char('a')));
            }
            QVERIFY(writer.Commit());
        }
        const QByteArray content = ReadFile(path);
        QVERIFY(content.size() < 16384);  // what Qt keeps in a buffer until the end
        const LogCatcher log;
        for (const rlim_t room : {0, 1, 512, 4096, 8192, int(content.size()) - 1, int(content.size())}) {
            {
                const FullDisk disk(room);
                SettingsWriter writer(path);
                writer.SetInt(keys::kMode.name, 1);
                QVERIFY2(!writer.Commit(), qPrintable(QString::number(room)));
            }
            QCOMPARE(ReadFile(path), content);
        }
        SettingsWriter writer(path);
        writer.SetInt(keys::kThemeId.name, 1);
        QVERIFY(writer.Commit());
        QCOMPARE(SettingsReader(path).Text(Key(kValues - 1)), QString(40, QLatin1Char('a')));
        QCOMPARE(QDir(m_dir.path()).entryList({QStringLiteral("*.probe")}).size(), 0);
    }

    void aFullDiskKeepsTheFileThatIsToBeReplaced() {
        const QString path = m_dir.filePath(QStringLiteral("replaced.txt"));
        QVERIFY(WriteFile(path, "old"));
        QByteArray content(300, 'n');
        {
            const FullDisk disk(100);
            QBuffer source(&content);
            QVERIFY(source.open(QIODevice::ReadOnly));
            QVERIFY(!ReplaceFile(path, &source).isEmpty());
            QSaveFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly));
            QCOMPARE(file.write(content), qint64(content.size()));
            QVERIFY(!CommitWhole(file));
        }
        QCOMPARE(ReadFile(path), QByteArray("old"));
    }

    void aLinkToTheFileStaysALink() {
        const QString target = m_dir.filePath(QStringLiteral("target.ini"));
        const QString path = m_dir.filePath(QStringLiteral("link.ini"));
        QVERIFY(WriteFile(target, "[Config]\nMode=0\n"));
        QVERIFY(QFile::link(target, path));
        SettingsWriter(path).SetInt(keys::kMode.name, 1);
        QVERIFY(QFileInfo(path).isSymLink());
        QVERIFY(ReadFile(target).contains("Mode=1"));
    }
};

KIVO_GUILESS_TEST(TestSettingsSafety)
#include "tst_settings_safety.moc"
