#include <QtTest>

#include <limits>

#include "made_up_counters.h"
#include "sensor_words.h"
#include "support/test_program.h"
#include "telemetry/firmware_zone_counters.h"

using namespace kivo;
using namespace kivo::test;

namespace {

CounterValue Zone(const char* instance, double value) {
    return {QString::fromLatin1(instance), value};
}

// Zones with one decimal, parted by blanks.
QString InWords(const std::vector<double>& zones) {
    QStringList words;
    for (const double zone : zones) {
        words.append(QString::number(zone, 'f', 2));
    }
    return words.join(QLatin1Char(' '));
}

}  // namespace

class TestFirmwareZoneCounters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void TenthsOfAKelvinElseKelvins() {
        const std::vector<CounterValue> tenths{Zone("\\_TZ.TZ00", 3012), Zone("\\_TZ.TZ01", 0)};
        const std::vector<CounterValue> kelvin{Zone("\\_TZ.TZ00", 301), Zone("\\_tz.tz01", 330),
                                               Zone("\\_TZ.TZ02", 340)};
        QCOMPARE(InWords(FirmwareZones(tenths, kelvin)), QStringLiteral("28.00 56.80 66.80"));
        QCOMPARE(InWords(FirmwareZones(tenths, {})), QStringLiteral("28.00"));
        QCOMPARE(InWords(FirmwareZones({}, kelvin)), QStringLiteral("27.80 56.80 66.80"));
        QCOMPARE(InWords(FirmwareZones({}, {})), QString());
    }

    void AbsoluteZeroIsNoTemperature() {
        const std::vector<CounterValue> nothing{Zone("a", 0), Zone("b", -5),
                                                Zone("c", std::numeric_limits<double>::quiet_NaN()),
                                                Zone("d", std::numeric_limits<double>::infinity())};
        QCOMPARE(InWords(FirmwareZones(nothing, nothing)), QString());
        QCOMPARE(InWords(FirmwareZones(nothing, {Zone("c", 300)})), QStringLiteral("26.80"));
    }

    void HottestZoneCounts() {
        MadeUpCounters counters;
        counters.values[FirmwareZonePaths()[0]] = {Zone("a", 3012), Zone("b", 3212), Zone("c", 3112)};
        FirmwareZoneCounters source(counters.Factory());
        QCOMPARE(source.Id(), SourceId::FirmwareZone);
        const SensorReadings readings = source.Read(At(0));
        QCOMPARE(Said(readings), QStringLiteral("no source, 48, no source"));
        QVERIFY(AreAllOf(readings, SourceId::FirmwareZone));
        // One that lies is left out.
        counters.values[FirmwareZonePaths()[0]].push_back(Zone("d", 5282));
        QCOMPARE(Temperature(source, At(1)), QStringLiteral("48"));
        counters.values[FirmwareZonePaths()[0]] = {Zone("d", 5282), Zone("e", 2731)};
        QCOMPARE(Temperature(source, At(2)), QStringLiteral("unbelievable"));
        QCOMPARE(counters.opened, 1);
    }

    void SystemThatHasTheOlderCounterOnly() {
        MadeUpCounters counters;
        counters.values[FirmwareZonePaths()[1]] = {Zone("a", 303)};
        FirmwareZoneCounters source(counters.Factory());
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("29.8"));
    }

    void ZonesComeGoAndComeBack() {
        MadeUpCounters counters;
        FirmwareZoneCounters source(counters.Factory());
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("no source, no source, no source"));
        counters.values[FirmwareZonePaths()[1]] = {Zone("a", 303)};
        QCOMPARE(Temperature(source, At(59)), QStringLiteral("no source"));
        QCOMPARE(Temperature(source, At(60)), QStringLiteral("29.8"));
        counters.values.clear();
        QCOMPARE(Temperature(source, At(61)), QStringLiteral("no source"));
        QCOMPARE(Temperature(source, At(120)), QStringLiteral("no source"));
        counters.values[FirmwareZonePaths()[1]] = {Zone("a", 304)};
        QCOMPARE(Temperature(source, At(180)), QStringLiteral("30.8"));
        QCOMPARE(counters.opened, 2);
    }

    void CountersNames() {
        QCOMPARE(FirmwareZonePaths()[0],
                 QStringLiteral(R"(\Thermal Zone Information(*)\High Precision Temperature)"));
        QCOMPARE(FirmwareZonePaths()[1], QStringLiteral(R"(\Thermal Zone Information(*)\Temperature)"));
    }
};

KIVO_APPLESS_TEST(TestFirmwareZoneCounters)
#include "tst_firmware_zone_counters.moc"
