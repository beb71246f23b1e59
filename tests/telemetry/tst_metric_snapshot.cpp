#include <QLoggingCategory>
#include <QtTest>

#include <atomic>
#include <limits>
#include <thread>

#include "model/item_table.h"
#include "support/test_program.h"
#include "telemetry/metric_snapshot.h"

using namespace kivo;
using namespace std::chrono_literals;

namespace {

LocalTime Moment() {
    return {QDate(2019, 12, 21), QTime(9, 5)};
}

MetricSources FixedSources() {
    return {[] { return Moment(); }, [] { return 63; }};
}

// A memory load of the test's choice, and time that passes when the test says so.
struct TurnedClock {
    MetricSources Sources() {
        return {[] { return Moment(); }, [this] { return memory; }, [this] { return now; }};
    }
    std::optional<int> memory = 63;
    std::chrono::nanoseconds now{1000};
};

QStringList loggedLines;

void Remember(QtMsgType type, const QMessageLogContext&, const QString& line) {
    if (type == QtDebugMsg) {
        loggedLines.append(line);
    }
}

}  // namespace

Q_DECLARE_METATYPE(kivo::Reading)

class TestMetricSnapshot : public QObject {
    Q_OBJECT

private slots:
    void textsBeforeAnythingArrived() {
        const MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        const QStringList expected{QStringLiteral(u"--\u2103"),
                                   QStringLiteral("1%"),
                                   QStringLiteral("63%"),
                                   QStringLiteral("09:05"),
                                   QStringLiteral("--w"),
                                   QStringLiteral("2019.12.21"),
                                   QStringLiteral("----"),
                                   QString(),
                                   QString()};
        for (int index = 0; index < kLiveValueCount; ++index) {
            QCOMPARE(snapshot.GetValueText(index), expected[index]);
        }
    }

