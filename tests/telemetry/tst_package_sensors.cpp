#include <QtTest>

#include "energy_library_folders.h"
#include "support/test_program.h"
#include "telemetry/package_sensors.h"

using namespace kivo;
using namespace kivo::test;
using namespace std::chrono_literals;

namespace {

constexpr SourceId kGood = SourceId::PowerCap;
constexpr SourceId kOther = SourceId::HardwareMonitor;

// A source that says what the test wants, and keeps how it was asked.
struct Script {
    SensorReadings says;
    QVector<bool> slept;  // of each reading
};

class ScriptedSource final : public SensorSource {
public:
    ScriptedSource(SourceId id, Script& script) : m_id(id), m_script(script) {}
    SourceId Id() const override { return m_id; }
    SensorReadings Read(const SampleMoment& moment) override {
        m_script.slept.append(moment.hasSlept);
        return m_script.says;
    }

private:
    const SourceId m_id;
    Script& m_script;
};

SensorReadings Nothing() {
    SensorReadings readings;
    for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
        readings[quantity] = Reading::Without(ReadingGap::NoSource);
    }
    return readings;
}

// Sensors with an energy library, if there is one in the folder, and two sources.
struct Bench {
    explicit Bench(const QString& libraryFolder) {
        good.says = Nothing();
        other.says = Nothing();
        SensorParts parts;
        parts.library.environment = Environment(libraryFolder);
        parts.sources.push_back(std::make_unique<ScriptedSource>(kGood, good));
        parts.sources.push_back(std::make_unique<ScriptedSource>(kOther, other));
        const std::vector<SourceId> order{SourceId::EnergyLibrary, kGood, kOther};
        parts.orders = {{order, order, {kGood, kOther}}};
        parts.clocks = [this] { return clocks; };
        parts.cpuLoad = [this] {
            ++loads;
            return load;
        };
        sensors = MakeSensorsFrom(std::move(parts));
    }
    Bench() : Bench(QStringLiteral("/no/such/folder")) {}

    SensorReadings SampleAfter(std::chrono::milliseconds time) {
        clocks.awake += time;
        sensors->ReadSample();
        return sensors->Readings();
    }
    SensorReadings Seconds(int count) {
        SensorReadings readings;
        for (int second = 0; second < count; ++second) {
            readings = SampleAfter(1s);
        }
        return readings;
    }

    Script good;
    Script other;
    SystemClocks clocks{1000s, 0s};
    int load = 5;
    int loads = 0;
    std::unique_ptr<PackageSensors> sensors;
};

}  // namespace

