#include <QtTest>

#include <cerrno>

#include "../config/log_catcher.h"
#include "energy_library_folders.h"
#include "made_up_sysfs.h"
#include "support/test_program.h"
#include "telemetry/package_sensors_linux.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// A machine's sensors, and the time on it.
struct Machine {
    void Counter(const char* domain, const char* name, const QByteArray& energy,
                 const QByteArray& range = "262143328850") const {
        const QString folder = QStringLiteral("powercap/") + QLatin1String(domain);
        sysfs.Write(folder + QStringLiteral("/name"), name);
        sysfs.Write(folder + QStringLiteral("/max_energy_range_uj"), range);
        sysfs.Write(folder + QStringLiteral("/energy_uj"), energy);
    }
    void Energy(const char* domain, const QByteArray& energy) const {
        sysfs.Write(QStringLiteral("powercap/%1/energy_uj").arg(QLatin1String(domain)), energy);
    }
    void Driver(int hwmon, const char* name) const {
        sysfs.Write(QStringLiteral("hwmon/hwmon%1/name").arg(hwmon), name);
    }
    void Input(int hwmon, int number, const char* label, const QByteArray& value) const {
        const QString file = QStringLiteral("hwmon/hwmon%1/temp%2_").arg(hwmon).arg(number);
        if (label != nullptr) {
            sysfs.Write(file + QLatin1String("label"), label);
        }
        sysfs.Write(file + QLatin1String("input"), value);
    }
    // A sample, that much later.
    void SampleAfter(std::chrono::milliseconds time) {
        now += time;
        sensors.ReadSample();
    }

    SysfsPlaces Places() const {
        return {sysfs.Path(QStringLiteral("powercap")), sysfs.Path(QStringLiteral("hwmon"))};
    }

    const MadeUpSysfs sysfs;
    std::chrono::nanoseconds now{1000};
    SysfsSensors sensors{Places(), [this] { return now; }};
};

constexpr std::chrono::seconds kSecond{1};

// What is logged where the package's counter does not tell.
QString PowerIsNotKnown(const Machine& machine, const QString& reason) {
    const QString file = machine.sysfs.Path(QStringLiteral("powercap/intel-rapl:0/energy_uj"));
    return QStringLiteral("The processor's power is not known. %1: %2").arg(file, reason);
}

void IntelMachine(const Machine& machine) {
    machine.Counter("intel-rapl:0", "package-0", "1000000");
    machine.Counter("intel-rapl:0:0", "core", "500");
    machine.Driver(0, "acpitz");
    machine.Input(0, 1, nullptr, "27800");
    machine.Driver(3, "coretemp");
    machine.Input(3, 1, "Package id 0", "45000");
    machine.Input(3, 2, "Core 0", "41000");
}

}  // namespace

class TestSysfsSensors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void IntelProcessor() {
        Machine machine;
        IntelMachine(machine);
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        QCOMPARE(machine.sensors.Power(), 0.0);
        machine.Energy("intel-rapl:0", "13900000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Power(), 12.9);
        QCOMPARE(machine.sensors.Temperature(), 45);
    }

