#include <QtTest>

#include "made_up_sysfs.h"
#include "support/test_program.h"
#include "telemetry/thermal_zone_linux.h"

using namespace kivo;
using namespace kivo::test;

namespace {

struct Zone {
    const char* type;
    const char* temp;
};

}  // namespace

Q_DECLARE_METATYPE(QVector<Zone>)

class TestSysfsThermalZone : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void BestZoneIsTaken_data() {
        QTest::addColumn<QVector<Zone>>("zones");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QVector<Zone>& zones, const char* number) {
            QTest::newRow(name) << zones
                                << (number == nullptr ? QStringLiteral("N/A")
                                                      : QString::fromLatin1(number) + QStringLiteral("°C"));
        };
        row("no zone", {}, nullptr);
        row("the firmware's", {{"acpitz", "27800"}}, "27.800000");
        // The firmware's is the same number for ever on many boards.
        row("the processor's before the firmware's", {{"acpitz", "27800"}, {"x86_pkg_temp", "45000"}},
            "45.000000");
        row("in whatever order", {{"x86_pkg_temp", "45000"}, {"acpitz", "27800"}}, "45.000000");
        row("a board's own name", {{"cpu-thermal", "48300"}, {"acpitz", "27800"}}, "48.300000");
        row("another one", {{"gpu-thermal", "51000"}, {"cpu0_thermal", "49000"}}, "49.000000");
        row("of the whole chip", {{"soc_thermal", "47000"}, {"battery", "30000"}}, "47.000000");
        row("the firmware's before others", {{"acpitz", "27800"}, {"iwlwifi_1", "39000"}}, "27.800000");
        row("the processor's before others", {{"x86_pkg_temp", "45000"}, {"iwlwifi_1", "39000"}},
            "45.000000");
        row("any other", {{"pch_skylake", "51500"}}, "51.500000");
        row("the last of a kind", {{"acpitz", "16800"}, {"acpitz", "27800"}}, "27.800000");
        row("by number, the tenth after the ninth",
            {{"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "1"},
             {"acpitz", "10000"}},
            "10.000000");
        row("frost", {{"acpitz", "-5500"}}, "-5.500000");
        row("no number", {{"acpitz", "warm"}}, nullptr);
        row("0 kelvin in steps of a tenth", {{"acpitz", "-273100"}}, nullptr);
        row("0 kelvin, as it was rounded", {{"x86_pkg_temp", "45000"}, {"cpu-thermal", "-273200"}},
            "45.000000");
        row("the coldest", {{"acpitz", "-199999"}}, "-199.999000");
        row("the firmware has no sensor", {{"x86_pkg_temp", "45000"}, {"acpitz", "-274000"}}, "45.000000");
        row("no number, then the processor's", {{"acpitz", ""}, {"x86_pkg_temp", "45000"}}, "45.000000");
    }
    void BestZoneIsTaken() {
        QFETCH(QVector<Zone>, zones);
        QFETCH(QString, text);
        const MadeUpSysfs sysfs;
        for (int i = 0; i < zones.size(); ++i) {
            sysfs.Write(QStringLiteral("thermal_zone%1/type").arg(i), zones[i].type);
            sysfs.Write(QStringLiteral("thermal_zone%1/temp").arg(i), zones[i].temp);
        }
        sysfs.Write(QStringLiteral("cooling_device0/type"), "Processor");
        QCOMPARE(ReadThermalZones(sysfs.Path({})), text);
    }

    void FolderThatIsNotThere() {
        QCOMPARE(ReadThermalZones(QStringLiteral("/no/such/folder")), QStringLiteral("N/A"));
    }
};

KIVO_GUILESS_TEST(TestSysfsThermalZone)
#include "tst_sysfs_thermal_zone.moc"
