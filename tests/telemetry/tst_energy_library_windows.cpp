#include <QtTest>

#include "energy_library_folders.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The folder in which the library is usually installed. Needs an administrator's rights.
class TestEnergyLibraryWindows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void DefaultFolderIsUsed_data();
    void DefaultFolderIsUsed();
    void CompleteEnvironmentComesBeforeIt();

private:
    QString m_folder;  // made for the test, goes with it
};

namespace {

bool LoadsInTheDefaultFolder(const EnvironmentReader& environment) {
    EnergyLibrary::Parts parts;
    parts.environment = environment;
    EnergyLibrary library(parts);
    return library.Load();
}

}  // namespace

void TestEnergyLibraryWindows::initTestCase() {
    const QString folder = QDir::fromNativeSeparators(EnergyLibrary::DefaultFolder());
    QVERIFY2(!QFile::exists(folder), "What is installed here is left alone.");
    m_folder = folder;
    QVERIFY(!LoadsInTheDefaultFolder(Environment({}, {})));
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy(LibraryFolder("complete") + QLatin1Char('/') + kLibraryName,
                        folder + QLatin1Char('/') + kLibraryName));
}

void TestEnergyLibraryWindows::cleanupTestCase() {
    QVERIFY(m_folder.isEmpty() || QDir(m_folder).removeRecursively());
    QDir().rmdir(QFileInfo(m_folder).path());  // if nothing else is in it
}

void TestEnergyLibraryWindows::DefaultFolderIsUsed_data() {
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("version");
    QTest::newRow("nothing set") << QString() << QString();
    QTest::newRow("no version") << LibraryFolder("start_fails") << QString();
    QTest::newRow("no folder") << QString() << QStringLiteral("3.6");
}

void TestEnergyLibraryWindows::DefaultFolderIsUsed() {
    QFETCH(QString, folder);
    QFETCH(QString, version);
    QVERIFY(LoadsInTheDefaultFolder(Environment(folder, version)));
}

void TestEnergyLibraryWindows::CompleteEnvironmentComesBeforeIt() {
    QVERIFY(!LoadsInTheDefaultFolder(Environment(LibraryFolder("start_fails"))));
}

KIVO_GUILESS_TEST(TestEnergyLibraryWindows)
#include "tst_energy_library_windows.moc"
