#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <QtTest>

#include "made_up_counters.h"
#include "support/built_paths.h"
#include "support/test_program.h"
#include "telemetry/firmware_zone_counters.h"
#include "telemetry/thermal_zone_windows.h"

using namespace kivo;

// The WMI client as Windows is asked for it. A stand-in tells what arrives there.
class TestThermalClient : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ItIsTheSystemsOwn();
    void ItReceivesTheCommandLine();
    void WithoutOneTheCountersAreRead();
    void WhereItRefusesTheCountersAreRead();
    void WhereItTellsOfAbsoluteZeroTheCountersAreRead();
    void ClientsOfThatNameElsewhereAreNotRun();

private:
    static const QString& StandIn() {
        static const QString path = QDir(test::TestHelper("stand in/wmic")).absolutePath();
        return path;
    }
};

namespace {

const QString kDegrees28 = QStringLiteral("28.000000") + QChar(0x00B0) + QLatin1Char('C');

// Two zones, of which the second one tells that many tenths of a kelvin.
CounterQueryFactory Counters(double tenthsOfKelvin) {
    static test::MadeUpCounters counters;
    counters.values[FirmwareZonePaths()[0]] = {{QStringLiteral("a"), 0},
                                               {QStringLiteral("b"), tenthsOfKelvin}};
    return counters.Factory();
}

// What a stand-in notes, a line each.
class Notes {
public:
    Notes() { qputenv("KIVO_TEST_WMIC_LOG", QDir::toNativeSeparators(Path()).toLocal8Bit()); }
    ~Notes() { qunsetenv("KIVO_TEST_WMIC_LOG"); }
    Q_DISABLE_COPY(Notes)

    QStringList Lines() const {
        QFile file(Path());
        return file.open(QIODevice::ReadOnly)
                   ? QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)
                   : QStringList();
    }

private:
    QString Path() const { return m_folder.filePath(QStringLiteral("notes")); }

    const QTemporaryDir m_folder;
};

}  // namespace

void TestThermalClient::ItIsTheSystemsOwn() {
    std::array<wchar_t, MAX_PATH> folder{};
    QVERIFY(GetSystemDirectoryW(folder.data(), UINT(folder.size())) > 0);
    const Command command = ThermalClient();
    QCOMPARE(command.program, QString::fromWCharArray(folder.data()) + QStringLiteral("/wbem/wmic.exe"));
    QCOMPARE(command.arguments,
             (QStringList{QStringLiteral(R"(/namespace:\\root\wmi)"), QStringLiteral("PATH"),
                          QStringLiteral("MSAcpi_ThermalZoneTemperature"), QStringLiteral("get"),
                          QStringLiteral("CurrentTemperature"), QStringLiteral("/value")}));
}

void TestThermalClient::ItReceivesTheCommandLine() {
    const Notes notes;
    Command command = ThermalClient();
    command.program = StandIn();
    QCOMPARE(ReadThermalZoneWith(command, Counters(3212)), kDegrees28);
    // The command's own words, behind the client's path; the program's working folder.
    const QString words = ThermalCommand().mid(int(qstrlen("wmic ")));
    QStringList lines = notes.Lines();
    QVERIFY(!lines.isEmpty());
    lines[0] = lines[0].simplified();  // Qt puts two blanks behind the program
    QCOMPARE(lines, (QStringList{QStringLiteral("\"%1\" %2").arg(QDir::toNativeSeparators(StandIn()), words),
                                 QDir::toNativeSeparators(QDir::currentPath())}));
}

void TestThermalClient::WithoutOneTheCountersAreRead() {
    Command command = ThermalClient();
    for (const QString& program : {QString(), QStringLiteral("C:/no such folder/wbem/wmic.exe")}) {
        command.program = program;
        QCOMPARE(ReadThermalZoneWith(command, Counters(3012)), kDegrees28);
        QCOMPARE(ReadThermalZoneWith(command, Counters(0)), NoThermalText());
        test::MadeUpCounters none;
        QCOMPARE(ReadThermalZoneWith(command, none.Factory()), NoThermalText());
    }
}

// As an ordinary user is.
void TestThermalClient::WhereItRefusesTheCountersAreRead() {
    Command command = ThermalClient();
    command.program = StandIn();
    QCOMPARE(ReadThermalZoneWith(command, Counters(3012)), kDegrees28);
    QCOMPARE(ReadThermalZoneWith(command, Counters(0)), NoThermalText());
}

// Firmware without a sensor says 0 kelvin, or nearly.
void TestThermalClient::WhereItTellsOfAbsoluteZeroTheCountersAreRead() {
    const Notes notes;
    Command command = ThermalClient();
    command.program = StandIn();
    for (const char* tenths : {"0", "2"}) {
        qputenv("KIVO_TEST_WMIC_TENTHS", tenths);
        QCOMPARE(ReadThermalZoneWith(command, Counters(3012)), kDegrees28);
        QCOMPARE(ReadThermalZoneWith(command, Counters(2)), NoThermalText());
    }
    qputenv("KIVO_TEST_WMIC_TENTHS", "2700");
    QCOMPARE(ReadThermalZoneWith(command, Counters(3012)), ThermalText(-3.2));
    qunsetenv("KIVO_TEST_WMIC_TENTHS");
}

// Beside the program and in the working folder, where the system looks first for a bare name.
void TestThermalClient::ClientsOfThatNameElsewhereAreNotRun() {
    const Notes notes;
    const QTemporaryDir folder;
    const QString name = QStringLiteral("wmic.exe");
    const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
    QVERIFY(QFile::copy(StandIn(), beside));
    QVERIFY(QFile::copy(StandIn(), folder.filePath(name)));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    ReadThermalZoneTemperature();
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(QFile::remove(beside));
    QCOMPARE(notes.Lines(), QStringList());
}

KIVO_GUILESS_TEST(TestThermalClient)
#include "tst_thermal_client.moc"
