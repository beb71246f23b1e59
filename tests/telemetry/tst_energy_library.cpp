#include <QtTest>

#include <array>

#include "energy_library_folders.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QString kNotFound = QStringLiteral(
    "Intel Power Gadget not found. Please install the application or check the user's path environment "
    "variable.");
const QString kFileMissing = QStringLiteral("无法在指定路径下找到库文件。");
const QString kUnresolved = QStringLiteral("未能解析一个或多个函数指针");
const QString kNotStarted = QStringLiteral("Intal Power Gadget library initializing failed.");

EnergyLibrary::Parts Found(const QString& folder) {
    EnergyLibrary::Parts parts;
    parts.environment = Environment(folder);
    return parts;
}

// With an environment that may be incomplete.
EnergyLibrary::Parts Installed(const QString& folder, const QString& version, const QString& defaultFolder) {
    EnergyLibrary::Parts parts;
    parts.environment = Environment(folder, version);
    parts.defaultFolder = defaultFolder;
    return parts;
}

struct Reading {
    std::array<double, 3> power{-1, -1, -1};
    int count = 0;
    int degreesCelsius = 0;
};

Reading TakeSamples(EnergyLibrary& library) {
    Reading reading;
    library.ReadSample();
    library.ReadSample();
    library.GetTemperature(0, &reading.degreesCelsius);
    library.GetPowerData(0, 1, reading.power.data(), &reading.count);
    return reading;
}

}  // namespace