    void AmdProcessor_data() {
        QTest::addColumn<QByteArray>("driver");
        QTest::newRow("the kernel's driver") << QByteArray("k10temp");
        QTest::newRow("the other one") << QByteArray("zenpower");
    }
    void AmdProcessor() {
        QFETCH(QByteArray, driver);
        Machine machine;
        machine.Counter("intel-rapl:0", "package-0", "0", "65532610987");
        machine.Driver(2, driver.constData());
        machine.Input(2, 1, "Tctl", "72500");
        machine.Input(2, 2, "Tdie", "52500");
        machine.Input(2, 3, "Tccd1", "50000");
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        machine.Energy("intel-rapl:0", "65000000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Power(), 65.0);
        QCOMPARE(machine.sensors.Temperature(), 52);  // cut off
    }

    void PackagesTemperatureIsFound_data() {
        QTest::addColumn<QString>("driver");
        QTest::addColumn<QStringList>("labels");  // inputs 1, 2, ...; "-": none
        QTest::addColumn<int>("found");           // input, 0: none
        const auto row = [](const char* name, const char* driver, const QStringList& labels, int found) {
            QTest::newRow(name) << QString::fromLatin1(driver) << labels << found;
        };
        const QString none = QStringLiteral("-");
        row("package before cores", "coretemp", {QStringLiteral("Core 0"), QStringLiteral("Package id 0")},
            2);
        row("the name it had on old kernels", "coretemp", {QStringLiteral("Physical id 0")}, 1);
        row("Tctl where there is no Tdie", "k10temp", {QStringLiteral("Tctl"), QStringLiteral("Tccd1")}, 1);
        row("no label", "k10temp", {none}, 1);
        // Their sensors are what a package's own is made from.
        row("cores alone: the hottest", "coretemp",
            {none, QStringLiteral("Core 0"), QStringLiteral("Core 1")}, 3);
        row("another package's: the hottest", "coretemp", {QStringLiteral("Package id 1")}, 1);
        row("another driver", "nvme", {QStringLiteral("Package id 0")}, 0);
        row("no input", "coretemp", {}, 0);
    }
    void PackagesTemperatureIsFound() {
        QFETCH(QString, driver);
        QFETCH(QStringList, labels);
        QFETCH(int, found);
        Machine machine;
        machine.Driver(1, qPrintable(driver));
        for (int i = 0; i < labels.size(); ++i) {
            const QByteArray label = labels[i].toLatin1();
            machine.Input(1, i + 1, label == "-" ? nullptr : label.constData(),
                          QByteArray::number((i + 1) * 10000));
        }
        QCOMPARE(machine.sensors.Load(), found != 0);
        machine.sensors.ReadSample();
        QCOMPARE(machine.sensors.Temperature(), found * 10);
    }

    void CoresWithoutAPackage() {
        const LogCatcher log;
        Machine machine;
        machine.Driver(2, "coretemp");
        machine.Input(2, 2, "Core 0", "61000");
        machine.Input(2, 3, "Core 1", "58000");
        machine.Input(2, 20, "Core 18", "59900");
        machine.Driver(3, "coretemp");  // of a second processor
        machine.Input(3, 2, "Core 0", "90000");
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        QCOMPARE(machine.sensors.Temperature(), 61);
        machine.Input(2, 20, "Core 18", "72500");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Temperature(), 72);
        // A core that is switched off loses its file, or its reading.
        QVERIFY(QFile::remove(machine.sysfs.Path(QStringLiteral("hwmon/hwmon2/temp20_input"))));
        machine.Input(2, 3, "Core 1", "N/A");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Temperature(), 61);
        machine.Input(2, 2, "Core 0", "-3000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Temperature(), -3);
    }

    void LibraryElseTheKernel_data() {
        QTest::addColumn<bool>("isInstalled");
        QTest::addColumn<bool>("hasSensors");
        QTest::addColumn<int>("degrees");  // 0: none found
        QTest::newRow("both: the library's") << true << true << 45;
        QTest::newRow("the library alone") << true << false << 45;
        QTest::newRow("the kernel's alone") << false << true << 62;
        QTest::newRow("neither") << false << false << 0;
    }
    void LibraryElseTheKernel() {
        QFETCH(bool, isInstalled);
        QFETCH(bool, hasSensors);
        QFETCH(int, degrees);
        const LibraryPlace place;
        QVERIFY(!isInstalled || place.Put("complete"));
        const Machine machine;
        if (hasSensors) {
            machine.Driver(0, "coretemp");
            machine.Input(0, 1, "Package id 0", "62000");
        }
        const auto sensors = MakeLibraryElseSysfs({}, Environment(place.Folder()), machine.Places());
        QCOMPARE(sensors->Load(), degrees != 0);
        sensors->ReadSample();
        sensors->ReadSample();
        QCOMPARE(sensors->Temperature(), degrees);
        if (degrees == 0) {
            QVERIFY(sensors->ErrorString().startsWith(QStringLiteral("无法在指定路径下找到库文件。 ")));
            QVERIFY(sensors->ErrorString().contains(machine.Places().hwmon));
        }
    }