class TestPackageSensors : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void LibrarySpeaksWhereItIsInstalled() {
        Bench bench(LibraryFolder("complete"));
        bench.good.says[Quantity::Power] = Reading::Of(40, kGood);
        bench.good.says[Quantity::FanSpeed] = Reading::Of(900, kGood);
        QVERIFY(bench.sensors->Load());
        QVERIFY(bench.good.slept.isEmpty());
        bench.sensors->ReadSample();
        const SensorReadings readings = bench.SampleAfter(1s);
        QVERIFY(readings[Quantity::Power].source == SourceId::EnergyLibrary);
        QVERIFY(readings[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QVERIFY(readings[Quantity::FanSpeed] == Reading::Of(900, kGood));
        QCOMPARE(int(bench.sensors->Power()), 12);
        QCOMPARE(bench.sensors->Temperature(), 45);
    }

    void LibraryIsNotAskedForNumbersAfterOneSample() {
        Bench bench(LibraryFolder("complete"));
        QVERIFY(bench.sensors->Load());
        bench.sensors->ReadSample();
        QVERIFY(bench.sensors->Readings()[Quantity::Power] ==
                Reading::Without(ReadingGap::NotRead, SourceId::EnergyLibrary));
        QCOMPARE(bench.sensors->Power(), 0.0);
        QCOMPARE(bench.sensors->Temperature(), 0);
    }

    // Told as it is; the reading has its own opinion.
    void LibrarysOddNumbersAreTold() {
        Bench bench(LibraryFolder("no_number"));
        QVERIFY(bench.sensors->Load());
        bench.sensors->ReadSample();
        const SensorReadings readings = bench.SampleAfter(1s);
        QVERIFY(readings[Quantity::Power].gap == ReadingGap::Unbelievable);
        QVERIFY(readings[Quantity::Temperature].gap == ReadingGap::Unbelievable);
        QCOMPARE(bench.sensors->Temperature(), -40);
    }

    void AnotherSourceSpeaksForALibraryThatFails() {
        Bench bench(LibraryFolder("fails_later"));
        bench.other.says[Quantity::Temperature] = Reading::Of(61.5, kOther);
        QVERIFY(bench.sensors->Load());
        bench.sensors->ReadSample();
        QVERIFY(bench.Seconds(1)[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QVERIFY(bench.Seconds(9)[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QCOMPARE(bench.sensors->Temperature(), 0);
        QVERIFY(bench.Seconds(1)[Quantity::Temperature] == Reading::Of(61.5, kOther));
        QCOMPARE(bench.sensors->Temperature(), 61);
    }

    void LibraryThatIsInstalledLaterTakesOver() {
        const LibraryPlace place;
        Bench bench(place.Folder());
        bench.good.says[Quantity::Temperature] = Reading::Of(50, kGood);
        QVERIFY(bench.sensors->Load());
        QVERIFY(!bench.sensors->ErrorString().isEmpty());
        QVERIFY(bench.Seconds(20)[Quantity::Temperature].source == kGood);
        QVERIFY(place.Put("complete"));
        QVERIFY(bench.Seconds(15)[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QCOMPARE(bench.sensors->Temperature(), 45);
    }

    void SourcesAloneAreEnough_data() {
        QTest::addColumn<int>("gap");  // of the power
        QTest::addColumn<bool>("isFound");
        QTest::newRow("a value") << int(ReadingGap::None) << true;
        QTest::newRow("one that needs a second sample") << int(ReadingGap::NotRead) << true;
        QTest::newRow("no right") << int(ReadingGap::NoRight) << false;
        QTest::newRow("nothing") << int(ReadingGap::NoSource) << false;
    }
    void SourcesAloneAreEnough() {
        QFETCH(int, gap);
        QFETCH(bool, isFound);
        Bench bench;
        bench.good.says[Quantity::Power] =
            gap == int(ReadingGap::None) ? Reading::Of(40, kGood) : Reading::Without(ReadingGap(gap), kGood);
        QCOMPARE(bench.sensors->Load(), isFound);
        const Reading power = bench.sensors->Readings()[Quantity::Power];
        QCOMPARE(int(power.gap), gap);
        QCOMPARE(bench.sensors->Power(), gap == int(ReadingGap::None) ? 40.0 : 0.0);
    }

    // Two samples in a row would measure the power of a moment.
    void SourcesAreReadTwiceASecondAtMost() {
        Bench bench;
        bench.good.says[Quantity::Power] = Reading::Of(40, kGood);
        QVERIFY(bench.sensors->Load());
        bench.sensors->ReadSample();
        QCOMPARE(bench.good.slept.size(), 1);
        bench.SampleAfter(499ms);
        QCOMPARE(bench.good.slept.size(), 1);
        bench.SampleAfter(1ms);
        QCOMPARE(bench.good.slept.size(), 2);
    }

    void SourceIsReadForAnyQuantityThatItSpeaksFor() {
        Bench bench;
        bench.good.says[Quantity::Power] = Reading::Of(40, kGood);
        bench.other.says[Quantity::Temperature] = Reading::Of(50, kOther);
        bench.other.says[Quantity::Power] = Reading::Of(41, kOther);
        bench.Seconds(30);
        QCOMPARE(bench.good.slept.size(), 30);
        QCOMPARE(bench.other.slept.size(), 30);
        QVERIFY(bench.Seconds(1)[Quantity::Power].source == kGood);
    }

    // Also by a source that was not read in the second after it.
    void SleepIsToldToEachSourceOnce() {
        Bench bench;
        bench.good.says = Nothing();
        bench.other.says[Quantity::Power] = Reading::Of(40, kOther);
        bench.other.says[Quantity::Temperature] = Reading::Of(50, kOther);
        bench.other.says[Quantity::FanSpeed] = Reading::Of(900, kOther);
        bench.Seconds(5);
        const int good = bench.good.slept.size();
        bench.clocks.asleep += 1h;
        bench.Seconds(30);
        QCOMPARE(bench.other.slept.count(true), 1);
        QVERIFY(bench.other.slept[5]);
        QCOMPARE(bench.good.slept.count(true), 1);
        QVERIFY(bench.good.slept[good]);
        QVERIFY(bench.good.slept.size() < 10);
    }

    void StuckSourceIsMarked() {
        Bench bench;
        bench.other.says[Quantity::Temperature] = Reading::Of(27.8, kOther);
        bench.Seconds(300);
        bench.load = 90;
        QVERIFY(!bench.Seconds(299)[Quantity::Temperature].isStuck);
        QVERIFY(bench.Seconds(20)[Quantity::Temperature].isStuck);
        QCOMPARE(bench.loads, 20);
    }

    void ThisMachinesSensorsAnswer() {
        const auto sensors = MakePackageSensors({});
        sensors->Load();
        const SensorReadings readings = sensors->Readings();
        for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
            const Reading& reading = readings[quantity];
            QVERIFY(!reading.value || IsBelievable(quantity, *reading.value));
            QCOMPARE(reading.value.has_value(), reading.gap == ReadingGap::None);
        }
    }
};

KIVO_GUILESS_TEST(TestPackageSensors)
#include "tst_package_sensors.moc"
