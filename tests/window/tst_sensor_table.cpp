#include <QTranslator>
#include <QtTest>
#include <algorithm>
#include <memory>

#include "support/built_paths.h"
#include "support/test_program.h"
#include "telemetry/sensor_lists.h"
#include "telemetry/value_texts.h"
#include "window/language.h"
#include "window/sensor_table.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QString kNobodys = QStringLiteral("No sensor that can be read");

ItemTexts Texts() {
    ItemTexts texts;
    texts[CpuTemperature] = QStringLiteral("--℃");
    texts[CpuUsage] = QStringLiteral("7%");
    texts[MemoryUsage] = QStringLiteral("20%");
    texts[Time] = QStringLiteral("18:46");
    texts[CpuPower] = QStringLiteral("--w");
    texts[Date] = QStringLiteral("2019.12.21");
    texts[FanSpeed] = QStringLiteral(" 900");
    return texts;
}

SensorReadings AllOf(const Reading& reading) {
    SensorReadings readings;
    for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
        readings[quantity] = reading;
    }
    return readings;
}

// Whether this platform has counters that a person may have no right to.
bool HasEnergyCounters() {
    const auto order = PlatformSourceOrders()[static_cast<size_t>(Quantity::Power)];
    return std::find(order.begin(), order.end(), SourceId::PowerCap) != order.end();
}

std::vector<SensorRow> Table(const SensorReadings& readings) {
    return SensorTable(Texts(), readings);
}

}  // namespace