    void SeveralPackages() {
        Machine machine;
        machine.Counter("intel-rapl:0", "package-1", "0");
        machine.Counter("intel-rapl:1", "package-0", "0");
        machine.Counter("intel-rapl:2", "psys", "0");
        machine.Driver(4, "coretemp");
        machine.Input(4, 1, "Package id 1", "70000");
        machine.Driver(5, "coretemp");
        machine.Input(5, 1, "Package id 0", "50000");
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        machine.Energy("intel-rapl:0", "90000000");
        machine.Energy("intel-rapl:1", "20000000");
        machine.Energy("intel-rapl:2", "150000000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Power(), 20.0);
        QCOMPARE(machine.sensors.Temperature(), 50);
    }

    void DiesOfAPackageAreAddedUp() {
        Machine machine;
        machine.Counter("intel-rapl:0", "package-0-die-0", "0");
        machine.Counter("intel-rapl:1", "package-0-die-1", "0");
        machine.Counter("intel-rapl:2", "package-1-die-0", "0");
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        machine.Energy("intel-rapl:0", "20000000");
        machine.Energy("intel-rapl:1", "30000000");
        machine.Energy("intel-rapl:2", "99000000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Power(), 50.0);
    }

    void PowerOfTwoSamples_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<QByteArray>("range");
        QTest::addColumn<int>("milliseconds");
        QTest::addColumn<double>("watts");
        const auto row = [](const char* name, const char* before, const char* after, const char* range,
                            int time, double watts) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(after) << QByteArray(range) << time
                                << watts;
        };
        row("a second", "5", "12900005", "1000000000", 1000, 12.9);
        row("longer than a second", "0", "12900000", "1000000000", 2000, 6.45);
        row("no time at all", "0", "12900000", "1000000000", 0, 0.0);
        row("nothing used", "77", "77", "1000000000", 1000, 0.0);
        row("wrapped around", "999000000", "11900000", "1000000000", 1000, 12.9);
        row("wrapped around at its very end", "1000000000", "12900000", "1000000000", 1000, 12.9);
        row("wrapped around, range not known", "999000000", "11900000", "", 1000, 0.0);
        row("beyond its range", "2000000000", "11900000", "1000000000", 1000, 0.0);
        row("no number before", "much", "12900000", "1000000000", 1000, 0.0);
        row("no number after", "0", "much", "1000000000", 1000, 0.0);
        row("more than fits", "0", "99999999999999999999999", "1000000000", 1000, 0.0);
        row("empty", "", "", "", 1000, 0.0);
    }
    void PowerOfTwoSamples() {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(QByteArray, range);
        QFETCH(int, milliseconds);
        QFETCH(double, watts);
        const LogCatcher log;
        Machine machine;
        machine.Counter("intel-rapl:0", "package-0", before, range);
        machine.Driver(0, "k10temp");
        machine.Input(0, 1, "Tdie", "30000");
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        machine.Energy("intel-rapl:0", after);
        machine.SampleAfter(std::chrono::milliseconds(milliseconds));
        QVERIFY(qAbs(machine.sensors.Power() - watts) < 1e-9);
    }

    void TemperatureOfASample_data() {
        QTest::addColumn<QByteArray>("value");
        QTest::addColumn<int>("degrees");
        QTest::newRow("warm") << QByteArray("45000") << 45;
        QTest::newRow("cut off") << QByteArray("45999") << 45;
        QTest::newRow("frost") << QByteArray("-5500") << -5;
        QTest::newRow("no number") << QByteArray("N/A") << 0;
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("no integer holds it") << QByteArray("9223372036854775807") << 0;
    }
    void TemperatureOfASample() {
        QFETCH(QByteArray, value);
        QFETCH(int, degrees);
        Machine machine;
        machine.Driver(0, "coretemp");
        machine.Input(0, 1, "Package id 0", value);
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        QCOMPARE(machine.sensors.Temperature(), degrees);
    }

    void MachineWithoutSensors() {
        Machine machine;
        machine.Driver(0, "nvme");
        machine.Counter("intel-rapl:0", "psys", "1");
        for (int again = 0; again < 2; ++again) {
            QVERIFY(!machine.sensors.Load());
            QVERIFY(machine.sensors.ErrorString().contains(machine.sysfs.Path(QStringLiteral("hwmon"))));
        }
        QVERIFY(!SysfsSensors({QStringLiteral("/no/such"), QStringLiteral("/no/such")}).Load());
    }

