#include <QtTest>

#include <limits>

#include "made_up_counters.h"
#include "sensor_words.h"
#include "support/test_program.h"
#include "telemetry/energy_meter_counters.h"
#include "telemetry/energy_meter_names.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QString kPower = QStringLiteral("\\Energy Meter(*)\\Power");

CounterValue Meter(const char* instance, double milliwatts) {
    return {QString::fromLatin1(instance), milliwatts};
}

QString PowerIn(const std::vector<CounterValue>& milliwatts) {
    return Said(ReadEnergyMeterCounters(milliwatts));
}

}  // namespace

class TestEnergyMeterCounters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void NamesOfThePackage_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("rank");
        const auto row = [](const char* name, int rank) {
            QTest::newRow(name) << QString::fromLatin1(name) << rank;
        };
        constexpr int kNone = -1;
        row("RAPL_Package0_PKG", 0);
        row("rapl_package0_pkg", 0);
        row("RAPL_PACKAGE1_PKG", 1);
        row("RAPL_Package10_PKG", 10);
        row("Current Socket Power", 1000);
        row("current socket energy", 1000);
        row("Current Socket Energy", 1000);
        row("_Total", kNone);
        row("RAPL_Package0_PP0", kNone);
        row("RAPL_Package0_PP1", kNone);
        row("RAPL_Package0_DRAM", kNone);
        row("RAPL_Package0_Core0_CORE", kNone);
        row("RAPL_Package_PKG", kNone);
        row("RAPL_PackageX_PKG", kNone);
        row("RAPL_Package-1_PKG", kNone);
        row("RAPL_Package+1_PKG", kNone);
        row("RAPL_Package123_PKG", kNone);
        row("RAPL_PKG", kNone);
        row("VDDCR_VDD Power", kNone);
        row("VDDCR_SOC Power", kNone);
        row("Apu Power", kNone);
        row("Apu Energy", kNone);
        row("", kNone);
    }
    void NamesOfThePackage() {
        QFETCH(QString, name);
        QTEST(PackageMeterRank(name).value_or(-1), "rank");
    }

    void PackageComesBeforeTheSocketAndNothingIsAdded() {
        std::vector<CounterValue> meters{Meter("_Total", 100'000), Meter("RAPL_Package0_PP0", 20'000)};
        QCOMPARE(PowerIn({}), QStringLiteral("no source"));
        QCOMPARE(PowerIn(meters), QStringLiteral("no source"));
        meters.push_back(Meter("Current Socket Power", 33'500));
        QCOMPARE(PowerIn(meters), QStringLiteral("33.5"));
        meters.push_back(Meter("RAPL_Package1_PKG", 44'000));
        QCOMPARE(PowerIn(meters), QStringLiteral("44"));
        meters.push_back(Meter("RAPL_Package0_PKG", 42'125));
        QCOMPARE(PowerIn(meters), QStringLiteral("42.125"));
    }

    void LiarGivesWay_data() {
        QTest::addColumn<double>("lie");
        QTest::newRow("minus") << -1.0;
        QTest::newRow("999 watts") << 999'000.0;
        QTest::newRow("a counter that ran over") << 4294967295000.0;
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
    }
    void LiarGivesWay() {
        QFETCH(double, lie);
        QCOMPARE(PowerIn({Meter("RAPL_Package0_PKG", lie)}), QStringLiteral("unbelievable"));
        QCOMPARE(PowerIn({Meter("RAPL_Package0_PKG", lie), Meter("Current Socket Power", 33'500)}),
                 QStringLiteral("33.5"));
        QCOMPARE(PowerIn({Meter("Current Socket Power", 33'500), Meter("RAPL_Package0_PKG", lie)}),
                 QStringLiteral("33.5"));
    }

    void PowerIsBetweenTwoSamples() {
        MadeUpCounters counters;
        counters.values[kPower] = {Meter("RAPL_Package0_PKG", 0)};
        EnergyMeterCounters source(counters.Factory());
        QCOMPARE(source.Id(), SourceId::EnergyMeterCounters);
        QCOMPARE(Power(source, At(0)), QStringLiteral("not read"));
        counters.values[kPower] = {Meter("RAPL_Package0_PKG", 42'000)};
        const SensorReadings readings = source.Read(At(1));
        QCOMPARE(Said(readings), QStringLiteral("42, no source, no source"));
        QVERIFY(AreAllOf(readings, SourceId::EnergyMeterCounters));
        QCOMPARE(counters.opened, 1);
        QCOMPARE(counters.collected, 2);
    }

    void SleepAndLongPausesAreNotMeasuredOver() {
        MadeUpCounters counters;
        counters.values[kPower] = {Meter("RAPL_Package0_PKG", 42'000)};
        EnergyMeterCounters source(counters.Factory());
        source.Read(At(0));
        QCOMPARE(Power(source, At(10)), QStringLiteral("42"));
        QCOMPARE(Power(source, AfterSleepAt(11)), QStringLiteral("not read"));
        QCOMPARE(Power(source, At(12)), QStringLiteral("42"));
        QCOMPARE(Power(source, At(60)), QStringLiteral("not read"));
        QCOMPARE(Power(source, At(61)), QStringLiteral("42"));
        QCOMPARE(Power(source, At(61)), QStringLiteral("not read"));
    }

    void SystemWithoutThemIsAskedOnceAMinute() {
        MadeUpCounters counters;
        EnergyMeterCounters source(counters.Factory());
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("no source, no source, no source"));
        counters.values[kPower] = {Meter("RAPL_Package0_PKG", 42'000)};
        QCOMPARE(Power(source, At(59)), QStringLiteral("no source"));
        QCOMPARE(Power(source, At(60)), QStringLiteral("not read"));
        QCOMPARE(Power(source, At(61)), QStringLiteral("42"));
    }

    void MetersVanishAndComeBack() {
        MadeUpCounters counters;
        counters.values[kPower] = {Meter("RAPL_Package0_PKG", 42'000)};
        EnergyMeterCounters source(counters.Factory());
        source.Read(At(0));
        counters.values[kPower] = {};
        for (int second = 1; second < 130; ++second) {
            const QString power = Power(source, At(second));
            QVERIFY2(power == QLatin1String("no source") || power == QLatin1String("not read"),
                     qPrintable(power));
        }
        QCOMPARE(counters.opened, 3);  // anew once a minute
        counters.values[kPower] = {Meter("RAPL_Package0_PKG", 42'000)};
        QCOMPARE(Power(source, At(130)), QStringLiteral("42"));
    }
};

KIVO_APPLESS_TEST(TestEnergyMeterCounters)
#include "tst_energy_meter_counters.moc"
