#include <QtTest>

#include <cmath>
#include <random>

#include "sensor_bytes.h"
#include "sensor_words.h"
#include "support/test_program.h"
#include "telemetry/core_temp_memory.h"
#include "telemetry/energy_meter_counters.h"
#include "telemetry/energy_meter_interface.h"
#include "telemetry/energy_meter_names.h"
#include "telemetry/firmware_zone_counters.h"
#include "telemetry/hardware_monitor_json.h"
#include "telemetry/hwinfo_values.h"
#include "telemetry/measured_text.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kRounds = 100'000;

// Damages what was whole: a few bytes or characters replaced, left out, doubled, or the end cut off. The same
// damage in every run.
class Damage {
public:
    template <typename Text>
    Text Of(Text whole) {
        for (int left = 1 + Below(4); left > 0 && !whole.isEmpty(); --left) {
            const int place = Below(whole.size());
            switch (Below(6)) {
                case 0:
                    whole.truncate(place);
                    break;
                case 1:
                    whole.remove(place, 1 + Below(8));
                    break;
                case 2:
                    whole.insert(place, whole.mid(Below(whole.size()), 1 + Below(16)));
                    break;
                case 3:
                    Put(whole, place, kExtremes[static_cast<std::size_t>(Below(kExtremes.size()))]);
                    break;
                default:
                    Put(whole, place, Below(256));
            }
        }
        return whole;
    }
    template <typename Limit>
    int Below(Limit limit) {
        return static_cast<int>(m_generator() % static_cast<std::size_t>(limit));
    }

private:
    static constexpr std::array<int, 8> kExtremes{0, 1, 0x7F, 0x80, 0xFF, '-', ',', '9'};

    static void Put(QByteArray& bytes, int place, int value) { bytes[place] = static_cast<char>(value); }
    static void Put(QString& text, int place, int value) { text[place] = QChar(static_cast<ushort>(value)); }

    std::mt19937 m_generator{20260101};
};

// Whatever came in, a value that goes out can be one.
bool IsSound(const SensorReadings& readings) {
    for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
        const Reading& reading = readings[quantity];
        if (reading.value ? reading.gap != ReadingGap::None || !IsBelievable(quantity, *reading.value)
                          : reading.gap == ReadingGap::None) {
            return false;
        }
    }
    return true;
}

}  // namespace

// Damaged input for everything that reads what other programs hand on. What it says may be anything that is
// possible; what is watched is that it says so within its bounds.
class TestSensorNoise : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void MeasuredTexts() {
        Damage damage;
        const QStringList wholes{QStringLiteral("4,243.8 RPM"), QString::fromUtf8("-46,9 °C"),
                                 QStringLiteral("1 234 567,8 W")};
        for (int round = 0; round < kRounds; ++round) {
            const QString text = damage.Of(wholes[round % wholes.size()]);
            const Quantity quantity = QuantityFromText(text).value_or(Quantity::FanSpeed);
            const std::optional<double> value = ValueFromTexts(quantity, text, text);
            QVERIFY2(!value || std::isfinite(*value), qUtf8Printable(text));
        }
    }

    void HwInfoValues() {
        Damage damage;
        const std::vector<NamedText> whole = HwInfoOfAMachine();
        for (int round = 0; round < kRounds / 10; ++round) {
            // Ten damaged texts a round.
            std::vector<NamedText> values = whole;
            for (int i = 0; i < 5; ++i) {
                NamedText& value = values[static_cast<std::size_t>(damage.Below(values.size()))];
                value.name = damage.Of(value.name);
                value.text = damage.Of(value.text);
            }
            QVERIFY(IsSound(ReadHwInfoValues(values)));
        }
    }

    void HardwareMonitorPages() {
        Damage damage;
        const QByteArray whole = MonitorPage({
            MonitorLeaf("Fan", "/lpc/x/0/fan/1", "CPU Fan", "1234 RPM"),
            MonitorLeaf("Temperature", "/amdcpu/0/temperature/2", "Core (Tctl/Tdie)", "46,9 °C", "46.9"),
        });
        for (int round = 0; round < kRounds; ++round) {
            QVERIFY(IsSound(ReadHardwareMonitorPage(damage.Of(whole))));
        }
    }

    void CoreTempMemories() {
        Damage damage;
        const CoreTempBytes whole;
        for (int round = 0; round < kRounds; ++round) {
            QByteArray memory = whole.bytes;
            // Most of it are numbers that count for nothing: the header's fields, too.
            static constexpr std::array<int, 5> kFields{1024, 1536, 1540, 2684, 2688};
            const int field = kFields[static_cast<std::size_t>(damage.Below(kFields.size()))];
            memory[field + damage.Below(4)] = static_cast<char>(damage.Below(256));
            QVERIFY(IsSound(ReadCoreTempMemory(damage.Of(memory))));
        }
    }

    void EnergyMeterMetadata() {
        Damage damage;
        const QByteArray first = MeterMetadata1({QStringLiteral("RAPL_Package0_PKG")});
        const QByteArray second = MeterMetadata2(
            {{QStringLiteral("A")}, {QStringLiteral("RAPL_Package0_PKG")}, {QString()}}, QByteArray(3, '\0'));
        for (int round = 0; round < kRounds; ++round) {
            const bool isFirst = round % 2 == 0;
            const QByteArray metadata = damage.Of(isFirst ? first : second);
            for (const QString& name : ReadEnergyMeterChannels(isFirst ? 1 : 2, metadata)) {
                QVERIFY(name.size() * 2 <= metadata.size());
                static_cast<void>(PackageMeterRank(name));
            }
        }
    }

    void EnergyMeasurements() {
        Damage damage;
        const QByteArray whole = MeterMeasurements({{1'000'000, 10'000'000}, {2'000'000, 20'000'000}});
        for (int round = 0; round < kRounds; ++round) {
            const QByteArray answer = damage.Of(whole);
            const auto earlier = ReadEnergyMeasurement(answer, 0);
            const auto later = ReadEnergyMeasurement(answer, 1);
            const auto watts = earlier && later ? WattsBetween(*earlier, *later) : std::nullopt;
            QVERIFY(!watts || (std::isfinite(*watts) && *watts >= 0));
        }
    }

    void Counters() {
        Damage damage;
        const QString meter = QStringLiteral("RAPL_Package0_PKG");
        for (int round = 0; round < kRounds; ++round) {
            // Any double there is, also those that are no numbers.
            quint64 bits = (quint64(damage.Below(0x7FFFFFFF)) << 33) ^ quint64(damage.Below(0x7FFFFFFF));
            double value = 0;
            std::memcpy(&value, &bits, sizeof(value));
            const CounterValue counter{damage.Of(meter), value};
            const Reading reading = ReadEnergyMeterCounters({{meter, value}, counter});
            QVERIFY(!reading.value || IsBelievable(Quantity::Power, *reading.value));
            for (const double zone : FirmwareZones({{meter, value}}, {counter})) {
                QVERIFY(std::isfinite(zone));
            }
        }
    }
};

KIVO_APPLESS_TEST(TestSensorNoise)
#include "tst_sensor_noise.moc"
