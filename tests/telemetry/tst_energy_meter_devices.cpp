#include <QtTest>

#include <map>

#include "sensor_bytes.h"
#include "sensor_words.h"
#include "support/test_program.h"
#include "telemetry/energy_meter_devices.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// Picowatt-hours of so many watts over so many seconds.
quint64 Energy(double watts, double seconds) {
    return static_cast<quint64>(watts * seconds / 3600 * 1e12 + 0.5);
}
// In units of 100 ns.
quint64 Time(double seconds) {
    return static_cast<quint64>(seconds * 1e7 + 0.5);
}

struct MadeUpMeter {
    quint16 version = 2;
    QByteArray metadata;
    std::vector<MadeUpMeasurement> measurements;
    bool isAnswering = true;
    bool isDenied = false;
    bool isLongerThanItSays = false;
};

// A system's devices of energy meters, by their paths.
struct MadeUpMeters {
    std::map<QString, MadeUpMeter> devices;
    int lists = 0;
    int open = 0;

    EnergyMeterSystem System() {
        return {[this] { return List(); }, [this](const QString& path) { return Open(path); }};
    }

private:
    class Device final : public EnergyMeterDevice {
    public:
        Device(MadeUpMeters& meters, const QString& path) : m_meters(meters), m_path(path) {
            ++m_meters.open;
        }
        ~Device() override { --m_meters.open; }
        std::optional<QByteArray> Ask(EnergyMeterQuestion question, int size) override {
            const auto found = m_meters.devices.find(m_path);
            if (found == m_meters.devices.end() || !found->second.isAnswering) {
                return std::nullopt;
            }
            return Answer(found->second, question).left(size);
        }

    private:
        static QByteArray Answer(const MadeUpMeter& meter, EnergyMeterQuestion question) {
            QByteArray number(question == EnergyMeterQuestion::Version ? 2 : 4, '\0');
            switch (question) {
                case EnergyMeterQuestion::Version:
                    PutNumber<quint16>(number, 0, meter.version);
                    return number;
                case EnergyMeterQuestion::MetadataSize:
                    PutNumber<quint32>(
                        number, 0,
                        meter.isLongerThanItSays ? 0xFFFFFFFF : static_cast<quint32>(meter.metadata.size()));
                    return number;
                case EnergyMeterQuestion::Metadata:
                    return meter.metadata;
                case EnergyMeterQuestion::Measurement:
                    return MeterMeasurements(meter.measurements);
            }
            return {};
        }

        MadeUpMeters& m_meters;
        const QString m_path;
    };

    std::vector<QString> List() {
        ++lists;
        std::vector<QString> paths;
        for (const auto& [path, device] : devices) {
            paths.push_back(path);
        }
        return paths;
    }
    EnergyMeterSystem::Opened Open(const QString& path) {
        if (devices[path].isDenied) {
            return {nullptr, true};
        }
        return {std::make_unique<Device>(*this, path), false};
    }
};

const QString kPath = QStringLiteral("meter 5");
const QString kPackage = QStringLiteral("RAPL_Package0_PKG");

// The package is the second of three channels.
MadeUpMeter PackageMeter() {
    MadeUpMeter meter;
    meter.metadata = MeterMetadata2(
        {{QStringLiteral("RAPL_Package0_PP0")}, {kPackage}, {QStringLiteral("RAPL_Package0_DRAM")}});
    meter.measurements = {{1, 1}, {Energy(10, 500), Time(1000)}, {2, 2}};
    return meter;
}

void Consume(MadeUpMeter& meter, double watts, double seconds) {
    meter.measurements.at(1).picowattHours += Energy(watts, seconds);
    meter.measurements.at(1).time += Time(seconds);
}

QStringList Names(quint16 version, const QByteArray& metadata) {
    const std::vector<QString> channels = ReadEnergyMeterChannels(version, metadata);
    return QStringList(channels.begin(), channels.end());
}

}  // namespace