class TestEnergyLibrary : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void CompleteLibraryIsLoadedAndRead() {
        EnergyLibrary library(Found(LibraryFolder("complete")));
        QCOMPARE(library.errorString, QString());
        QVERIFY(library.Load());
        QCOMPARE(library.errorString, QString());
        const Reading reading = TakeSamples(library);
        QCOMPARE(reading.power[0], 12.9);
        QCOMPARE(reading.count, 3);
        QCOMPARE(reading.degreesCelsius, 45);
        library.Release();
        QVERIFY(!library.ReadSample());
    }

    void FailingCallsSayTheyFailed() {
        EnergyLibrary library(Found(LibraryFolder("calls_fail")));
        QVERIFY(library.Load());
        QVERIFY(!library.ReadSample());
        const Reading reading = TakeSamples(library);
        QCOMPARE(reading.power[0], -1.0);
        QCOMPARE(reading.degreesCelsius, 0);
    }

    void NothingIsCalledWithoutALibrary() {
        EnergyLibrary library(Found(LibraryFolder("complete")));
        QVERIFY(!library.ReadSample());
        QVERIFY(library.Load());
        QVERIFY(library.ReadSample());
        library.Release();
        QVERIFY(!library.ReadSample());
    }

    void WhatIsWrongIsSaid_data() {
        QTest::addColumn<QString>("variant");
        QTest::addColumn<QString>("error");
        QTest::newRow("a name that is never called is missing") << "stop_log_missing" << kUnresolved;
        QTest::newRow("its start fails") << "start_fails" << kNotStarted;
    }
    void WhatIsWrongIsSaid() {
        QFETCH(QString, variant);
        QFETCH(QString, error);
        EnergyLibrary library(Found(LibraryFolder(qPrintable(variant))));
        QVERIFY(!library.Load());
        QCOMPARE(library.errorString, error);
        QVERIFY(!library.Load());
        QCOMPARE(library.errorString, error);
    }

    void FolderWithoutTheFile() {
        const LibraryPlace place;
        EnergyLibrary library(Found(place.Folder()));
        QVERIFY(!library.Load());
        QCOMPARE(library.errorString, kFileMissing);
    }

    void FileThatIsNoLibrary() {
        const LibraryPlace place;
        QVERIFY(place.PutNoLibrary());
        EnergyLibrary library(Found(place.Folder()));
        QVERIFY(!library.Load());
        const QString path = QDir(place.Folder()).absoluteFilePath(kLibraryName);
        const QString start = QStringLiteral("从") + path + QStringLiteral("加载库失败: ");
        QVERIFY2(library.errorString.startsWith(start), qPrintable(library.errorString));
        QVERIFY(library.errorString.size() > start.size());  // and the loader's own words
    }

    void IncompleteEnvironmentMeansTheDefaultFolder_data() {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("version");
        QTest::newRow("nothing set") << QString() << QString();
        QTest::newRow("no version") << LibraryFolder("calls_fail") << QString();
        QTest::newRow("no folder") << QString() << QStringLiteral("3.6");
    }
    void IncompleteEnvironmentMeansTheDefaultFolder() {
        QFETCH(QString, folder);
        QFETCH(QString, version);
        EnergyLibrary library(Installed(folder, version, LibraryFolder("complete")));
        QVERIFY(library.Load());
        QCOMPARE(TakeSamples(library).degreesCelsius, 45);
        // Noted on the way, and kept, for nothing went wrong.
        QCOMPARE(library.errorString, kNotFound);

        const LibraryPlace empty;
        EnergyLibrary none(Installed(folder, version, empty.Folder()));
        QVERIFY(!none.Load());
        QCOMPARE(none.errorString, kFileMissing);
    }

    void CompleteEnvironmentNeverMeansTheDefaultFolder() {
        const LibraryPlace empty;
        EnergyLibrary library(Installed(empty.Folder(), QStringLiteral("3.6"), LibraryFolder("complete")));
        QVERIFY(!library.Load());
        QCOMPARE(library.errorString, kFileMissing);
    }

    // On systems without drives the default folder is a name like any other.
    void CurrentFolderIsNoDefaultFolder() {
        QCOMPARE(EnergyLibrary::DefaultFolder(),
                 QStringLiteral("C:\\Program Files\\Intel\\Power Gadget 3.6"));
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(LibraryFolder("complete")));
        EnergyLibrary library(Installed({}, {}, QStringLiteral(".")));
        const bool isLoaded = library.Load();
        QVERIFY(QDir::setCurrent(before));
        QVERIFY(!isLoaded);
    }

    void VersionMayBeAny() {
        EnergyLibrary library(Installed(LibraryFolder("complete"), QStringLiteral("any"), {}));
        QVERIFY(library.Load());
    }

    void ProcessEnvironmentIsTheDefault() {
        qputenv("IPG_Dir", QFile::encodeName(LibraryFolder("complete")));
        qputenv("IPG_Ver", "3.6");
        EnergyLibrary library;
        const bool isLoaded = library.Load();
        qunsetenv("IPG_Dir");
        qunsetenv("IPG_Ver");
        QVERIFY(isLoaded);
    }

    void RelativeFolder() {
        const QString relative = QDir::current().relativeFilePath(LibraryFolder("complete"));
        EnergyLibrary library(Found(relative));
        QVERIFY(library.Load());
    }

    void FoldersAsTheyAreWritten_data() {
        QTest::addColumn<QString>("folder");
        const QString folder = LibraryFolder("complete");
        const QString native = QDir::toNativeSeparators(folder);
        QTest::newRow("the system's separators") << native;
        QTest::newRow("and one at the end") << native + QDir::separator();
        QTest::newRow("a slash at the end") << folder + QLatin1Char('/');
        QTest::newRow("by way of another folder") << folder + QStringLiteral("/../complete");
    }
    void FoldersAsTheyAreWritten() {
        QFETCH(QString, folder);
        EnergyLibrary library(Found(folder));
        QVERIFY(library.Load());
        QCOMPARE(TakeSamples(library).degreesCelsius, 45);
        EnergyLibrary byProcess;
        qputenv("IPG_Dir", QFile::encodeName(folder));
        qputenv("IPG_Ver", "3.6");
        const bool isLoaded = byProcess.Load();
        qunsetenv("IPG_Dir");
        qunsetenv("IPG_Ver");
        QVERIFY(isLoaded);
    }

    void LibraryThatComesLaterIsLoaded() {
        const LibraryPlace place;
        EnergyLibrary library(Found(place.Folder()));
        QVERIFY(!library.Load());
        QVERIFY(place.PutNoLibrary());
        QVERIFY(!library.Load());
        QVERIFY(place.Put("stop_log_missing"));
        QVERIFY(!library.Load());
        QCOMPARE(library.errorString, kUnresolved);
        QVERIFY(place.Put("complete"));
        QVERIFY(library.Load());
        QCOMPARE(TakeSamples(library).degreesCelsius, 45);
    }

    // The file alone is looked at.
    void LookingForTheLibraryEntersNothingOfIt() {
        const LibraryPlace place;
        EnergyLibrary library(Found(place.Folder()));
        QVERIFY(!library.IsInstalled());
        QCOMPARE(library.errorString, kFileMissing);
        QVERIFY(place.PutNoLibrary());
        QVERIFY(library.IsInstalled());
    }
};

KIVO_GUILESS_TEST(TestEnergyLibrary)
#include "tst_energy_library.moc"
