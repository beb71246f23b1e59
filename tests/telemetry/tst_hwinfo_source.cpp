#include <QtTest>

#include "sensor_bytes.h"
#include "sensor_words.h"
#include "support/test_program.h"
#include "telemetry/hwinfo_source.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// A system whose HWiNFO is what a test makes it.
struct MadeUpHwInfo {
    std::vector<NamedText> values = HwInfoOfAMachine();
    bool isRunning = true;
    int looks = 0;

    HwInfoSystem System() {
        return {[this] { return values; },
                [this] {
                    ++looks;
                    return isRunning;
                }};
    }
};

QString SaidOf(const char* group, const char* label, const char* shown, const char* plain) {
    std::vector<NamedText> values;
    AddHwInfo(values, 0, group, label, shown, plain);
    return Said(ReadHwInfoValues(values));
}

}  // namespace

class TestHwInfoSource : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void LabelsAreFoundWhateverTheirNumbers() {
        std::vector<NamedText> values = HwInfoOfAMachine();
        const SensorReadings readings = ReadHwInfoValues(values);
        QCOMPARE(Said(readings), QStringLiteral("65.25, 46.9, 1234"));
        QVERIFY(AreAllOf(readings, SourceId::HwInfo));
        // The registry tells them in no order.
        std::reverse(values.begin(), values.end());
        QCOMPARE(Said(ReadHwInfoValues(values)), Said(readings));
    }

    void OneSensorAlone_data() {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("shown");
        QTest::addColumn<QString>("plain");
        QTest::addColumn<QString>("said");
        const auto row = [](const char* name, const char* label, const char* shown, const char* plain,
                            const char* said) {
            QTest::newRow(name) << label << QString::fromUtf8(shown) << QString::fromUtf8(plain) << said;
        };
        row("Intel's package", "CPU Package", "61 °C", "61", "no source, 61, no source");
        row("degrees Fahrenheit", "CPU Package", "84.2 °F", "84.2", "no source, 29, no source");
        row("a comma is shown", "CPU Package", "46,9 °C", "46.9", "no source, 46.9, no source");
        row("a comma in the plain number too", "CPU Package", "46,9 °C", "46,9",
            "no source, 46.9, no source");
        row("the plain number counts", "CPU Package", "46,9 °C", "47.5", "no source, 47.5, no source");
        row("power", "CPU Package Power", "65,2 W", "65.2", "65.2, no source, no source");
        row("power of another release", "CPU PPT", "65,2 W", "65.2", "65.2, no source, no source");
        row("power of 0", "CPU Package Power", "0.0 W", "0.0", "0, no source, no source");
        row("a fan that stands still", "CPU Fan", "0 RPM", "0", "no source, no source, 0");
        row("a fan with thousands", "CPU_OPT", "1,234 RPM", "1,234", "no source, no source, 1234");
        row("a package whose unit is another's", "CPU Package", "65 W", "65", "65, no source, no source");

        row("minus 273", "CPU Package", "-273.1 °C", "-273.1", "no source, unbelievable, no source");
        row("0 degrees", "CPU Package", "0 °C", "0", "no source, unbelievable, no source");
        row("255 degrees", "CPU Package", "255 °C", "255", "no source, unbelievable, no source");
        row("no number", "CPU Package", "- °C", "NaN", "no source, unbelievable, no source");
        row("no number where the unit is shown", "CPU Package", "NaN °C", "NaN",
            "no source, no source, no source");
        row("a number only where it is shown", "CPU Package", "46.9 °C", "",
            "no source, unbelievable, no source");
        row("words for the number", "CPU Package", "46.9 °C", "warm", "no source, unbelievable, no source");
        row("too many watts", "CPU Package Power", "999 W", "999", "unbelievable, no source, no source");
        row("a fan too fast", "CPU Fan", "65535 RPM", "65535", "no source, no source, unbelievable");

        row("words", "CPU Package", "Yes", "1", "no source, no source, no source");
        row("no unit", "CPU Package", "46.9", "46.9", "no source, no source, no source");
        row("a clock", "CPU Package", "4,243.8 MHz", "4243.8", "no source, no source, no source");
        row("a core", "Core 0", "50 °C", "50", "no source, no source, no source");
        row("a graphics card's", "GPU Temperature", "50 °C", "50", "no source, no source, no source");
        row("a graphics card's fan", "GPU Fan", "1500 RPM", "1500", "no source, no source, no source");
        row("a pump", "AIO Pump", "2900 RPM", "2900", "no source, no source, no source");
    }
    void OneSensorAlone() {
        QFETCH(QString, label);
        QFETCH(QString, shown);
        QFETCH(QString, plain);
        QTEST(SaidOf("Made Up", qUtf8Printable(label), qUtf8Printable(shown), qUtf8Printable(plain)), "said");
    }

    void LiarGivesWayToTheNextLabel() {
        std::vector<NamedText> values;
        AddHwInfo(values, 0, "CPU", "CPU Package", "-273 °C", "-273");
        AddHwInfo(values, 1, "Board", "CPU", "48 °C", "48");
        AddHwInfo(values, 2, "CPU", "Core Max", "51 °C", "51");
        QCOMPARE(Said(ReadHwInfoValues(values)), QStringLiteral("no source, 51, no source"));
    }

    void DieComesBeforeTheControlTemperature() {
        std::vector<NamedText> values;
        AddHwInfo(values, 0, "CPU", "CPU (Tctl)", "70 °C", "70");
        AddHwInfo(values, 1, "CPU", "CPU (Tdie)", "60 °C", "60");
        QCOMPARE(Said(ReadHwInfoValues(values)), QStringLiteral("no source, 60, no source"));
        AddHwInfo(values, 2, "CPU", "CPU (Tctl/Tdie)", "61 °C", "61");
        QCOMPARE(Said(ReadHwInfoValues(values)), QStringLiteral("no source, 61, no source"));
    }

    void FirstOfTwoProcessorsCounts() {
        std::vector<NamedText> values;
        AddHwInfo(values, 20, "CPU [#1]", "CPU Package", "70 °C", "70");
        AddHwInfo(values, 10, "CPU [#0]", "CPU Package", "60 °C", "60");
        QCOMPARE(Said(ReadHwInfoValues(values)), QStringLiteral("no source, 60, no source"));
    }

    void FanIsTheProcessorsElseTheFirstThatTurns() {
        std::vector<NamedText> values;
        AddHwInfo(values, 1, "Corsair PSU", "Fan", "700 RPM", "700");
        QCOMPARE(Said(ReadHwInfoValues(values)[Quantity::FanSpeed]), QStringLiteral("no source"));
        // A single one: a laptop's, which stands still.
        AddHwInfo(values, 2, "Board", "Fan", "0 RPM", "0");
        QCOMPARE(Said(ReadHwInfoValues(values)[Quantity::FanSpeed]), QStringLiteral("0"));
        // A header without a fan says 0, and a board has several.
        AddHwInfo(values, 2, "Board", "Chassis1", "0 RPM", "0");
        AddHwInfo(values, 5, "Board", "Chassis4", "0 RPM", "0");
        QCOMPARE(Said(ReadHwInfoValues(values)[Quantity::FanSpeed]), QStringLiteral("no source"));
        AddHwInfo(values, 3, "Board", "Chassis2", "800 RPM", "800");
        AddHwInfo(values, 4, "Board", "Chassis3", "900 RPM", "900");
        QCOMPARE(Said(ReadHwInfoValues(values)[Quantity::FanSpeed]), QStringLiteral("800"));
        AddHwInfo(values, 6, "Board", "CPU_OPT", "0 RPM", "0");
        QCOMPARE(Said(ReadHwInfoValues(values)[Quantity::FanSpeed]), QStringLiteral("0"));
        AddHwInfo(values, 7, "Board", "CPU_OPT", "1100 RPM", "1100");
        QCOMPARE(Said(ReadHwInfoValues(values)[Quantity::FanSpeed]), QStringLiteral("1100"));
        AddHwInfo(values, 8, "Board", "CPU", "1000 RPM", "1000");
        QCOMPARE(Said(ReadHwInfoValues(values)[Quantity::FanSpeed]), QStringLiteral("1000"));
    }

    void NamesThatAreNoneOfItsAreLeftOut() {
        std::vector<NamedText> values = HwInfoOfAMachine();
        for (const char* name : {"", "Sensor", "Label", "Value", "ValueRaw", "Label-1", "Label3x", "LabelX",
                                 "Label999999999999", "ValueRaw3.5", "XLabel3", "label3", "Value٣"}) {
            values.push_back({QString::fromUtf8(name), QStringLiteral("12 °C")});
        }
        QCOMPARE(Said(ReadHwInfoValues(values)), QStringLiteral("65.25, 46.9, 1234"));
    }

    void ValuesOfAProgramThatEndedDoNotCount() {
        MadeUpHwInfo hwInfo;
        HwInfoSource source(hwInfo.System());
        QCOMPARE(source.Id(), SourceId::HwInfo);
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("65.25, 46.9, 1234"));
        hwInfo.isRunning = false;
        QCOMPARE(Said(source.Read(At(5))), QStringLiteral("not running, not running, not running"));
        hwInfo.isRunning = true;
        QCOMPARE(Said(source.Read(At(10))), QStringLiteral("65.25, 46.9, 1234"));
    }

    void ProgramIsLookedForSeldom() {
        MadeUpHwInfo hwInfo;
        HwInfoSource source(hwInfo.System());
        for (int second = 0; second < 12; ++second) {
            source.Read(At(second));
        }
        QCOMPARE(hwInfo.looks, 3);
    }

    void NothingIsToldApartFromNotHandedOn() {
        MadeUpHwInfo hwInfo;
        hwInfo.values.clear();
        HwInfoSource running(hwInfo.System());
        QCOMPARE(Said(running.Read(At(0))), QStringLiteral("not handed on, not handed on, not handed on"));
        hwInfo.isRunning = false;
        HwInfoSource nothing(hwInfo.System());
        const SensorReadings readings = nothing.Read(At(0));
        QCOMPARE(Said(readings), QStringLiteral("no source, no source, no source"));
        QVERIFY(AreAllOf(readings, SourceId::HwInfo));
    }

    void SensorThatIsTickedLaterIsFound() {
        MadeUpHwInfo hwInfo;
        hwInfo.values = {{QStringLiteral("Sensor0"), QStringLiteral("CPU")}};
        HwInfoSource source(hwInfo.System());
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("no source, no source, no source"));
        AddHwInfo(hwInfo.values, 0, "CPU", "CPU Package", "61 °C", "61");
        QCOMPARE(Said(source.Read(At(1))), QStringLiteral("no source, 61, no source"));
    }
};

KIVO_APPLESS_TEST(TestHwInfoSource)
#include "tst_hwinfo_source.moc"