class TestEnergyMeterDevices : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ChannelOfTheFirstVersion() {
        QCOMPARE(Names(1, MeterMetadata1({kPackage})), QStringList{kPackage});
        QCOMPARE(Names(1, MeterMetadata1({kPackage}, QByteArray("\0\0x\0y\0", 6))), QStringList{kPackage});
        QCOMPARE(Names(1, MeterMetadata1({kPackage}, "x")), QStringList{kPackage});  // half a character
        QCOMPARE(Names(1, MeterMetadata1({kPackage, 1})), QStringList{QString()});
        QCOMPARE(Names(1, MeterMetadata1({kPackage}).chopped(1)), QStringList());
        QCOMPARE(Names(1, MeterMetadata1({}).chopped(1)), QStringList());
    }

    void ChannelsOfTheSecondVersion() {
        const QStringList names{QStringLiteral("A"), kPackage, QStringLiteral("DRAM")};
        const std::vector<MadeUpChannel> channels{{names[0]}, {names[1]}, {names[2]}};
        QCOMPARE(Names(2, MeterMetadata2(channels)), names);
        // An odd number of bytes: from the second on nothing is aligned.
        QCOMPARE(Names(2, MeterMetadata2(channels, QByteArray(3, '\0'))), names);
        QCOMPARE(Names(2, MeterMetadata2(channels, {})), names);
        QCOMPARE(Names(2, MeterMetadata2(channels).chopped(1)), QStringList());
        QCOMPARE(Names(2, MeterMetadata2(channels).left(75)), QStringList());
        QCOMPARE(Names(2, MeterMetadata2(channels).left(68)), QStringList());
        QCOMPARE(Names(2, MeterMetadata2({})), QStringList());
        QCOMPARE(Names(2, QByteArray(67, '\xff')), QStringList());
        QCOMPARE(Names(2, QByteArray(5000, '\xff')), QStringList());
        QCOMPARE(Names(2, MeterMetadata2({{names[0], 1}, {names[1]}})), (QStringList{QString(), kPackage}));
        QCOMPARE(Names(3, MeterMetadata2(channels)), QStringList());
        QCOMPARE(Names(0, MeterMetadata2(channels)), QStringList());
    }

    void MeasurementsAreSixteenBytesEach() {
        const QByteArray answer = MeterMeasurements({{1, 2}, {0xFFFFFFFFFFFFFFFF, 3}});
        QCOMPARE(ReadEnergyMeasurement(answer, 1)->picowattHours, quint64(0xFFFFFFFFFFFFFFFF));
        QCOMPARE(ReadEnergyMeasurement(answer, 1)->time, quint64(3));
        QVERIFY(!ReadEnergyMeasurement(answer, 2));
        QVERIFY(!ReadEnergyMeasurement(answer.chopped(1), 1));
        QVERIFY(!ReadEnergyMeasurement(answer, -1));
    }

    void WattsAreEnergyThroughTime() {
        QCOMPARE(*WattsBetween({1000, 1000}, {1000 + 18'000'000'000, 1000 + Time(1)}), 64.8);
        // A watt-hour in an hour.
        QCOMPARE(*WattsBetween({0, 0}, {1'000'000'000'000, 36'000'000'000}), 1.0);
        QCOMPARE(*WattsBetween({5, 5}, {5, 6}), 0.0);
        QVERIFY(!WattsBetween({5, 5}, {6, 5}));
        QVERIFY(!WattsBetween({5, 5}, {6, 4}));
        QVERIFY(!WattsBetween({5, 5}, {4, 6}));
    }

    void PowerIsBetweenTwoSamples() {
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        EnergyMeterDevices source(meters.System());
        QCOMPARE(source.Id(), SourceId::EnergyMeterInterface);
        QCOMPARE(Power(source, At(0)), QStringLiteral("not read"));
        Consume(meters.devices[kPath], 42.5, 0.98);
        const SensorReadings readings = source.Read(At(1));
        QCOMPARE(Said(readings), QStringLiteral("42.5, no source, no source"));
        QVERIFY(AreAllOf(readings, SourceId::EnergyMeterInterface));
        QCOMPARE(meters.lists, 1);
    }

    void FirstVersionIsReadToo() {
        MadeUpMeters meters;
        MadeUpMeter meter;
        meter.version = 1;
        meter.metadata = MeterMetadata1({kPackage});
        meter.measurements = {{0, 1}};
        meters.devices[kPath] = meter;
        EnergyMeterDevices source(meters.System());
        source.Read(At(0));
        meters.devices[kPath].measurements = {{Energy(30, 1), 1 + Time(1)}};
        QCOMPARE(Power(source, At(1)), QStringLiteral("30"));
    }

    // Each core is a device, and any of them has the package.
    void EveryDeviceIsLookedAt() {
        MadeUpMeters meters;
        for (int core = 0; core < 16; ++core) {
            const QString name = QStringLiteral("RAPL_Package0_Core%1_CORE").arg(core);
            meters.devices[QStringLiteral("meter %1").arg(core)].metadata = MeterMetadata2({{name}});
        }
        EnergyMeterDevices without(meters.System());
        QCOMPARE(Power(without, At(0)), QStringLiteral("no source"));
        QCOMPARE(meters.open, 0);

        meters.devices[QStringLiteral("meter 12")].metadata =
            MeterMetadata2({{QStringLiteral("Current Socket Power")}});
        meters.devices[kPath] = PackageMeter();
        EnergyMeterDevices source(meters.System());
        source.Read(At(0));
        QCOMPARE(meters.open, 1);
        Consume(meters.devices[kPath], 42.5, 1);
        QCOMPARE(Power(source, At(1)), QStringLiteral("42.5"));
    }

    void DeviceThatMayNotBeOpened() {
        MadeUpMeters meters;
        meters.devices[kPath].isDenied = true;
        EnergyMeterDevices source(meters.System());
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("no right, no source, no source"));
        meters.devices[QStringLiteral("meter 6")] = PackageMeter();
        QCOMPARE(Power(source, At(59)), QStringLiteral("no right"));
        QCOMPARE(Power(source, At(60)), QStringLiteral("not read"));
    }

    void SleepAndLongPausesAreNotMeasuredOver() {
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        EnergyMeterDevices source(meters.System());
        const auto powerAt = [&](const SampleMoment& moment) {
            Consume(meters.devices[kPath], 42.5, 1);
            return Power(source, moment);
        };
        powerAt(At(0));
        QCOMPARE(powerAt(At(10)), QStringLiteral("42.5"));
        QCOMPARE(powerAt(AfterSleepAt(11)), QStringLiteral("not read"));
        QCOMPARE(powerAt(At(12)), QStringLiteral("42.5"));
        QCOMPARE(powerAt(At(60)), QStringLiteral("not read"));
        QCOMPARE(powerAt(At(61)), QStringLiteral("42.5"));
    }

    void FigureOfAMeterThatDoesNotMeasureStands() {
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        EnergyMeterDevices source(meters.System());
        source.Read(At(0));
        Consume(meters.devices[kPath], 42.5, 1);
        QCOMPARE(Power(source, At(1)), QStringLiteral("42.5"));
        for (int second = 2; second < 20; ++second) {
            QCOMPARE(Power(source, At(second)), QStringLiteral("42.5 still"));
        }
        QCOMPARE(Power(source, At(41)), QStringLiteral("not read"));  // nobody has asked for a while
        QCOMPARE(Power(source, At(42)), QStringLiteral("silent"));
        Consume(meters.devices[kPath], 50, 1);
        QCOMPARE(Power(source, At(43)), QStringLiteral("50"));
    }

    // The first figure after a long silence is an average over it.
    void SilenceIsNotMeasuredOver() {
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        EnergyMeterDevices source(meters.System());
        for (int second = 0; second <= 30; ++second) {
            source.Read(At(second));
        }
        Consume(meters.devices[kPath], 50, 31);
        QCOMPARE(Power(source, At(31)), QStringLiteral("not read"));
        Consume(meters.devices[kPath], 60, 1);
        QCOMPARE(Power(source, At(32)), QStringLiteral("60"));
    }

    void LiarsAreNotBelieved() {
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        EnergyMeterDevices source(meters.System());
        source.Read(At(0));
        Consume(meters.devices[kPath], 998.5, 1);
        QCOMPARE(Power(source, At(1)), QStringLiteral("unbelievable"));
        meters.devices[kPath].measurements.at(1) = {1, Time(2000)};  // ran backwards
        QCOMPARE(Power(source, At(2)), QStringLiteral("not read"));
        Consume(meters.devices[kPath], 20, 1);
        QCOMPARE(Power(source, At(3)), QStringLiteral("20"));
    }

    void DeviceVanishesAndComesBack() {
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        EnergyMeterDevices source(meters.System());
        source.Read(At(0));
        meters.devices[kPath].isAnswering = false;
        QCOMPARE(Power(source, At(1)), QStringLiteral("no source"));
        QCOMPARE(meters.open, 0);
        QCOMPARE(Power(source, At(60)), QStringLiteral("no source"));
        meters.devices[kPath].isAnswering = true;
        QCOMPARE(Power(source, At(119)), QStringLiteral("no source"));
        QCOMPARE(Power(source, At(120)), QStringLiteral("not read"));
        Consume(meters.devices[kPath], 20, 1);
        QCOMPARE(Power(source, At(121)), QStringLiteral("20"));
    }

    void AnswersThatAreNotWhole_data() {
        QTest::addColumn<QByteArray>("metadata");
        QTest::addColumn<int>("version");
        QTest::addColumn<bool>("isLonger");
        const QByteArray whole = PackageMeter().metadata;
        QTest::newRow("no metadata") << QByteArray() << 2 << false;
        QTest::newRow("cut off") << whole.chopped(1) << 2 << false;
        QTest::newRow("another version") << whole << 3 << false;
        QTest::newRow("four gigabytes") << whole << 2 << true;
    }
    void AnswersThatAreNotWhole() {
        QFETCH(QByteArray, metadata);
        QFETCH(int, version);
        QFETCH(bool, isLonger);
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        meters.devices[kPath].metadata = metadata;
        meters.devices[kPath].version = static_cast<quint16>(version);
        meters.devices[kPath].isLongerThanItSays = isLonger;
        EnergyMeterDevices source(meters.System());
        QCOMPARE(Power(source, At(0)), QStringLiteral("no source"));
    }

    void MeasurementThatIsCutOff() {
        MadeUpMeters meters;
        meters.devices[kPath] = PackageMeter();
        meters.devices[kPath].measurements.resize(1);
        EnergyMeterDevices source(meters.System());
        QCOMPARE(Power(source, At(0)), QStringLiteral("no source"));
    }
};

KIVO_APPLESS_TEST(TestEnergyMeterDevices)
#include "tst_energy_meter_devices.moc"
