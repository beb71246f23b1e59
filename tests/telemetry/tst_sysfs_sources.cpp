#include <QtTest>

#include <cerrno>
#include <random>

#include "../config/log_catcher.h"
#include "made_up_machine.h"
#include "support/test_program.h"
#include "telemetry/small_file.h"

using namespace kivo;
using namespace kivo::test;
using namespace std::chrono_literals;

namespace {

constexpr SourceId kId = SourceId::PowerCap;

// A file whose content changes quickly.
class Cell {
public:
    explicit Cell(const QString& path) : m_file(path) {
        if (!m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered)) {
            qFatal("The test cannot write %s.", qUtf8Printable(path));
        }
    }
    void Write(const QByteArray& content) {
        m_file.resize(0);
        m_file.seek(0);
        m_file.write(content);
    }

private:
    QFile m_file;
};

// What sysfs files hold, with a few bytes changed, cut or added.
class Mutations {
public:
    QByteArray Next() {
        static const std::vector<QByteArray> seeds{
            "45000\n",        "-273000\n",  "package-0-die-1\n",    "Package id 0\n",
            "262143328850\n", "Esocket0\n", "9223372036854775807\n"};
        QByteArray text = seeds[Number(seeds.size())];
        for (auto changes = Number(4); changes > 0; --changes) {
            const int at = int(Number(std::size_t(text.size()) + 1));
            switch (Number(3)) {
                case 0:
                    text.insert(at, char(Number(256)));
                    break;
                case 1:
                    text.remove(at, 1 + int(Number(3)));
                    break;
                default:
                    text.insert(at, QByteArray(int(Number(300)), char('0' + Number(10))));
            }
        }
        return text;
    }

private:
    std::size_t Number(std::size_t below) { return std::size_t(m_random() % below); }

    std::mt19937 m_random{20260101};
};

}  // namespace