    void SensorThatComesLater() {
        Machine machine;
        QVERIFY(!machine.sensors.Load());
        IntelMachine(machine);
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        QCOMPARE(machine.sensors.Temperature(), 45);
    }

    void ModuleThatIsLoadedAgainUnderAnotherNumber() {
        const LogCatcher log;
        Machine machine;
        IntelMachine(machine);
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        QCOMPARE(machine.sensors.Temperature(), 45);
        machine.sysfs.Remove(QStringLiteral("hwmon/hwmon3"));
        machine.sysfs.Remove(QStringLiteral("powercap/intel-rapl:0"));
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Temperature(), 0);
        QCOMPARE(machine.sensors.Power(), 0.0);
        machine.Driver(7, "coretemp");
        machine.Input(7, 1, "Package id 0", "48000");
        machine.Counter("intel-rapl:1", "package-0", "5000000");
        for (int sample = 0; sample < 12; ++sample) {
            machine.SampleAfter(kSecond);
        }
        QCOMPARE(machine.sensors.Temperature(), 48);
        machine.Energy("intel-rapl:1", "15000000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Power(), 10.0);
    }

    // A counter that is root's is there but says nothing. What cannot be opened stands in for it, for tests
    // may be root.
    void CounterThatMayNotBeRead() {
        const LogCatcher log;
        Machine machine;
        machine.Counter("intel-rapl:0", "package-0", "1");
        QVERIFY(QFile::remove(machine.sysfs.Path(QStringLiteral("powercap/intel-rapl:0/energy_uj"))));
        QVERIFY(QDir().mkdir(machine.sysfs.Path(QStringLiteral("powercap/intel-rapl:0/energy_uj"))));
        QVERIFY(!machine.sensors.Load());
        machine.Driver(0, "coretemp");
        machine.Input(0, 1, "Package id 0", "45000");
        QVERIFY(machine.sensors.Load());
        for (int sample = 0; sample < 25; ++sample) {
            machine.SampleAfter(kSecond);
            QCOMPARE(machine.sensors.Power(), 0.0);
            QCOMPARE(machine.sensors.Temperature(), 45);
        }
        QCOMPARE(log.lines(), QStringList(PowerIsNotKnown(machine, qt_error_string(EISDIR))));
        // The right may come later.
        QVERIFY(QDir().rmdir(machine.sysfs.Path(QStringLiteral("powercap/intel-rapl:0/energy_uj"))));
        machine.Energy("intel-rapl:0", "1000000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Power(), 0.0);
        machine.Energy("intel-rapl:0", "8000000");
        machine.SampleAfter(kSecond);
        QCOMPARE(machine.sensors.Power(), 7.0);
    }

    void CounterThatIsNoNumber_data() {
        QTest::addColumn<QByteArray>("energy");
        QTest::newRow("a word") << QByteArray("much");
        QTest::newRow("more than fits") << QByteArray("99999999999999999999999");
    }
    void CounterThatIsNoNumber() {
        QFETCH(QByteArray, energy);
        const LogCatcher log;
        Machine machine;
        machine.Counter("intel-rapl:0", "package-0", energy);
        machine.sensors.Load();
        machine.sensors.ReadSample();
        machine.SampleAfter(kSecond);
        QCOMPARE(log.lines(), QStringList(PowerIsNotKnown(machine, QStringLiteral("it is no number."))));
    }

    void FoldersOfTheKernelAreLinks() {
        Machine machine;
        machine.sysfs.Write(QStringLiteral("devices/coretemp.0/name"), "coretemp");
        machine.sysfs.Write(QStringLiteral("devices/coretemp.0/temp1_label"), "Package id 0");
        machine.sysfs.Write(QStringLiteral("devices/coretemp.0/temp1_input"), "61000");
        QVERIFY(QDir().mkpath(machine.sysfs.Path(QStringLiteral("hwmon"))));
        QVERIFY(QFile::link(machine.sysfs.Path(QStringLiteral("devices/coretemp.0")),
                            machine.sysfs.Path(QStringLiteral("hwmon/hwmon12"))));
        QVERIFY(machine.sensors.Load());
        machine.sensors.ReadSample();
        QCOMPARE(machine.sensors.Temperature(), 61);
    }
};

KIVO_GUILESS_TEST(TestSysfsSensors)
#include "tst_sysfs_sensors.moc"
