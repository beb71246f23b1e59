#include <QLoggingCategory>
#include <QtTest>

#include <atomic>
#include <limits>
#include <thread>

#include "support/test_program.h"
#include "telemetry/live_value.h"
#include "telemetry/metric_snapshot.h"

using namespace kivo;

namespace {

LocalTime Moment() {
    return {QDate(2019, 12, 21), QTime(9, 5)};
}

MetricSources FixedSources() {
    return {[] { return Moment(); }, [] { return 63; }};
}

QStringList loggedLines;

void Remember(QtMsgType type, const QMessageLogContext&, const QString& line) {
    if (type == QtDebugMsg) {
        loggedLines.append(line);
    }
}

}  // namespace

class TestMetricSnapshot : public QObject {
    Q_OBJECT

private slots:
    void textsBeforeAnythingArrived() {
        const MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        const QStringList expected{QStringLiteral(u"0\u2103"),
                                   QStringLiteral("1%"),
                                   QStringLiteral("63%"),
                                   QStringLiteral("09:05"),
                                   QStringLiteral("1w"),
                                   QStringLiteral("2019.12.21"),
                                   QStringLiteral("1000"),
                                   QString(),
                                   QString()};
        for (int index = 0; index < kLiveValueCount; ++index) {
            QCOMPARE(snapshot.GetValueText(index), expected[index]);
        }
    }

    void textsInRussian() {
        const MetricSnapshot snapshot(InterfaceLanguage::Russian, FixedSources());
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral(u"1\u0412\u0442"));
        QCOMPARE(snapshot.GetValueText(Date), QStringLiteral("21.12.2019"));
    }

    void theEnglishDateIsTheChineseOne() {
        const MetricSnapshot snapshot(InterfaceLanguage::English, FixedSources());
        QCOMPARE(snapshot.GetValueText(Date), QStringLiteral("2019.12.21"));
        QCOMPARE(snapshot.GetValueText(CpuPower), QStringLiteral("1w"));
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
        QTest::newRow("both too high") << 999 << 999 << 0 << 0;
        QTest::newRow("negative power") << -5 << 40 << 0 << 40;
        QTest::newRow("negative temperature") << 40 << -5 << 40 << 0;
        QTest::newRow("both at the limit") << 998 << 998 << 998 << 998;
        QTest::newRow("zero") << 0 << 0 << 0 << 0;
        QTest::newRow("extremes") << std::numeric_limits<qint32>::min() << std::numeric_limits<qint32>::max()
                                  << 0 << 0;
    }
    void believesPowerAndTemperatureUpTo998() {
        QFETCH(qint32, iPow);
        QFETCH(qint32, iClock);
        MetricSnapshot snapshot(InterfaceLanguage::Chinese, FixedSources());
        snapshot.SetCpuPowClock(7, 7);
        snapshot.SetCpuPowClock(iPow, iClock);
        QTEST(snapshot.CpuPow(), "power");
        QTEST(snapshot.CpuTemp(), "temperature");
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
        const QStringList allowed{QStringLiteral(u"0\u2103"), QStringLiteral(u"30\u2103"),
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