class TestSysfsSources : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void PackagesTemperatureIsFound_data() {
        QTest::addColumn<QString>("driver");
        QTest::addColumn<QStringList>("labels");  // inputs 1, 2, ...; "-": none
        QTest::addColumn<QVector<int>>("found");  // inputs
        const auto row = [](const char* name, const char* driver, const QStringList& labels,
                            const QVector<int>& found) {
            QTest::newRow(name) << QString::fromLatin1(driver) << labels << found;
        };
        const QString none = QStringLiteral("-");
        const QString core = QStringLiteral("Core 0");
        row("package before cores", "coretemp", {core, QStringLiteral("Package id 0")}, {2});
        row("the name it had on old kernels", "coretemp", {QStringLiteral("Physical id 0")}, {1});
        row("Tdie before Tctl", "k10temp", {QStringLiteral("Tctl"), QStringLiteral("Tdie")}, {2});
        row("Tctl where there is no Tdie", "zenpower", {QStringLiteral("Tctl"), QStringLiteral("Tccd1")},
            {1});
        row("no label", "k10temp", {none}, {1});
        // Their sensors are what a package's own is made from.
        row("cores alone", "coretemp", {none, core, QStringLiteral("Core 1")}, {1, 2, 3});
        row("another package's", "coretemp", {QStringLiteral("Package id 1")}, {1});
        row("a board's processor", "cpu_thermal", {none}, {1});
        row("with a number", "cpu_thermal0", {none, none}, {1, 2});
        row("a chip of the board's", "asusec", {QStringLiteral("CPU"), QStringLiteral("CPU Package")}, {});
        row("another driver", "nvme", {QStringLiteral("Package id 0")}, {});
        row("no input", "coretemp", {}, {});
    }
    void PackagesTemperatureIsFound() {
        QFETCH(QString, driver);
        QFETCH(QStringList, labels);
        QFETCH(QVector<int>, found);
        const MadeUpMachine machine;
        machine.Driver(1, qPrintable(driver));
        QStringList files;
        for (int i = 1; i <= labels.size(); ++i) {
            const QByteArray label = labels[i - 1].toLatin1();
            machine.Input(1, "temp", i, label == "-" ? nullptr : label.constData(), "45000");
            if (found.contains(i)) {
                files.append(machine.sysfs.Path(QStringLiteral("hwmon/hwmon1/temp%1_input").arg(i)));
            }
        }
        QCOMPARE(FindTemperatureFiles(machine.Places().hwmon), files);
    }

    void BoardsSensorIsFoundApart_data() {
        QTest::addColumn<QStringList>("labels");
        QTest::addColumn<int>("found");  // 0: none
        QTest::newRow("of its socket") << QStringList{QStringLiteral("Chipset"), QStringLiteral("CPU")} << 2;
        QTest::newRow("the package before the socket")
            << QStringList{QStringLiteral("CPU"), QStringLiteral("CPU Package")} << 2;
        QTest::newRow("another one's") << QStringList{QStringLiteral("Chipset")} << 0;
    }
    void BoardsSensorIsFoundApart() {
        QFETCH(QStringList, labels);
        QFETCH(int, found);
        const MadeUpMachine machine;
        machine.Driver(0, "k10temp");
        machine.Input(0, "temp", 1, "Tctl", "50000");
        machine.Driver(1, "asusec");
        for (int i = 1; i <= labels.size(); ++i) {
            machine.Input(1, "temp", i, qPrintable(labels[i - 1]), "40000");
        }
        const QString file = machine.sysfs.Path(QStringLiteral("hwmon/hwmon1/temp%1_input").arg(found));
        QCOMPARE(FindBoardTemperatureFiles(machine.Places().hwmon),
                 found == 0 ? QStringList() : QStringList(file));
    }

    void ProcessorsFanIsFound_data() {
        QTest::addColumn<QString>("driver");
        QTest::addColumn<QStringList>("fans");  // "label=speed" of inputs 1, 2, ...
        QTest::addColumn<int>("found");         // 0: none
        const auto row = [](const char* name, const char* driver, const char* fans, int found) {
            QTest::newRow(name) << QString::fromLatin1(driver)
                                << QString::fromLatin1(fans).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                                << found;
        };
        row("by its name", "asus", "gpu_fan=900 cpu_fan=0", 2);
        row("in capitals", "dell_smm", "Video=2400 PROCESSOR=1500", 2);
        row("the cooler's first fan", "asusec", "CPU_Opt=1000 CPU=900", 2);
        row("its second one alone", "asusec", "Chipset=3000 CPU_Opt=1000", 2);
        row("a pump", "nct6775", "CPU_Pump=2900 cpu_fan=700", 2);
        row("a pump alone", "nct6775", "Pump=2900", 0);
        row("a pump before a fan that turns", "nct6775", "Pump=2900 =0 =800", 3);
        row("a further header that turns before the first one, which stands still", "nct6775",
            "cpu_fan=0 CPU_Opt=1000", 2);
        row("the first header before the second", "nct6775", "cpu_fan2=1200 cpu_fan1=1000", 2);
        row("the first that turns", "nct6775", "=0 =1184 =2500", 2);
        row("a single one that stands still", "thinkpad", "=0", 1);
        row("headers without a fan", "it8728", "=0 =0 =0", 0);
        row("words", "it8728", "=fast =none", 0);
        row("of a graphics card", "amdgpu", "=1500", 0);
        row("of a power supply", "corsairpsu", "=1500", 0);
        row("no fan", "k10temp", "", 0);
    }
    void ProcessorsFanIsFound() {
        QFETCH(QString, driver);
        QFETCH(QStringList, fans);
        QFETCH(int, found);
        const MadeUpMachine machine;
        machine.Driver(1, qPrintable(driver));
        for (int i = 1; i <= fans.size(); ++i) {
            const QStringList fan = fans[i - 1].split(QLatin1Char('='));
            machine.Input(1, "fan", i, fan[0].isEmpty() ? nullptr : qPrintable(fan[0]), fan[1].toLatin1());
        }
        const QString file = machine.sysfs.Path(QStringLiteral("hwmon/hwmon1/fan%1_input").arg(found));
        QCOMPARE(FindFanFiles(machine.Places().hwmon), found == 0 ? QStringList() : QStringList(file));
    }

    void TenthFanComesAfterTheNinth() {
        const MadeUpMachine machine;
        machine.Driver(1, "nct6775");
        machine.Input(1, "fan", 10, nullptr, "1000");
        machine.Input(1, "fan", 9, nullptr, "900");
        QVERIFY(FindFanFiles(machine.Places().hwmon).value(0).endsWith(QLatin1String("fan9_input")));
    }

    void PackagesCountersAreFound_data() {
        QTest::addColumn<QStringList>("zones");  // "folder=name"
        QTest::addColumn<QStringList>("found");  // folders
        const auto row = [](const char* name, const char* zones, const char* found) {
            QTest::newRow(name) << QString::fromLatin1(zones).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                                << QString::fromLatin1(found).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        };
        row("a package with its cores", "intel-rapl:0=package-0 intel-rapl:0:0=core", "intel-rapl:0");
        row("the first of two", "intel-rapl:0=package-1 intel-rapl:1=package-0", "intel-rapl:1");
        row("all dies",
            "intel-rapl:0=package-0-die-0 intel-rapl:1=package-0-die-1 intel-rapl:2=package-1-die-0",
            "intel-rapl:0 intel-rapl:1");
        row("numbers are hexadecimal", "intel-rapl:f=package-0-die-0 intel-rapl:10=package-0-die-1",
            "intel-rapl:f intel-rapl:10");
        row("the board is no package", "intel-rapl:0=psys", "");
        row("by registers alone", "intel-rapl:0=package-0 intel-rapl-mmio:0=package-0", "intel-rapl:0");
        row("by memory where there is nothing else", "intel-rapl:1=psys intel-rapl-mmio:0=package-0",
            "intel-rapl-mmio:0");
        row("nothing", "dtpm=dtpm", "");
    }
    void PackagesCountersAreFound() {
        QFETCH(QStringList, zones);
        QFETCH(QStringList, found);
        const MadeUpMachine machine;
        for (const QString& zone : qAsConst(zones)) {
            const QStringList parts = zone.split(QLatin1Char('='));
            machine.Counter(qPrintable(parts[0]), qPrintable(parts[1]), "0");
        }
        QStringList files;
        for (const QString& zone : qAsConst(found)) {
            files.append(machine.sysfs.Path(QStringLiteral("powercap/%1/energy_uj").arg(zone)));
        }
        QCOMPARE(FindPowerCapFiles(machine.Places().powercap), files);
    }

    void FolderThatIsNotThere() {
        const QString nowhere = QStringLiteral("/no/such");
        QCOMPARE(FindPowerCapFiles(nowhere) + FindSocketEnergyFiles(nowhere) + FindTemperatureFiles(nowhere) +
                     FindBoardTemperatureFiles(nowhere) + FindFanFiles(nowhere) +
                     FindProcessorZoneFiles(nowhere),
                 QStringList());
    }

    void FoldersOfTheKernelAreLinks() {
        const MadeUpSysfs sysfs;
        sysfs.Write(QStringLiteral("devices/coretemp.0/name"), "coretemp");
        sysfs.Write(QStringLiteral("devices/coretemp.0/temp1_label"), "Package id 0");
        sysfs.Write(QStringLiteral("devices/coretemp.0/temp1_input"), "61000");
        QVERIFY(QDir().mkpath(sysfs.Path(QStringLiteral("hwmon"))));
        QVERIFY(QFile::link(sysfs.Path(QStringLiteral("devices/coretemp.0")),
                            sysfs.Path(QStringLiteral("hwmon/hwmon12"))));
        QCOMPARE(FindTemperatureFiles(sysfs.Path(QStringLiteral("hwmon"))),
                 QStringList(sysfs.Path(QStringLiteral("hwmon/hwmon12/temp1_input"))));
    }

    void PowerOfTwoSamples_data() {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::addColumn<int>("milliseconds");
        QTest::addColumn<double>("watts");  // negative: none
        const auto row = [](const char* name, const char* before, const char* after, int time, double watts) {
            QTest::newRow(name) << QByteArray(before) << QByteArray(after) << time << watts;
        };
        row("a second", "5", "12900005", 1000, 12.9);
        row("longer than a second", "0", "12900000", 2000, 6.45);
        row("the longest", "0", "15000000", 20000, 0.75);
        row("too long", "0", "15000000", 20001, -1);
        row("no time at all", "0", "12900000", 0, -1);
        row("backwards in time", "0", "12900000", -1000, -1);
        row("nothing used", "77", "77", 1000, 0.0);
        row("round or anew", "262143000000", "11900000", 1000, -1);
        row("the most", "0", "998000000", 1000, 998.0);
        row("more", "0", "998000001", 1000, -1);
        row("no number before", "much", "12900000", 1000, -1);
        row("no number after", "0", "much", 1000, -1);
        row("more than fits", "0", "99999999999999999999999", 1000, -1);
        row("below nothing", "-12900000", "0", 1000, -1);
        row("empty", "", "", 1000, -1);
    }
    void PowerOfTwoSamples() {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        QFETCH(int, milliseconds);
        QFETCH(double, watts);
        const LogCatcher log;
        const MadeUpSysfs sysfs;
        const QString file = sysfs.Path(QStringLiteral("energy_uj"));
        EnergyMeter meter(kId, {sysfs.Path({}), [file](const QString&) { return QStringList(file); }});
        sysfs.Write(QStringLiteral("energy_uj"), before);
        QVERIFY(!meter.Sample({5s, false}).value);
        sysfs.Write(QStringLiteral("energy_uj"), after);
        const Reading reading = meter.Sample({5s + std::chrono::milliseconds(milliseconds), false});
        QCOMPARE(reading.value.has_value(), watts >= 0);
        QVERIFY(!reading.value || qAbs(*reading.value - watts) < 1e-9);
    }

    // Two dies that use the same by chance are two.
    void CountersThatStandApartAreNoMirrors() {
        const MadeUpSysfs sysfs;
        const auto write = [&sysfs](const char* first, const char* second) {
            sysfs.Write(QStringLiteral("a"), first);
            sysfs.Write(QStringLiteral("b"), second);
        };
        EnergyMeter meter(kId,
                          {sysfs.Path({}), [](const QString& folder) {
                               return QStringList{folder + QLatin1String("/a"), folder + QLatin1String("/b")};
                           }});
        write("10000000", "40000000");
        meter.Sample({1s, false});
        write("20000000", "50000000");
        QCOMPARE(meter.Sample({2s, false}).value.value_or(-1), 20.0);
        // One goes past the other.
        write("60000000", "60000000");
        QCOMPARE(meter.Sample({3s, false}).value.value_or(-1), 50.0);
        write("60900000", "61000000");
        QCOMPARE(meter.Sample({4s, false}).value.value_or(-1), 0.9);
        write("70000000", "90000000");
        QCOMPARE(meter.Sample({5s, false}).value.value_or(-1), 38.1);
        // One begins anew.
        write("5", "190000000");
        QVERIFY(!meter.Sample({6s, false}).value);
    }

    void WhatIsMissingIsSearchedForEveryTenSeconds() {
        const MadeUpSysfs sysfs;
        int searches = 0;
        QStringList there;
        FileSearch search(sysfs.Path({}), [&](const QString&) {
            ++searches;
            return there;
        });
        search.Files(1s);
        QVERIFY(search.Files(10999ms).isEmpty());
        QCOMPARE(searches, 1);
        there.append(QStringLiteral("file"));
        QCOMPARE(search.Files(11s), there);
        search.Files(1000s);
        QCOMPARE(searches, 2);
        search.Lose();
        QCOMPARE(search.Files(1001s), there);
        QCOMPARE(searches, 3);
    }

    // As often as folders came or went, and not otherwise.
    void WhatIsThereIsSearchedAgainWhenFoldersCome() {
        const MadeUpSysfs sysfs;
        sysfs.Write(QStringLiteral("hwmon0/name"), "one");
        int searches = 0;
        FileSearch search(sysfs.Path({}), [&searches](const QString& folder) {
            ++searches;
            return QStringList(folder + QStringLiteral("/%1").arg(searches));
        });
        for (int second = 0; second < 600; ++second) {
            search.Files(std::chrono::seconds(second));
        }
        QCOMPARE(searches, 1);
        sysfs.Write(QStringLiteral("hwmon1/name"), "two");
        QCOMPARE(search.Files(659s), QStringList(sysfs.Path(QStringLiteral("2"))));
        sysfs.Remove(QStringLiteral("hwmon1"));
        QCOMPARE(search.Files(718s), QStringList(sysfs.Path(QStringLiteral("2"))));
        QCOMPARE(search.Files(719s), QStringList(sysfs.Path(QStringLiteral("3"))));
    }

    void WhyAFileCannotBeRead() {
        QVERIFY(GapOfError(0) == ReadingGap::Unbelievable);
        QVERIFY(GapOfError(ENOENT) == ReadingGap::NoSource);
        QVERIFY(GapOfError(ENODEV) == ReadingGap::NoSource);
        QVERIFY(GapOfError(EACCES) == ReadingGap::NoRight);
        QVERIFY(GapOfError(EPERM) == ReadingGap::NoRight);
        QVERIFY(GapOfError(EIO) == ReadingGap::Silent);
        QVERIFY(GapOfError(ENODATA) == ReadingGap::Silent);
    }

    void HottestThatCanBeCounts() {
        const MadeUpSysfs sysfs;
        const auto file = [&sysfs](int number) { return sysfs.Path(QStringLiteral("temp%1").arg(number)); };
        FileValue value(SourceId::HardwareMonitor, Quantity::Temperature, 1000.0,
                        {sysfs.Path({}), [file](const QString&) {
                             return QStringList{file(1), file(2), file(3)};
                         }});
        const auto read = [&] { return value.Read({1s, false}); };
        sysfs.Write(QStringLiteral("temp1"), "61000");
        sysfs.Write(QStringLiteral("temp2"), "72500");
        sysfs.Write(QStringLiteral("temp3"), "255000");
        QVERIFY(read() == Reading::Of(72.5, SourceId::HardwareMonitor));
        // A core that is switched off loses its file, or its reading.
        QVERIFY(QFile::remove(file(2)));
        sysfs.Write(QStringLiteral("temp3"), "N/A");
        QVERIFY(read() == Reading::Of(61, SourceId::HardwareMonitor));
        sysfs.Write(QStringLiteral("temp1"), "0");
        QVERIFY(read() == Reading::Without(ReadingGap::Unbelievable, SourceId::HardwareMonitor));
        QVERIFY(QFile::remove(file(1)));
        QVERIFY(QFile::remove(file(3)));
        QVERIFY(read() == Reading::Without(ReadingGap::NoSource));
    }

    void LineWithoutAnEnd() {
        const MadeUpSysfs sysfs;
        QFile file(sysfs.Path(QStringLiteral("temp1_input")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(" 4500") == 5);
        file.close();
        QCOMPARE(ReadSmallFile(file.fileName()).value_or(QByteArray()), QByteArray("4500"));
        QVERIFY(ReadNumberFile(file.fileName()) == 4500);
    }

    // A hundred thousand texts that the kernel's might be mistaken for.
    void WhateverStandsInAFileIsAValueOrNone() {
        const FileValue temperature(SourceId::HardwareMonitor, Quantity::Temperature, 1000.0, {{}, {}});
        const QRegularExpression packageName(QStringLiteral("^package-[0-9]+(-die-.*)?$"));
        Mutations mutations;
        int values = 0;
        int packages = 0;
        for (int input = 0; input < 100000; ++input) {
            const QByteArray line = FirstLine(mutations.Next());
            const Reading degrees = temperature.ValueOf(line);
            // What is a value is a number alone.
            bool isNumber = false;
            const double told = double(line.toLongLong(&isNumber)) / 1000.0;
            const bool isValue = isNumber && told > 0.0 && told < 130.0;
            if (degrees.value != (isValue ? std::make_optional(told) : std::nullopt) ||
                degrees.gap != (isValue ? ReadingGap::None : ReadingGap::Unbelievable)) {
                QFAIL(line.toHex().constData());
            }
            const auto package = PackageNumber(line);
            if (package && !packageName.match(QString::fromLatin1(line)).hasMatch()) {
                QFAIL(line.toHex().constData());
            }
            values += isValue ? 1 : 0;
            packages += package ? 1 : 0;
        }
        QVERIFY2(values > 1000 && packages > 1000,
                 qPrintable(QStringLiteral("%1 %2").arg(values).arg(packages)));
    }

    void WhateverACounterSaysIsAPowerOrNone() {
        const LogCatcher log;
        const MadeUpSysfs sysfs;
        sysfs.Write(QStringLiteral("energy_uj"), "0");
        Cell energy(sysfs.Path(QStringLiteral("energy_uj")));
        EnergyMeter meter(kId, {sysfs.Path({}), [](const QString& folder) {
                                    return QStringList(folder + QLatin1String("/energy_uj"));
                                }});
        Mutations mutations;
        std::chrono::nanoseconds now{0};
        for (int input = 0; input < 2000; ++input) {
            const QByteArray text = mutations.Next();
            energy.Write(text);
            now += 1s;
            const Reading watts = meter.Sample({now, false});
            QVERIFY2(!watts.value || IsBelievable(Quantity::Power, *watts.value), text.toHex().constData());
        }
        QVERIFY(log.lines().size() == 1);
    }
};

KIVO_GUILESS_TEST(TestSysfsSources)
#include "tst_sysfs_sources.moc"