class TestSensorTable : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { Use(InterfaceLanguage::English); }

    void EachValueHasARow() {
        const auto rows = Table(AllOf(Reading::Without(ReadingGap::NoSource)));
        QCOMPARE(int(rows.size()), 7);
        QCOMPARE(rows[CpuUsage].now, QStringLiteral("7%"));
        QCOMPARE(rows[CpuUsage].source, QStringLiteral("The system"));
        QCOMPARE(rows[FanSpeed].now, QStringLiteral("900 rpm"));
        QCOMPARE(rows[CpuPower].now, QStringLiteral("--"));
        for (const SensorRow& row : rows) {
            QVERIFY(!row.name.isEmpty() && !row.now.isEmpty() && !row.source.isEmpty());
        }
    }

    void WhatIsMeasuredNeedsNoHelp() {
        SensorReadings readings;
        readings[Quantity::Power] = Reading::Of(12, SourceId::EnergyLibrary);
        readings[Quantity::Temperature] = Reading::Of(61, SourceId::HwInfo);
        readings[Quantity::FanSpeed] = Reading::Of(900, SourceId::LibreHardwareMonitor);
        const auto rows = Table(readings);
        QCOMPARE(rows[CpuPower].source, QStringLiteral("Intel Power Gadget"));
        QCOMPARE(rows[CpuTemperature].source, QStringLiteral("HWiNFO"));
        QCOMPARE(rows[FanSpeed].source, QStringLiteral("LibreHardwareMonitor"));
        for (const SensorRow& row : rows) {
            QCOMPARE(row.help, QString());
        }
    }

    void WhatIsNotHasAReason() {
        for (int gap = int(ReadingGap::NotRead); gap <= int(ReadingGap::Unbelievable); ++gap) {
            const auto rows = Table(AllOf(Reading::Without(ReadingGap(gap))));
            for (const int item : {int(CpuTemperature), int(CpuPower), int(FanSpeed)}) {
                QVERIFY(!rows[size_t(item)].source.isEmpty());
            }
        }
        QCOMPARE(Table(AllOf(Reading::Without(ReadingGap::NoSource)))[CpuPower].source, kNobodys);
        QCOMPARE(
            Table(AllOf(Reading::Without(ReadingGap::Silent, SourceId::CoreTemp)))[CpuTemperature].source,
            QStringLiteral("Core Temp: No answer"));
        QCOMPARE(Table(AllOf(Reading::Without(ReadingGap::NotHandedOn, SourceId::HwInfo)))[CpuPower].source,
                 QStringLiteral("HWiNFO: Runs, but hands nothing on"));
    }

    void HelpIsForWhatIsMissing() {
        for (const Quantity quantity : kQuantities) {
            QVERIFY(!SensorHelp(quantity, Reading::Without(ReadingGap::NoSource)).isEmpty());
            // The next sample tells.
            QCOMPARE(SensorHelp(quantity, Reading::Without(ReadingGap::NotRead)), QString());
            QCOMPARE(SensorHelp(quantity, Reading::Of(12, SourceId::HwInfo)), QString());
        }
    }

    // Where a person has it: the package brings no README.
    void HelpForAMissingRightNamesTheRule() {
        const QString help = SensorHelp(Quantity::Power, Reading::Without(ReadingGap::NoRight));
        QVERIFY(!help.contains(QStringLiteral("README")));
        if (HasEnergyCounters()) {
            QVERIFY(help.contains(
                QStringLiteral("/usr/share/doc/kivo-screen/examples/61-kivo-screen-power.rules")));
        }
    }

    void ValueOfTheSystemThatIsMissingSaysSo() {
        ItemTexts texts = Texts();
        texts[CpuUsage] = NoPercentText();
        const auto rows = SensorTable(texts, {});
        QCOMPARE(rows[CpuUsage].source, QStringLiteral("The system: No answer"));
        QCOMPARE(rows[MemoryUsage].source, QStringLiteral("The system"));
    }

    void AFanThatFollowsTheTemperatureSaysSo() {
        SensorReadings readings = AllOf(Reading::Without(ReadingGap::NoSource));
        QCOMPARE(Table(readings)[FanSpeed].source, kNobodys);
        readings[Quantity::Temperature] = Reading::Of(61, SourceId::HardwareMonitor);
        QCOMPARE(Table(readings)[FanSpeed].source, QStringLiteral("Worked out from the temperature"));
    }

    void ASourceThatIsStuckSaysSo() {
        SensorReadings readings;
        readings[Quantity::Temperature] = Reading::Of(27.8, SourceId::FirmwareZone);
        readings[Quantity::Temperature].isStuck = true;
        QCOMPARE(Table(readings)[CpuTemperature].source,
                 QStringLiteral("The board's thermal zone (unchanged for ten minutes)"));
    }

    void EverySourceAndGapHasWords_data() {
        QTest::addColumn<int>("language");
        QTest::newRow("Chinese") << int(InterfaceLanguage::Chinese);
        QTest::newRow("English") << int(InterfaceLanguage::English);
        QTest::newRow("Russian") << int(InterfaceLanguage::Russian);
    }
    void EverySourceAndGapHasWords() {
        QFETCH(int, language);
        Use(InterfaceLanguage(language));
        QStringList names;
        for (int source = int(SourceId::EnergyLibrary); source <= int(SourceId::FirmwareZone); ++source) {
            names.append(SourceName(SourceId(source)));
        }
        QStringList gaps;
        for (int gap = int(ReadingGap::NotRead); gap <= int(ReadingGap::Unbelievable); ++gap) {
            gaps.append(SensorPhrase(Reading::Without(ReadingGap(gap))));
        }
        for (QStringList* words : {&names, &gaps}) {
            QVERIFY(!words->contains(QString()));
            QCOMPARE(words->removeDuplicates(), 0);
        }
    }

    void ColumnsOfATerminalAreStraight() {
        const std::vector<SensorRow> rows{
            {QStringLiteral("CPU温度"), QStringLiteral("61℃"), QStringLiteral("A"), {}},
            {QStringLiteral("Fan"), QStringLiteral("900"), QStringLiteral("B"), QStringLiteral("C")}};
        QCOMPARE(SensorTableText(rows), QStringLiteral("CPU温度  61℃  A\n"
                                                       "Fan      900  B\n"
                                                       "              C\n"));
    }

private:
    void Use(InterfaceLanguage language) {
        m_translator = std::make_unique<QTranslator>();
        SetInterfaceLanguage(language);
        QVERIFY(InstallTranslation(*m_translator, language, ProgramFolder()));
    }

    std::unique_ptr<QTranslator> m_translator;
};

KIVO_GUILESS_TEST(TestSensorTable)
#include "tst_sensor_table.moc"
