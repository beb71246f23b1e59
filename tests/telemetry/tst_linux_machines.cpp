// Whole machines, made up as files: what is read there, and what the panel shows.

#include <QtTest>

#include "../config/log_catcher.h"
#include "made_up_machine.h"
#include "support/test_program.h"
#include "telemetry/sensor_lists.h"

using namespace kivo;
using namespace kivo::test;
using namespace std::chrono_literals;

namespace {

using Machine = MadeUpMachine;
using Step = void (*)(const Machine&);

void AmdDesktop(const Machine& machine) {
    machine.Counter("intel-rapl:0", "package-0", "1000000");
    machine.Counter("intel-rapl:0:0", "core", "500");
    machine.Driver(0, "nvme");
    machine.Input(0, "temp", 1, "Composite", "38850");
    machine.Driver(1, "k10temp");
    machine.Input(1, "temp", 1, "Tctl", "62500");
    machine.Input(1, "temp", 3, "Tccd1", "60000");
    machine.Driver(2, "nct6798");
    machine.Input(2, "temp", 1, "SYSTIN", "31000");
    machine.Input(2, "fan", 1, nullptr, "0");
    machine.Input(2, "fan", 2, nullptr, "1184");
    machine.Input(2, "fan", 7, nullptr, "2500");
    machine.Driver(3, "amdgpu");
    machine.Input(3, "fan", 1, nullptr, "900");
}
void AmdDesktopLater(const Machine& machine) {
    machine.Energy("intel-rapl:0", "66900000");
}

void HybridLaptop(const Machine& machine) {
    machine.Counter("intel-rapl:0", "package-0", "5000000");
    machine.Counter("intel-rapl:1", "psys", "9000000");
    machine.Counter("intel-rapl-mmio:0", "package-0", "5000000");
    machine.Driver(0, "acpitz");
    machine.Input(0, "temp", 1, nullptr, "27800");
    machine.Driver(4, "coretemp");
    machine.Input(4, "temp", 1, "Package id 0", "48000");
    machine.Input(4, "temp", 2, "Core 0", "47000");
    machine.Input(4, "temp", 34, "Core 32", "46000");
    machine.Driver(5, "dell_smm");
    machine.Input(5, "fan", 1, "Processor Fan", "0");
    machine.Input(5, "fan", 2, "Video Fan", "2400");
    machine.Zone(0, "x86_pkg_temp", "48000");
}
void HybridLaptopLocked(const Machine& machine) {
    HybridLaptop(machine);
    machine.Lock("intel-rapl:0");
    machine.Lock("intel-rapl-mmio:0");
}
void HybridLaptopLater(const Machine& machine) {
    machine.Energy("intel-rapl:0", "12300000");
    machine.Energy("intel-rapl:1", "29000000");
    machine.Energy("intel-rapl-mmio:0", "12300000");
}

void TwoPackages(const Machine& machine) {
    machine.Counter("intel-rapl:0", "package-1", "0");
    machine.Counter("intel-rapl:1", "package-0", "0");
    machine.Driver(4, "coretemp");
    machine.Input(4, "temp", 1, "Package id 1", "70000");
    machine.Driver(5, "coretemp");
    machine.Input(5, "temp", 1, "Package id 0", "50000");
}
void TwoPackagesLater(const Machine& machine) {
    machine.Energy("intel-rapl:0", "90000000");
    machine.Energy("intel-rapl:1", "20000000");
}

// The zones' numbers are hexadecimal, and one die repeats another.
void MirroredDies(const Machine& machine) {
    machine.Counter("intel-rapl:9", "package-0-die-0", "80000000");
    machine.Counter("intel-rapl:a", "package-0-die-1", "10000000");
    machine.Counter("intel-rapl:b", "package-0-die-2", "80000100");
    machine.Counter("intel-rapl:c", "package-1-die-0", "500000000");
    machine.Driver(0, "k10temp");
    machine.Input(0, "temp", 1, "Tctl", "95000");
    machine.Input(0, "temp", 2, "Tdie", "68000");
}
void MirroredDiesLater(const Machine& machine) {
    machine.Energy("intel-rapl:9", "180000000");
    machine.Energy("intel-rapl:a", "60000000");
    machine.Energy("intel-rapl:b", "180000100");
    machine.Energy("intel-rapl:c", "900000000");
}

// The kernel does not know its energy counter yet.
void NewAmdOnAnOldKernel(const Machine& machine) {
    machine.Driver(0, "k10temp");
    machine.Input(0, "temp", 1, "Tctl", "51250");
    machine.Driver(1, "asusec");
    machine.Input(1, "fan", 1, "CPU_Opt", "1300");
    machine.Input(1, "fan", 2, "Chipset", "2200");
}

void ArmBoard(const Machine& machine) {
    machine.Driver(0, "cpu_thermal");
    machine.Input(0, "temp", 1, nullptr, "53550");
    machine.Driver(1, "rp1_adc");
    machine.Input(1, "temp", 1, nullptr, "58000");
    machine.Driver(2, "pwmfan");
    machine.Input(2, "fan", 1, nullptr, "0");
    machine.Zone(0, "cpu-thermal", "53550");
}

void ArmBoardWithoutHwmon(const Machine& machine) {
    machine.Zone(0, "gpu-thermal", "61000");
    machine.Zone(1, "cpu0-thermal", "49000");
    machine.Zone(2, "cpu1-thermal", "51000");
}

void VirtualMachine(const Machine& machine) {
    machine.Driver(0, "virtio_net");
    machine.Zone(0, "acpitz", "16800");
}

void SocketsEnergyDriver(const Machine& machine) {
    machine.Driver(0, "k10temp");
    machine.Input(0, "temp", 1, "Tctl", "60000");
    machine.Driver(1, "zenergy");
    machine.Input(1, "energy", 1, "Ecore000", "700");
    machine.Input(1, "energy", 9, "Esocket0", "50000000");
    machine.Input(1, "energy", 10, "Esocket1", "0");
}
void SocketsEnergyDriverLater(const Machine& machine) {
    machine.Input(1, "energy", 9, "Esocket0", "138500000");
    machine.Input(1, "energy", 10, "Esocket1", "200000000");
}

void OldLaptop(const Machine& machine) {
    machine.Driver(0, "thinkpad");
    machine.Input(0, "temp", 1, "CPU", "55000");
    machine.Input(0, "fan", 1, nullptr, "0");
}

void ZoneAndBoard(const Machine& machine) {
    machine.Driver(0, "asusec");
    machine.Input(0, "temp", 1, "CPU", "38000");
    machine.Zone(0, "x86_pkg_temp", "44000");
}

}  // namespace

