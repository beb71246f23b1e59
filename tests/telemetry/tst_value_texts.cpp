#include <QtTest>

#include <limits>

#include "support/test_program.h"
#include "telemetry/value_texts.h"

using namespace kivo;

namespace {

constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

}  // namespace

class TestValueTexts : public QObject {
    Q_OBJECT

public:
    // The system's locale is Arabic for the whole program, as it would be on such a machine.
    static void initMain() { qputenv("LC_ALL", "ar_EG.UTF-8"); }

private slots:
    // A locale with digits and separators of its own: none of them may reach the panel.
    void initTestCase() {
        QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
        QVERIFY(QLocale().toString(5) != QStringLiteral("5"));
    }

    void whereThereIsNoValue() {
        QCOMPARE(NoTemperatureText(), QStringLiteral(u"--\u2103"));
        QCOMPARE(NoPercentText(), QStringLiteral("--%"));
        QCOMPARE(NoPowerText(InterfaceLanguage::English), QStringLiteral("--w"));
        QCOMPARE(NoPowerText(InterfaceLanguage::Chinese), QStringLiteral("--w"));
        QCOMPARE(NoPowerText(InterfaceLanguage::Russian), QStringLiteral(u"--\u0412\u0442"));
        QCOMPARE(NoFanText(), QStringLiteral("----"));
    }

    void measuredFanIsFourCharactersAtLeast() {
        QCOMPARE(FormatMeasuredFan(0), QStringLiteral("   0"));
        QCOMPARE(FormatMeasuredFan(850), QStringLiteral(" 850"));
        QCOMPARE(FormatMeasuredFan(1450), QStringLiteral("1450"));
        QCOMPARE(FormatMeasuredFan(12000), QStringLiteral("12000"));
    }

    void temperature_data() {
        QTest::addColumn<int>("degrees");
        QTest::addColumn<QString>("text");
        QTest::newRow("no poller") << 0 << QStringLiteral(u"0\u2103");
        QTest::newRow("warm") << 45 << QStringLiteral(u"45\u2103");
        QTest::newRow("below zero") << -7 << QStringLiteral(u"-7\u2103");
        QTest::newRow("no clamp") << 12345 << QStringLiteral(u"12345\u2103");
    }
    void temperature() {
        QFETCH(int, degrees);
        QTEST(FormatTemperature(degrees), "text");
    }

    void theDegreeSignIsOneCharacter() {
        QCOMPARE(FormatTemperature(5).toUtf8(), QByteArray("5\xE2\x84\x83"));
    }

    void cpuUsage_data() {
        QTest::addColumn<int>("percent");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero shows as one") << 0 << QStringLiteral("1%");
        QTest::newRow("negative shows as one") << -3 << QStringLiteral("1%");
        QTest::newRow("lowest shows as one") << kLowest << QStringLiteral("1%");
        QTest::newRow("one") << 1 << QStringLiteral("1%");
        QTest::newRow("two digits") << 37 << QStringLiteral("37%");
        QTest::newRow("full") << 100 << QStringLiteral("100%");
    }
    void cpuUsage() {
        QFETCH(int, percent);
        QTEST(FormatCpuUsage(percent), "text");
    }

    void memoryUsage() {
        QCOMPARE(FormatMemoryUsage(0), QStringLiteral("0%"));
        QCOMPARE(FormatMemoryUsage(63), QStringLiteral("63%"));
        QCOMPARE(FormatMemoryUsage(100), QStringLiteral("100%"));
    }

    void time_data() {
        QTest::addColumn<QTime>("time");
        QTest::addColumn<QString>("text");
        QTest::newRow("five past nine in the morning") << QTime(9, 5) << QStringLiteral("09:05");
        QTest::newRow("five past nine in the evening") << QTime(21, 5) << QStringLiteral("21:05");
        QTest::newRow("midnight") << QTime(0, 0) << QStringLiteral("00:00");
        QTest::newRow("the last second") << QTime(23, 59, 59, 999) << QStringLiteral("23:59");
        QTest::newRow("noon") << QTime(12, 0) << QStringLiteral("12:00");
    }
    void time() {
        QFETCH(QTime, time);
        QTEST(FormatTime(time), "text");
    }

    void power_data() {
        QTest::addColumn<int>("watts");
        QTest::addColumn<QString>("number");
        QTest::newRow("zero shows as one") << 0 << QStringLiteral("1");
        QTest::newRow("negative shows as one") << -1 << QStringLiteral("1");
        QTest::newRow("fifteen") << 15 << QStringLiteral("15");
        QTest::newRow("the highest stored") << 998 << QStringLiteral("998");
    }
    void power() {
        QFETCH(int, watts);
        QFETCH(QString, number);
        QCOMPARE(FormatPower(watts, InterfaceLanguage::Chinese), number + QStringLiteral("w"));
        QCOMPARE(FormatPower(watts, InterfaceLanguage::English), number + QStringLiteral("w"));
        QCOMPARE(FormatPower(watts, InterfaceLanguage::Russian), number + QStringLiteral(u"\u0412\u0442"));
    }

    void date_data() {
        QTest::addColumn<QDate>("date");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("russianText");
        QTest::newRow("in December") << QDate(2019, 12, 21) << QStringLiteral("2019.12.21")
                                     << QStringLiteral("21.12.2019");
        QTest::newRow("leading zeros")
            << QDate(2024, 2, 3) << QStringLiteral("2024.02.03") << QStringLiteral("03.02.2024");
        QTest::newRow("a leap day") << QDate(2024, 2, 29) << QStringLiteral("2024.02.29")
                                    << QStringLiteral("29.02.2024");
    }
    void date() {
        QFETCH(QDate, date);
        QFETCH(QString, text);
        QCOMPARE(FormatDate(date, InterfaceLanguage::Chinese), text);
        QCOMPARE(FormatDate(date, InterfaceLanguage::English), text);
        QTEST(FormatDate(date, InterfaceLanguage::Russian), "russianText");
    }

    void fan_data() {
        QTest::addColumn<int>("degrees");
        QTest::addColumn<QString>("text");
        QTest::newRow("no poller") << 0 << QStringLiteral("1000");
        QTest::newRow("lowest") << kLowest << QStringLiteral("1000");
        QTest::newRow("50") << 50 << QStringLiteral("1000");
        QTest::newRow("51") << 51 << QStringLiteral("1100");
        QTest::newRow("74") << 74 << QStringLiteral("3400");
        QTest::newRow("75") << 75 << QStringLiteral("3500");
        QTest::newRow("98") << 98 << QStringLiteral("3500");
        QTest::newRow("highest") << kHighest << QStringLiteral("3500");
    }
    void fan() {
        QFETCH(int, degrees);
        QFETCH(QString, text);
        QCOMPARE(FormatFanSpeed(degrees), text);
        QCOMPARE(FanFigure(degrees), text.toInt());
    }
};

KIVO_APPLESS_TEST(TestValueTexts)
#include "tst_value_texts.moc"
