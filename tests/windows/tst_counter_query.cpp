#include <QtTest>

#include "../telemetry/sensor_words.h"
#include "support/test_program.h"
#include "telemetry/energy_meter_counters.h"
#include "telemetry/firmware_zone_counters.h"
#include "telemetry/thermal_zone_windows.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr char kPower[] = "\\Energy Meter(*)\\Power";
constexpr char kTenths[] = "\\Thermal Zone Information(*)\\High Precision Temperature";
constexpr char kKelvin[] = "\\Thermal Zone Information(*)\\Temperature";

// The system's counters from now on: a path and its instances, "name=value|name=value".
void SetCounters(std::initializer_list<std::pair<const char*, const char*>> counters) {
    QByteArray text;
    for (const auto& [path, instances] : counters) {
        text += QByteArray(path) + '|' + instances + ';';
    }
    qputenv("KIVO_TEST_COUNTERS", text);
}

QString InWords(const std::vector<CounterValue>& values) {
    QStringList words;
    for (const CounterValue& value : values) {
        words.append(QStringLiteral("%1=%2").arg(value.instance).arg(value.value));
    }
    return words.join(QLatin1Char(' '));
}

}  // namespace

// The sources over the real calls of the performance counters; the library behind them is the one of the
// tests.
class TestCounterQuery : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        qunsetenv("KIVO_TEST_COUNTERS");
        qunsetenv("KIVO_TEST_PDH_FAILS");
        m_log.reset(new QTemporaryFile);
        QVERIFY(m_log->open());
        qputenv("KIVO_TEST_PDH_LOG", m_log->fileName().toLocal8Bit());
    }
    void cleanup() { init(); }

    void InstancesComeWithTheirNames() {
        SetCounters({{kTenths, "\\_TZ.TZ00=3012|\\_TZ.TZ01=none|\\_TZ.TZ02=0.5"}});
        const auto query = OpenCounterQuery(FirmwareZonePaths());
        QVERIFY(query != nullptr);
        QCOMPARE(InWords(query->Values(0)), QString());  // nothing is collected yet
        query->Collect();
        QCOMPARE(InWords(query->Values(0)), QStringLiteral("\\_TZ.TZ00=3012 \\_TZ.TZ02=0.5"));
        QCOMPARE(InWords(query->Values(1)), QString());
        // Instances come and go.
        SetCounters({{kTenths, "a=1"}});
        query->Collect();
        QCOMPARE(InWords(query->Values(0)), QStringLiteral("a=1"));
        SetCounters({{kTenths, ""}});
        query->Collect();
        QCOMPARE(InWords(query->Values(0)), QString());
    }

    void SystemWithoutTheCounters() { QVERIFY(OpenCounterQuery(FirmwareZonePaths()) == nullptr); }

    void FailedCallIsNoValue_data() {
        QTest::addColumn<QByteArray>("call");
        QTest::addColumn<bool>("isForGood");
        QTest::newRow("the query is not opened") << QByteArray("open") << true;
        QTest::newRow("the counter is not added") << QByteArray("add") << true;
        QTest::newRow("nothing is collected") << QByteArray("collect") << false;
        QTest::newRow("the values are not read") << QByteArray("array") << false;
    }
    void FailedCallIsNoValue() {
        QFETCH(QByteArray, call);
        QFETCH(bool, isForGood);
        SetCounters({{kKelvin, "a=303.2"}});
        qputenv("KIVO_TEST_PDH_FAILS", call);
        FirmwareZoneCounters source(OpenCounterQuery);
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("no source"));
        qunsetenv("KIVO_TEST_PDH_FAILS");
        QCOMPARE(Temperature(source, At(1)), isForGood ? QStringLiteral("no source") : QStringLiteral("30"));
        QCOMPARE(Temperature(source, At(60)), QStringLiteral("30"));
        qputenv("KIVO_TEST_PDH_FAILS", call);
        QCOMPARE(Temperature(source, At(61)), isForGood ? QStringLiteral("30") : QStringLiteral("no source"));
    }

    void PowerIsTheSecondCollections() {
        SetCounters({{kPower, "_Total=99000|RAPL_PACKAGE0_PKG=42500|RAPL_Package0_DRAM=1500"}});
        EnergyMeterCounters source(OpenCounterQuery);
        QCOMPARE(Power(source, At(0)), QStringLiteral("not read"));
        QCOMPARE(Said(source.Read(At(1))), QStringLiteral("42.5, no source, no source"));
        SetCounters({{kPower, "_Total=99000"}});
        QCOMPARE(Power(source, At(2)), QStringLiteral("no source"));
        SetCounters({{kPower, "Current Socket Power=33500"}});
        QCOMPARE(Power(source, At(3)), QStringLiteral("33.5"));
    }

    void ClickReadsTheZonesWithoutAClient() {
        SetCounters({{kTenths, "a=0|b=0"}, {kKelvin, "a=330|b=301.2"}});
        QCOMPARE(ReadThermalZoneWith({}, OpenCounterQuery), ThermalText(28));
        SetCounters({{kTenths, "a=0"}, {kKelvin, "a=0"}});
        QCOMPARE(ReadThermalZoneWith({}, OpenCounterQuery), NoThermalText());
        SetCounters({});
        QCOMPARE(ReadThermalZoneWith({}, OpenCounterQuery), NoThermalText());
    }

    void QueryIsKeptOpenAndClosed() {
        SetCounters({{kPower, "RAPL_PACKAGE0_PKG=42500"}});
        {
            EnergyMeterCounters source(OpenCounterQuery);
            for (int second = 0; second < 5; ++second) {
                source.Read(At(second));
            }
        }
        OpenCounterQuery(FirmwareZonePaths());
        QCOMPARE(m_log->readAll().replace("\r\n", "\n"), QByteArray("opened\nclosed\nopened\nclosed\n"));
    }

private:
    QScopedPointer<QTemporaryFile> m_log;
};

KIVO_GUILESS_TEST(TestCounterQuery)
#include "tst_counter_query.moc"
