#include <QtTest>

#include "energy_library_folders.h"
#include "model/item_table.h"
#include "support/test_program.h"
#include "telemetry/metric_snapshot.h"
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
    return SensorReadings::AllWithout(ReadingGap::NoSource);
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
        sensors->Load();
        sensors->ReadSample();
        return sensors->Readings();
    }
    // As the poller tells them.
    double Watts() const { return sensors->Numbers().value_or(PackageNumbers{-1, -1}).watts; }
    int Degrees() const { return sensors->Numbers().value_or(PackageNumbers{-1, -1}).degreesCelsius; }
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
        QCOMPARE(int(bench.Watts()), 12);
        QCOMPARE(bench.Degrees(), 45);
    }

    void LibraryIsNotAskedForNumbersAfterOneSample() {
        Bench bench(LibraryFolder("complete"));
        QVERIFY(bench.sensors->Load());
        bench.sensors->ReadSample();
        QVERIFY(bench.sensors->Readings()[Quantity::Power] ==
                Reading::Without(ReadingGap::NotRead, SourceId::EnergyLibrary));
        QVERIFY(!bench.sensors->Numbers());
    }

    // Told as it is; the reading has its own opinion.
    void LibrarysOddNumbersAreTold() {
        Bench bench(LibraryFolder("no_number"));
        bench.Seconds(1);
        const SensorReadings readings = bench.Seconds(1);
        QVERIFY(readings[Quantity::Power].gap == ReadingGap::Unbelievable);
        QVERIFY(readings[Quantity::Temperature].gap == ReadingGap::Unbelievable);
        QCOMPARE(bench.Degrees(), -40);
        QCOMPARE(bench.Watts(), 1e300);
    }

    void AnotherSourceSpeaksForALibraryThatFails() {
        Bench bench(LibraryFolder("fails_later"));
        bench.other.says[Quantity::Temperature] = Reading::Of(61.5, kOther);
        QVERIFY(bench.sensors->Load());
        bench.sensors->ReadSample();
        QVERIFY(bench.Seconds(1)[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QVERIFY(bench.Seconds(9)[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QCOMPARE(bench.Degrees(), 0);
        QVERIFY(bench.Seconds(1)[Quantity::Temperature] == Reading::Of(61.5, kOther));
        QCOMPARE(bench.Degrees(), 61);
    }

    // One call that fails takes nothing away: the number that is told beside the reading is no value.
    void ShownValueOutlivesACallThatFails() {
        Bench bench(LibraryFolder("fails_later"));
        MetricSnapshot snapshot(InterfaceLanguage::English);
        QVERIFY(bench.sensors->Load());
        bench.sensors->ReadSample();
        for (int second = 1; second <= 10; ++second) {
            snapshot.SetReadings(bench.Seconds(1));
            snapshot.SetCpuPowClock(qint32(bench.Watts()), bench.Degrees());
            QCOMPARE(snapshot.GetValueText(CpuTemperature), QStringLiteral(u"45\u2103"));
            QCOMPARE(snapshot.GetValueText(FanSpeed), QStringLiteral("1000"));
        }
        QCOMPARE(bench.Degrees(), 0);
        snapshot.SetReadings(bench.Seconds(1));
        snapshot.SetCpuPowClock(qint32(bench.Watts()), bench.Degrees());
        QCOMPARE(snapshot.GetValueText(CpuTemperature), QStringLiteral(u"--\u2103"));
        QVERIFY(snapshot.Readings()[Quantity::Temperature] ==
                Reading::Without(ReadingGap::Unbelievable, SourceId::EnergyLibrary));
    }

    // Would hang here otherwise.
    void LibraryThatHangsSilencesNobody() {
        Bench bench(LibraryFolder("calls_hang"));
        bench.other.says[Quantity::Temperature] = Reading::Of(61.5, kOther);
        bench.Seconds(1);
        const SensorReadings readings = bench.Seconds(1);
        QVERIFY(readings[Quantity::Temperature] == Reading::Of(61.5, kOther));
        QVERIFY(readings[Quantity::Power] == Reading::Without(ReadingGap::Silent, SourceId::EnergyLibrary));
        QCOMPARE(bench.Degrees(), 61);
        QCOMPARE(bench.other.slept.size(), 2);
    }

    void LibraryThatIsInstalledLaterTakesOver() {
        const LibraryPlace place;
        Bench bench(place.Folder());
        bench.good.says[Quantity::Temperature] = Reading::Of(50, kGood);
        QVERIFY(!bench.sensors->Load());
        QVERIFY(!bench.sensors->ErrorString().isEmpty());
        QVERIFY(bench.Seconds(20)[Quantity::Temperature].source == kGood);
        QVERIFY(place.Put("complete"));
        // Loaded and sampled, sampled again, and three seconds on it has answered for long enough.
        QVERIFY(bench.Seconds(4)[Quantity::Temperature].source == kGood);
        QVERIFY(bench.Seconds(1)[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QCOMPARE(bench.Degrees(), 45);
    }

    // What was used meanwhile is no second's. The numbers are told as they are.
    void LibrarysPowerOfASleepIsNone() {
        Bench bench(LibraryFolder("complete"));
        const Reading power = Reading::Of(12.9, SourceId::EnergyLibrary);
        bench.Seconds(2);
        bench.good.says[Quantity::Power] = Reading::Of(40, kGood);
        // As long as the value from before the sleep stands, nobody sees a difference.
        QVERIFY(bench.SampleAfter(9s)[Quantity::Power] == power);
        bench.clocks.asleep += 1h;
        QVERIFY(bench.SampleAfter(10s)[Quantity::Power] == Reading::Of(40, kGood));
        QCOMPARE(bench.Watts(), 40.0);
        QVERIFY(bench.sensors->Readings()[Quantity::Temperature] == Reading::Of(45, SourceId::EnergyLibrary));
        QVERIFY(bench.Seconds(4)[Quantity::Power] == power);
    }

    void SourcesAloneAreEnough_data() {
        QTest::addColumn<int>("gap");  // of the power
        QTest::newRow("a value") << int(ReadingGap::None);
        QTest::newRow("one that needs a second sample") << int(ReadingGap::NotRead);
        QTest::newRow("no right") << int(ReadingGap::NoRight);
        QTest::newRow("nothing") << int(ReadingGap::NoSource);
    }
    void SourcesAloneAreEnough() {
        QFETCH(int, gap);
        Bench bench;
        const bool isMeasured = gap == int(ReadingGap::None);
        bench.good.says[Quantity::Power] =
            isMeasured ? Reading::Of(40, kGood) : Reading::Without(ReadingGap(gap), kGood);
        const Reading power = bench.Seconds(1)[Quantity::Power];
        QVERIFY(!bench.sensors->Load());
        QCOMPARE(int(power.gap), gap);
        QCOMPARE(bench.sensors->Numbers().has_value(), isMeasured);
        QCOMPARE(bench.Watts(), isMeasured ? 40.0 : -1.0);
        QCOMPARE(bench.Degrees(), isMeasured ? 0 : -1);
    }

    void AFanAloneIsNoNumberThatIsTold() {
        Bench bench;
        bench.good.says[Quantity::FanSpeed] = Reading::Of(900, kGood);
        QVERIFY(bench.Seconds(1)[Quantity::FanSpeed] == Reading::Of(900, kGood));
        QVERIFY(!bench.sensors->Numbers());
    }

    // It says the same again and again, and that nothing newer has come.
    void SourceWithoutNewsHandsOverAfterTenSeconds() {
        Bench bench;
        bench.good.says[Quantity::Temperature] = Reading::Of(50, kGood);
        bench.other.says[Quantity::Temperature] = Reading::Of(61, kOther);
        QVERIFY(bench.Seconds(5)[Quantity::Temperature].source == kGood);
        bench.good.says.LetStand();
        QVERIFY(bench.Seconds(9)[Quantity::Temperature] == Reading::Of(50, kGood));
        QVERIFY(bench.Seconds(1)[Quantity::Temperature] == Reading::Of(61, kOther));
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
        const auto sensors = MakePackageSensors();
        sensors->Load();
        sensors->ReadSample();
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
