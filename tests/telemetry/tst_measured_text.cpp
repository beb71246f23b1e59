#include <QtTest>

#include <cmath>

#include "support/test_program.h"
#include "telemetry/measured_text.h"

using namespace kivo;

namespace {

const QString kNone = QStringLiteral("none");

QString InWords(const std::optional<double>& number) {
    return number ? QString::number(*number, 'g', 12) : kNone;
}

}  // namespace

class TestMeasuredText : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void NumberIsRead_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("temperature");
        QTest::addColumn<QString>("fan");
        const auto row = [](const char* text, const char* temperature, const char* fan = nullptr) {
            QTest::newRow(text) << QString::fromUtf8(text) << temperature
                                << (fan == nullptr ? temperature : fan);
        };
        row("45", "45");
        row("45.0", "45");
        row("45,5", "45.5");
        row("-273", "-273");
        row("+12.25", "12.25");
        row(" 46.9 ", "46.9");
        row("0", "0");
        row("0.125", "0.125");
        row("4,243.8", "4243.8");
        row("4.243,8", "4243.8");
        row("4 243,8", "4243.8");
        row("4\u00A0243,8", "4243.8");
        row("4\u202F243,8", "4243.8");
        row("4'243.8", "4243.8");
        row("4’243.8", "4243.8");
        row("1,234,567", "1234567");
        row("1.234.567", "1234567");
        row("1,234,567.5", "1234567.5");
        row("1 234", "1234");
        // A mark alone.
        row("45,123", "45.123", "45.123");
        row("1,234", "1.234", "1234");
        row("1.234", "1.234", "1234");
        row("12,345", "12.345", "12345");
        row("834.000", "834");
        row("1234.000", "1234");
        row("999999999999", "999999999999");

        row("", "none");
        row("-", "none");
        row("NaN", "none");
        row("inf", "none");
        row("∞", "none");
        row("Yes", "none");
        row("1e5", "none");
        row("0x20", "none");
        row("٤٥", "none");
        row("--5", "none");
        row("5-", "none");
        row(".5", "none");
        row("5.", "none");
        row("1..5", "none");
        row("1,23,456", "none");
        row("1234,567.5", "none");
        row("1,234 567", "none");
        row("1.5.25", "none");
        row("1,234.567,8", "none");
        row("12 34", "none");
        row("45 46", "none");
        row("11111111111111111111111111111111111111111", "none");
    }
    void NumberIsRead() {
        QFETCH(QString, text);
        QTEST(InWords(NumberFromText(Quantity::Temperature, text)), "temperature");
        QTEST(InWords(NumberFromText(Quantity::FanSpeed, text)), "fan");
    }

    void LoneMarkOfRevolutionsIsGroupedWhereAFanCanTurnSo() {
        QCOMPARE(InWords(NumberFromText(Quantity::FanSpeed, u"20,000")), QStringLiteral("20000"));
        QCOMPARE(InWords(NumberFromText(Quantity::FanSpeed, u"20,001")), QStringLiteral("20.001"));
        QCOMPARE(InWords(NumberFromText(Quantity::FanSpeed, u"0,500")), QStringLiteral("0.5"));
        QCOMPARE(InWords(NumberFromText(Quantity::Power, u"1,234")), QStringLiteral("1.234"));
    }

    void UnitDecides_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("quantity");
        QTest::addColumn<QString>("value");
        const auto row = [](const char* text, const char* quantity, const char* value) {
            QTest::newRow(text) << QString::fromUtf8(text) << quantity << value;
        };
        row("45.0 °C", "temperature", "45");
        row("45,0 °C", "temperature", "45");
        row("45℃", "temperature", "45");
        row("45 C", "temperature", "45");
        row("113 °F", "temperature", "45");
        row("113℉", "temperature", "45");
        row("84,2 °F", "temperature", "29");
        row("-40 °F", "temperature", "-40");
        row("45.0 Â°C", "temperature", "45");  // UTF-8 read as Latin 1
        row("45.0 ?C", "temperature", "45");
        row("45.0 \u00A0°C", "temperature", "45");
        row("65,25 W", "power", "65.25");
        row("65250 mW", "power", "65.25");
        row("1,234 RPM", "fan", "1234");
        row("1234 rpm", "fan", "1234");
        row("No °C", "none", "none");
        row("- °C", "temperature", "none");
        row("°C", "temperature", "none");
        row("45", "none", "none");
        row("45 K", "none", "none");
        row("4,243.8 MHz", "none", "none");
        row("12 %", "none", "none");
        row("1.2 V", "none", "none");
        row("65 Wh", "none", "none");
        row("65 kW", "none", "none");
        row("", "none", "none");
        row("Yes", "none", "none");
    }
    void UnitDecides() {
        QFETCH(QString, text);
        const std::optional<Quantity> quantity = QuantityFromText(text);
        QString name = kNone;
        if (quantity) {
            name = QStringList{QStringLiteral("power"), QStringLiteral("temperature"),
                               QStringLiteral("fan")}[static_cast<int>(*quantity)];
        }
        QTEST(name, "quantity");
        QTEST(InWords(ValueFromTexts(quantity.value_or(Quantity::Temperature), text, text)), "value");
    }

    void NumberAndUnitMayStandApart() {
        QCOMPARE(InWords(ValueFromTexts(Quantity::Temperature, u"84.2", u"84,2 °F")), QStringLiteral("29"));
        QCOMPARE(InWords(ValueFromTexts(Quantity::Temperature, u"", u"84,2 °F")), kNone);
        QCOMPARE(InWords(ValueFromTexts(Quantity::Power, u"84.2", u"84,2 °F")), kNone);
    }
};

KIVO_APPLESS_TEST(TestMeasuredText)
#include "tst_measured_text.moc"