    void textsInRussian() {
        MetricSnapshot snapshot(InterfaceLanguage::Russian, FixedSources());
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral(u"--\u0412\u0442"));
        snapshot.SetCpuPowClock(0, 40);
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral(u"1\u0412\u0442"));
        QCOMPARE(snapshot.GetValueText(Date), QStringLiteral("21.12.2019"));
    }

    void theEnglishDateIsTheChineseOne() {
        const MetricSnapshot snapshot(InterfaceLanguage::English, FixedSources());
        QCOMPARE(snapshot.GetValueText(Date), QStringLiteral("2019.12.21"));
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral("--w"));
    }

    void otherNumbersHaveNoText_data() {
        QTest::addColumn<int>("index");
        QTest::newRow("free text") << 7;
        QTest::newRow("second free text") << 8;
        QTest::newRow("nine") << 9;
        QTest::newRow("minus one") << -1;
        QTest::newRow("highest") << std::numeric_limits<int>::max();
    }
    void otherNumbersHaveNoText() {
        QFETCH(int, index);
        QVERIFY(MetricSnapshot(InterfaceLanguage::Chinese, FixedSources()).GetValueText(index).isEmpty());
    }

    void believesPowerAndTemperatureUpTo998_data() {
        QTest::addColumn<qint32>("iPow");
        QTest::addColumn<qint32>("iClock");
        QTest::addColumn<qint32>("power");
        QTest::addColumn<qint32>("temperature");
        QTest::addColumn<int>("hasTemperature");
        QTest::newRow("both too high") << 999 << 999 << 0 << 0 << 0;
        QTest::newRow("negative power") << -5 << 40 << 0 << 40 << 1;
        QTest::newRow("negative temperature") << 40 << -5 << 40 << 0 << 0;
        QTest::newRow("both at the limit") << 998 << 998 << 998 << 998 << 1;
        QTest::newRow("zero") << 0 << 0 << 0 << 0 << 0;
        QTest::newRow("extremes") << std::numeric_limits<qint32>::min() << std::numeric_limits<qint32>::max()
                                  << 0 << 0 << 0;
    }
    void believesPowerAndTemperatureUpTo998() {
        QFETCH(qint32, iPow);
        QFETCH(qint32, iClock);
        MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        snapshot.SetCpuPowClock(7, 7);
        snapshot.SetCpuPowClock(iPow, iClock);
        const SensorReadings readings = snapshot.Readings();
        QTEST(qint32(readings[Quantity::Power].value.value_or(-1)), "power");
        QTEST(qint32(readings[Quantity::Temperature].value.value_or(0)), "temperature");
        // A temperature of 0 is none, and the next one counts again.
        QTEST(readings[Quantity::Temperature].value.has_value() ? 1 : 0, "hasTemperature");
        snapshot.SetCpuPowClock(20, 41);
        QCOMPARE(snapshot.GetValueText(CpuTemperature), QStringLiteral(u"41\u2103"));
    }

    void theSecondArgumentIsTheTemperature() {
        MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        snapshot.SetCpuPowClock(25, 74);
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral("25w"));
        QCOMPARE(snapshot.GetValueText(CpuTemperature), QStringLiteral(u"74\u2103"));
        QCOMPARE(snapshot.GetValueText(FanSpeed), QStringLiteral("3400"));
    }

    void utilisationIsWhatWasStored() {
        MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        snapshot.SetCpuUsed(42);
        QCOMPARE(snapshot.CpuUsed(), 42);
        QCOMPARE(snapshot.GetValueText(CpuUsage), QStringLiteral("42%"));
    }

    void readingsHaveTexts_data() {
        QTest::addColumn<Reading>("power");
        QTest::addColumn<Reading>("temperature");
        QTest::addColumn<Reading>("fan");
        QTest::addColumn<QStringList>("texts");  // power, temperature, fan
        const auto of = [](double value) { return Reading::Of(value, SourceId::HardwareMonitor); };
        const auto row = [](const char* name, const Reading& power, const Reading& temperature,
                            const Reading& fan, const char* first, const char* second, const char* third) {
            QTest::newRow(name) << power << temperature << fan
                                << QStringList{QString::fromUtf8(first), QString::fromUtf8(second),
                                               QString::fromUtf8(third)};
        };
        const Reading none = Reading::Without(ReadingGap::NoSource);
        const Reading noRight = Reading::Without(ReadingGap::NoRight, SourceId::PowerCap);
        row("all measured", of(12.9), of(45.9), of(1450), "12w", "45℃", "1450");
        row("no fan: worked out", of(65), of(60), none, "65w", "60℃", "2000");
        row("no temperature, no fan", of(65), none, none, "65w", "--℃", "----");
        row("a fan alone", none, none, of(900), "--w", "--℃", " 900");
        row("after the first sample", Reading::Without(ReadingGap::NotRead, SourceId::PowerCap), of(45), none,
            "--w", "45℃", "1000");
        row("no right", noRight, of(45), none, "--w", "45℃", "1000");
        row("zeros that are values", of(0), of(45), of(0), "1w", "45℃", "   0");
        row("a fast fan", of(998), of(129.9), of(20000), "998w", "129℃", "20000");
    }
    void readingsHaveTexts() {
        QFETCH(Reading, power);
        QFETCH(Reading, temperature);
        QFETCH(Reading, fan);
        QFETCH(QStringList, texts);
        MetricSnapshot snapshot(InterfaceLanguage::English, FixedSources());
        SensorReadings readings;
        readings[Quantity::Power] = power;
        readings[Quantity::Temperature] = temperature;
        readings[Quantity::FanSpeed] = fan;
        snapshot.SetReadings(readings);
        QVERIFY(snapshot.Readings() == readings);
        const QStringList shown{snapshot.GetValueText(CpuPower), snapshot.GetValueText(CpuTemperature),
                                snapshot.GetValueText(FanSpeed)};
        QCOMPARE(shown, texts);
        // The poller's numbers that follow fill no gap.
        snapshot.SetCpuPowClock(power.value ? qint32(*power.value) : 0,
                                temperature.value ? qint32(*temperature.value) : 7);
        QCOMPARE(snapshot.GetValueText(CpuPower), texts[0]);
        QCOMPARE(snapshot.GetValueText(CpuTemperature), texts[1]);
    }

    // Whatever is told beside a reading.
    void readingsStandBeforeNumbers() {
        MetricSnapshot snapshot(InterfaceLanguage::English, FixedSources());
        SensorReadings readings;
        readings[Quantity::Power] = Reading::Of(12.9, SourceId::EnergyLibrary);
        readings[Quantity::Temperature] = Reading::Of(45, SourceId::EnergyLibrary);
        readings[Quantity::Temperature].isStuck = true;
        snapshot.SetCpuPowClock(7, 30);
        snapshot.SetReadings(readings);
        for (const int number : {0, 46, 300, 998, 2000}) {
            snapshot.SetCpuPowClock(number, number);
            QVERIFY(snapshot.Readings() == readings);
        }
        QCOMPARE(snapshot.GetValueText(CpuTemperature), QStringLiteral(u"45\u2103"));
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral("12w"));
        readings = SensorReadings::AllWithout(ReadingGap::NoSource);
        snapshot.SetReadings(readings);
        snapshot.SetCpuPowClock(12, 46);
        QVERIFY(snapshot.Readings() == readings);
    }

    // A library whose call hangs tells nothing any more.
    void valuesGrowOld() {
        TurnedClock clock;
        MetricSnapshot snapshot(InterfaceLanguage::English, clock.Sources());
        SensorReadings readings;
        readings[Quantity::Power] = Reading::Of(12, SourceId::EnergyLibrary);
        readings[Quantity::FanSpeed] = Reading::Without(ReadingGap::NotRunning, SourceId::HwInfo);
        snapshot.SetReadings(readings);
        clock.now += 9999ms;
        QVERIFY(snapshot.Readings() == readings);
        clock.now += 1ms;
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral("--w"));
        readings[Quantity::Power] = Reading::Without(ReadingGap::Silent, SourceId::EnergyLibrary);
        QVERIFY(snapshot.Readings() == readings);
        // A number that comes alone stands until the next one.
        snapshot.SetCpuPowClock(13, 50);
        clock.now += 1h;
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral("--w"));
        QCOMPARE(snapshot.GetValueText(CpuTemperature), QStringLiteral(u"50\u2103"));
    }

    void loadThatCannotBeRead() {
        TurnedClock clock;
        MetricSnapshot snapshot(InterfaceLanguage::English, clock.Sources());
        snapshot.SetCpuUsed(42);
        snapshot.SetCpuUnreadable();
        QCOMPARE(snapshot.CpuUsed(), 0);
        QCOMPARE(snapshot.GetValueText(CpuUsage), QStringLiteral("1%"));
        clock.now += 9s;
        snapshot.SetCpuUnreadable();
        QCOMPARE(snapshot.GetValueText(CpuUsage), QStringLiteral("1%"));
        clock.now += 1s;
        QCOMPARE(snapshot.GetValueText(CpuUsage), QStringLiteral("--%"));
        snapshot.SetCpuUsed(7);
        QCOMPARE(snapshot.GetValueText(CpuUsage), QStringLiteral("7%"));
        snapshot.SetCpuUnreadable();
        QCOMPARE(snapshot.GetValueText(CpuUsage), QStringLiteral("1%"));
    }

    void memoryThatCannotBeRead() {
        TurnedClock clock;
        const MetricSnapshot snapshot(InterfaceLanguage::English, clock.Sources());
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("63%"));
        clock.memory.reset();
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("63%"));
        clock.now += 9999ms;
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("63%"));
        clock.now += 1ms;
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("--%"));
        clock.memory = 64;
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("64%"));
        clock.memory.reset();
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("64%"));
    }

    void clockAndMemoryAreReadAtEveryRequest() {
        qint64 minutes = 0;
        int load = 10;
        const MetricSnapshot snapshot(
            InterfaceLanguage::Chinese,
            {[&minutes] {
                 return LocalTime{Moment().date, Moment().time.addSecs(60 * int(minutes++))};
             },
             [&load] { return load++; }});
        QCOMPARE(snapshot.GetValueText(Time), QStringLiteral("09:05"));
        QCOMPARE(snapshot.GetValueText(Time), QStringLiteral("09:06"));
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("10%"));
        QCOMPARE(snapshot.GetValueText(MemoryUsage), QStringLiteral("11%"));
        // Nothing else asks for them.
        snapshot.GetValueText(CpuTemperature);
        snapshot.GetValueText(FanSpeed);
        QCOMPARE(minutes, qint64(2));
        QCOMPARE(load, 12);
    }

    void realSourcesStandInForMissingOnes() {
        const MetricSnapshot snapshot(InterfaceLanguage::Chinese);
        QCOMPARE(snapshot.GetValueText(Time).size(), 5);
        QVERIFY(snapshot.GetValueText(MemoryUsage).endsWith(QLatin1Char('%')));
        const QDate before = QDate::currentDate();
        const QString shown = snapshot.GetValueText(Date);
        const QDate after = QDate::currentDate();
        const QString pattern = QStringLiteral("yyyy.MM.dd");
        QVERIFY(shown == before.toString(pattern) || shown == after.toString(pattern));
    }

    void theDebugLineSpeaksOnlyWhenAskedTo() {
        MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        snapshot.SetCpuUsed(0);
        loggedLines.clear();
        const QtMessageHandler former = qInstallMessageHandler(Remember);
        snapshot.GetValueText(CpuUsage);
        const QStringList unasked = loggedLines;
        QLoggingCategory::setFilterRules(QStringLiteral("kivo.telemetry.debug=true"));
        snapshot.GetValueText(CpuUsage);
        snapshot.GetValueText(MemoryUsage);
        QLoggingCategory::setFilterRules(QString());
        qInstallMessageHandler(former);
        QVERIFY(unasked.isEmpty());
        QCOMPARE(loggedLines, QStringList{QStringLiteral("m_iCpuUsed \"1%\"")});
    }

    void writersAndReadersMayMeet() {
        MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        std::atomic<bool> done{false};
        std::thread poller([&snapshot, &done] {
            for (int i = 0; i < 20000; ++i) {
                snapshot.SetCpuPowClock(i % 2 == 0 ? 10 : 20, i % 2 == 0 ? 30 : 40);
            }
            done = true;
        });
        const QStringList allowed{QStringLiteral(u"--\u2103"), QStringLiteral(u"30\u2103"),
                                  QStringLiteral(u"40\u2103")};
        QStringList strangers;
        while (!done) {
            const QString text = snapshot.GetValueText(CpuTemperature);
            if (!allowed.contains(text)) {
                strangers.append(text);
            }
        }
        poller.join();
        QCOMPARE(strangers, QStringList());
    }
};

KIVO_APPLESS_TEST(TestMetricSnapshot)
#include "tst_metric_snapshot.moc"