Q_DECLARE_METATYPE(Step)

class TestLinuxMachines : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void TheEnergyLibraryComesFirst() {
        for (const Quantity quantity : {Quantity::Power, Quantity::Temperature}) {
            QCOMPARE(PlatformSourceOrders()[size_t(quantity)].front(), SourceId::EnergyLibrary);
        }
    }

    void WhatIsShown_data() {
        QTest::addColumn<Step>("start");
        QTest::addColumn<Step>("second");
        QTest::addColumn<QStringList>("texts");  // power, temperature, fan
        QTest::addColumn<QVector<int>>("sources");
        QTest::addColumn<QVector<int>>("gaps");
        const auto row = [](const char* name, Step start, Step second, const QStringList& texts,
                            const QVector<SourceId>& sources, const QVector<ReadingGap>& gaps) {
            QVector<int> sourceNumbers;
            QVector<int> gapNumbers;
            for (int i = 0; i < 3; ++i) {
                sourceNumbers.append(int(sources[i]));
                gapNumbers.append(int(gaps[i]));
            }
            QTest::newRow(name) << start << second << texts << sourceNumbers << gapNumbers;
        };
        const auto texts = [](const char* power, const char* temperature, const char* fan) {
            return QStringList{QString::fromUtf8(power), QString::fromUtf8(temperature),
                               QString::fromUtf8(fan)};
        };
        const Step nothing = [](const Machine&) {};
        constexpr SourceId kNobody = SourceId::None;
        constexpr SourceId kPowerCap = SourceId::PowerCap;
        constexpr SourceId kHwmon = SourceId::HardwareMonitor;
        constexpr ReadingGap kNone = ReadingGap::None;
        constexpr ReadingGap kNoSource = ReadingGap::NoSource;
        constexpr ReadingGap kNoRight = ReadingGap::NoRight;

        row("AMD desktop", AmdDesktop, AmdDesktopLater, texts("65w", "62℃", "1184"),
            {kPowerCap, kHwmon, kHwmon}, {kNone, kNone, kNone});
        row("hybrid Intel laptop with the right", HybridLaptop, HybridLaptopLater, texts("7w", "48℃", "   0"),
            {kPowerCap, kHwmon, kHwmon}, {kNone, kNone, kNone});
        row("hybrid Intel laptop without", HybridLaptopLocked, HybridLaptopLater, texts("--w", "48℃", "   0"),
            {kPowerCap, kHwmon, kHwmon}, {kNoRight, kNone, kNone});
        row("two packages", TwoPackages, TwoPackagesLater, texts("20w", "50℃", "1000"),
            {kPowerCap, kHwmon, kNobody}, {kNone, kNone, kNoSource});
        row("mirrored dies", MirroredDies, MirroredDiesLater, texts("150w", "68℃", "2800"),
            {kPowerCap, kHwmon, kNobody}, {kNone, kNone, kNoSource});
        row("new AMD on an old kernel", NewAmdOnAnOldKernel, nothing, texts("--w", "51℃", "1300"),
            {kNobody, kHwmon, kHwmon}, {kNoSource, kNone, kNone});
        row("ARM board", ArmBoard, nothing, texts("--w", "53℃", "   0"), {kNobody, kHwmon, kHwmon},
            {kNoSource, kNone, kNone});
        row("ARM board without hwmon", ArmBoardWithoutHwmon, nothing, texts("--w", "51℃", "1100"),
            {kNobody, SourceId::ProcessorZone, kNobody}, {kNoSource, kNone, kNoSource});
        row("virtual machine", VirtualMachine, nothing, texts("--w", "--℃", "----"),
            {kNobody, kNobody, kNobody}, {kNoSource, kNoSource, kNoSource});
        row("a driver with the socket's energy", SocketsEnergyDriver, SocketsEnergyDriverLater,
            texts("88w", "60℃", "2000"), {SourceId::EnergyDriver, kHwmon, kNobody},
            {kNone, kNone, kNoSource});
        row("old laptop with a fan that stands still", OldLaptop, nothing, texts("--w", "55℃", "   0"),
            {kNobody, SourceId::BoardMonitor, kHwmon}, {kNoSource, kNone, kNone});
        row("the processor's zone before a board's sensor", ZoneAndBoard, nothing,
            texts("--w", "44℃", "1000"), {kNobody, SourceId::ProcessorZone, kNobody},
            {kNoSource, kNone, kNoSource});
    }
    void WhatIsShown() {
        QFETCH(Step, start);
        QFETCH(Step, second);
        QFETCH(QStringList, texts);
        QFETCH(QVector<int>, sources);
        QFETCH(QVector<int>, gaps);
        const LogCatcher log;
        Machine machine;
        start(machine);
        {
            const AsOrdinaryUser user;
            machine.SampleAfter(0s);
        }
        second(machine);
        {
            const AsOrdinaryUser user;
            machine.SampleAfter(1s);
        }
        QCOMPARE(machine.Texts(), texts);
        for (int i = 0; i < 3; ++i) {
            const Reading& reading = machine.readings[Quantity(i)];
            QCOMPARE(int(reading.source), sources[i]);
            QCOMPARE(int(reading.gap), gaps[i]);
        }
        const bool isLocked = gaps[0] == int(ReadingGap::NoRight);
        QCOMPARE(log.lines().size(), isLocked ? 1 : 0);
    }

    void SourceThatLies_data() {
        QTest::addColumn<QByteArray>("degrees");
        QTest::addColumn<QByteArray>("energy");
        QTest::addColumn<QByteArray>("fan");
        const auto row = [](const char* name, const char* degrees, const char* energy, const char* fan) {
            QTest::newRow(name) << QByteArray(degrees) << QByteArray(energy) << QByteArray(fan);
        };
        row("too low", "-273000", "-5", "-1");
        row("nothing", "0", "", "");
        row("too high", "255000", "99999999999999999999", "65535");
        row("words", "N/A", "much", "fast");
        row("numbers with more behind them", "45000 C", "5 uJ", "900 RPM");
        row("more than a kilowatt", "130000", "1000000000", "20001");
    }
    void SourceThatLies() {
        QFETCH(QByteArray, degrees);
        QFETCH(QByteArray, energy);
        QFETCH(QByteArray, fan);
        const LogCatcher log;
        Machine machine;
        machine.Counter("intel-rapl:0", "package-0", "0");
        machine.Driver(0, "coretemp");
        machine.Input(0, "temp", 1, "Package id 0", degrees);
        machine.Driver(1, "nct6775");
        machine.Input(1, "fan", 1, "cpu_fan", fan);
        machine.SampleAfter(0s);
        machine.Energy("intel-rapl:0", energy);
        machine.SampleAfter(1s);
        const QStringList none{QStringLiteral("--w"), QStringLiteral("--℃"), QStringLiteral("----")};
        QCOMPARE(machine.Texts(), none);
        for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
            QVERIFY(machine.readings[quantity].gap == ReadingGap::Unbelievable);
        }
    }

    // Its last values stand for ten seconds.
    void SourceThatVanishesAndComesBack() {
        const LogCatcher log;
        Machine machine;
        AmdDesktop(machine);
        machine.SampleAfter(0s);
        AmdDesktopLater(machine);
        machine.SampleAfter(1s);
        const QStringList measured = machine.Texts();
        machine.sysfs.Remove(QStringLiteral("hwmon/hwmon1"));
        machine.sysfs.Remove(QStringLiteral("hwmon/hwmon2"));
        machine.sysfs.Remove(QStringLiteral("powercap/intel-rapl:0"));
        for (int second = 1; second < 10; ++second) {
            machine.SampleAfter(1s);
            QCOMPARE(machine.Texts(), measured);
        }
        machine.SampleAfter(1s);
        QCOMPARE(machine.Texts(),
                 (QStringList{QStringLiteral("--w"), QStringLiteral("--℃"), QStringLiteral("----")}));
        QCOMPARE(log.lines(), QStringList());
        QVERIFY(machine.readings[Quantity::Temperature] ==
                Reading::Without(ReadingGap::Silent, SourceId::HardwareMonitor));
        // Under other numbers.
        machine.Counter("intel-rapl:1", "package-0", "5000000");
        machine.Driver(7, "k10temp");
        machine.Input(7, "temp", 1, "Tctl", "48000");
        for (int second = 0; second < 11; ++second) {
            machine.SampleAfter(1s);
        }
        machine.Energy("intel-rapl:1", "15000000");
        machine.SampleAfter(1s);
        QCOMPARE(machine.Texts(),
                 (QStringList{QStringLiteral("10w"), QStringLiteral("48℃"), QStringLiteral("1000")}));
    }

    void RightThatComesLater() {
        const LogCatcher log;
        Machine machine;
        HybridLaptopLocked(machine);
        for (int second = 0; second < 25; ++second) {
            const AsOrdinaryUser user;
            machine.SampleAfter(1s);
        }
        QCOMPARE(machine.Texts()[0], QStringLiteral("--w"));
        machine.Unlock("intel-rapl:0");
        for (int joules = 1; joules <= 12; ++joules) {
            machine.Energy("intel-rapl:0", QByteArray::number(9000000LL * joules));
            const AsOrdinaryUser user;
            machine.SampleAfter(1s);
            const QString shown = machine.Texts()[0];
            QVERIFY2(shown == QLatin1String("--w") || shown == QLatin1String("9w"), qPrintable(shown));
        }
        QCOMPARE(machine.Texts()[0], QStringLiteral("9w"));
        QCOMPARE(log.lines().size(), 1);
        const QString file = machine.sysfs.Path(QStringLiteral("powercap/intel-rapl:0/energy_uj"));
        QCOMPARE(
            log.lines()[0],
            QStringLiteral("The energy counter cannot be read. %1: %2").arg(file, qt_error_string(EACCES)));
    }

    void BetterSensorsThatComeLaterAreFound() {
        Machine machine;
        machine.Counter("intel-rapl-mmio:0", "package-0", "0");
        machine.Driver(1, "coretemp");
        machine.Input(1, "temp", 2, "Core 0", "41000");
        machine.Driver(2, "it87");
        machine.Input(2, "fan", 1, nullptr, "800");
        machine.SampleAfter(0s);
        QCOMPARE(machine.Texts(),
                 QStringList({QStringLiteral("--w"), QStringLiteral("41℃"), QStringLiteral(" 800")}));
        machine.Counter("intel-rapl:0", "package-0", "0");
        machine.Driver(3, "k10temp");
        machine.Input(3, "temp", 1, "Tdie", "52000");
        machine.Driver(4, "asus");
        machine.Input(4, "fan", 1, "cpu_fan", "1500");
        for (int second = 1; second <= 61; ++second) {
            machine.Energy("intel-rapl:0", QByteArray::number(30000000 * second));
            machine.Energy("intel-rapl-mmio:0", QByteArray::number(10000000 * second));
            machine.SampleAfter(1s);
            if (second == 59) {
                QCOMPARE(machine.Texts(),
                         QStringList({QStringLiteral("10w"), QStringLiteral("41℃"), QStringLiteral(" 800")}));
            }
        }
        QCOMPARE(machine.Texts(),
                 QStringList({QStringLiteral("30w"), QStringLiteral("52℃"), QStringLiteral("1500")}));
    }

    // What was used meanwhile is no second's; nor is what a counter that began anew seems to have counted.
    void PowerOfAnIntervalThatIsNone_data() {
        QTest::addColumn<qint64>("energy");
        QTest::addColumn<int>("secondsAsleep");
        QTest::newRow("a sleep") << qint64(361000000 + 20000000) << 3600;
        QTest::newRow("begun anew after a sleep") << qint64(5000000) << 3600;
        QTest::newRow("begun anew") << qint64(77000) << 0;
        QTest::newRow("more than a kilowatt") << qint64(20000000 + 998000001) << 0;
    }
    void PowerOfAnIntervalThatIsNone() {
        QFETCH(qint64, energy);
        QFETCH(int, secondsAsleep);
        Machine machine;
        AmdDesktop(machine);
        machine.Energy("intel-rapl:0", "0");
        machine.SampleAfter(0s);
        machine.Energy("intel-rapl:0", "20000000");
        machine.SampleAfter(1s);
        QCOMPARE(machine.Texts()[0], QStringLiteral("20w"));
        machine.clocks.asleep += std::chrono::seconds(secondsAsleep);
        machine.Energy("intel-rapl:0", QByteArray::number(energy));
        machine.SampleAfter(1s);
        QCOMPARE(machine.Texts()[0], QStringLiteral("20w"));
        machine.Energy("intel-rapl:0", QByteArray::number(energy + 30000000));
        machine.SampleAfter(1s);
        QCOMPARE(machine.Texts()[0], QStringLiteral("30w"));
    }
};

KIVO_GUILESS_TEST(TestLinuxMachines)
#include "tst_linux_machines.moc"
