// clang-format off
#include <windows.h>
#include <shlobj.h>
// clang-format on

#include <QtTest>

#include "../config/forget_mark.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "pictures/thumbnail_cache.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

QString KnownFolder(REFKNOWNFOLDERID id) {
    PWSTR path = nullptr;
    if (FAILED(SHGetKnownFolderPath(id, 0, nullptr, &path))) {
        return QStringLiteral("<no such folder>");
    }
    const QString text = QDir::fromNativeSeparators(QString::fromWCharArray(path));
    CoTaskMemFree(path);
    return text;
}

bool WriteFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray ReadFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<no such file>");
}

}  // namespace

// Where Windows keeps a user's things, and what a first and a later run put there.
class TestWindowsFolders : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        QVERIFY(QDir(m_roaming).removeRecursively());
        test::ForgetMark();
        configFolderCreated = 0;
        m_program.reset(new QTemporaryDir);
        QVERIFY(WriteFile(m_program->filePath(QStringLiteral("Config.ini")), "[Config]\nMode=1\n"));
        QVERIFY(WriteFile(m_program->filePath(QStringLiteral("whole.png")), "picture"));
    }

    void SettingsLieInTheRoamingFolder() {
        QCOMPARE(SettingsFolder(), m_roaming);
        QVERIFY(QFileInfo(m_roaming).isDir());
        QCOMPARE(int(configFolderCreated), 1);
        QCOMPARE(ConfigFilePath(), m_roaming + QStringLiteral("/Config.ini"));
        configFolderCreated = 0;
        SettingsFolder();
        QCOMPARE(int(configFolderCreated), 0);
    }

    void WorkingFolderLiesInTheProfile() {
        const QString profile = KnownFolder(FOLDERID_Profile);
        QCOMPARE(WorkingFolder(), profile + QStringLiteral("/Kivo Tool"));
        QVERIFY(QFileInfo(WorkingFolder()).isDir());
    }

    // Where the uninstaller looks for them.
    void ThumbnailsLieInTheLocalFolder() {
        QCOMPARE(ThumbnailCache::DefaultFolder(),
                 KnownFolder(FOLDERID_LocalAppData) + QStringLiteral("/Kivo Tool/thumbnails"));
    }

    void FirstRunReplacesWhatIsThere() {
        QVERIFY(WriteFile(SettingsFolder() + QStringLiteral("/Config.ini"), "old"));
        SeedDefaultProfile(m_program->path());
        QVERIFY(!IsFirstRun());
        QCOMPARE(int(configFolderCreated), 1);
        QCOMPARE(ReadFile(ConfigFilePath()), QByteArray("[Config]\nMode=1\n"));
        QCOMPARE(ReadFile(m_roaming + QStringLiteral("/whole.png")), QByteArray("picture"));
    }

    void LaterRunRestoresOnlyWhatIsMissing() {
        QVERIFY(WriteFile(SettingsFolder() + QStringLiteral("/whole.png"), "mine"));
        MarkInitialized();
        configFolderCreated = 0;
        SeedDefaultProfile(m_program->path());
        QCOMPARE(int(configFolderCreated), 1);
        QCOMPARE(ReadFile(ConfigFilePath()), QByteArray("[Config]\nMode=1\n"));
        QCOMPARE(ReadFile(m_roaming + QStringLiteral("/whole.png")), QByteArray("mine"));
    }

    // The installer may have made the files beside the program read-only; the user's copies are not.
    void CopiesCanBeWritten() {
        const QString source = m_program->filePath(QStringLiteral("Config.ini"));
        QVERIFY(SetFileAttributesW(reinterpret_cast<LPCWSTR>(source.utf16()), FILE_ATTRIBUTE_READONLY) != 0);
        SeedDefaultProfile(m_program->path());
        QVERIFY(WriteFile(ConfigFilePath(), "changed"));
        SetFileAttributesW(reinterpret_cast<LPCWSTR>(source.utf16()), FILE_ATTRIBUTE_NORMAL);
    }

private:
    const QString m_roaming = KnownFolder(FOLDERID_RoamingAppData) + QStringLiteral("/Kivo Tool");
    QScopedPointer<QTemporaryDir> m_program;
};

KIVO_GUILESS_TEST(TestWindowsFolders)
#include "tst_windows_folders.moc"
