#include <QTest>

#include "model/item_table.h"
#include "support/test_program.h"

using namespace kivo;

Q_DECLARE_METATYPE(kivo::InterfaceLanguage)

namespace {

constexpr std::array kLanguages{InterfaceLanguage::Chinese, InterfaceLanguage::English,
                                InterfaceLanguage::Russian};

}  // namespace

class TestItemTable : public QObject {
    Q_OBJECT

private slots:
    void NumbersAreTheStoredOnes() {
        const QVector<int> numbers{CpuTemperature, CpuUsage, MemoryUsage, Time,      CpuPower,
                                   Date,           FanSpeed, OtherText,   OtherText2};
        QCOMPARE(numbers, (QVector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8}));
        QCOMPARE(kLiveValueCount, numbers.size());
    }

    void OnlyFreeTextsHaveNoLiveValue() {
        QVector<int> live;
        for (const LiveValue item : kLiveItems) {
            live.append(item);
        }
        QVector<int> free;
        for (int item = 0; item < kLiveValueCount; ++item) {
            QCOMPARE(HasLiveValue(item), live.contains(item));
            QCOMPARE(IsFreeText(item), !live.contains(item));
            if (IsFreeText(item)) {
                free.append(item);
            }
        }
        QCOMPARE(free, (QVector<int>{OtherText, OtherText2}));
    }

    void NumbersBesideTheTableAreNoItems() {
        for (const int number : {-7, -1, kLiveValueCount, 99}) {
            QVERIFY(!IsItem(number));
            QVERIFY(!HasLiveValue(number));
            QVERIFY(!IsFreeText(number));
        }
    }

    void LiveItemsAreKnownBeforeAValueArrives() {
        for (const LiveValue item : kLiveItems) {
            QVERIFY(!ItemCaptions()[size_t(item)].isEmpty());
            QVERIFY(!PlaceholderTexts()[size_t(item)].isEmpty());
            for (const InterfaceLanguage language : kLanguages) {
                QVERIFY(!SampleTexts(language)[size_t(item)].isEmpty());
            }
        }
    }

    void CaptionsAreTheSourceTextsWithoutATranslation() {
        const ItemTexts captions = ItemCaptions();
        QCOMPARE(captions[CpuTemperature], QStringLiteral("CPU温度"));
        QCOMPARE(captions[OtherText2], QStringLiteral("其他"));
    }

    void PlaceholdersAreNoValues() {
        const ItemTexts& texts = PlaceholderTexts();
        QCOMPARE(texts[CpuTemperature], QStringLiteral("00℃"));
        QCOMPARE(texts[CpuUsage], QStringLiteral("00%"));
        QCOMPARE(texts[MemoryUsage], QStringLiteral("0000.00.00"));
        QCOMPARE(texts[Time], QStringLiteral("00:00"));
        QCOMPARE(texts[CpuPower], QStringLiteral("0000"));
        QCOMPARE(texts[Date], QStringLiteral("0000.00.00"));
        QCOMPARE(texts[FanSpeed], QStringLiteral("0000"));
        QVERIFY(texts[OtherText].isEmpty() && texts[OtherText2].isEmpty());
    }

    void Samples_data() {
        QTest::addColumn<InterfaceLanguage>("language");
        QTest::addColumn<QString>("power");
        QTest::addColumn<QString>("date");
        QTest::newRow("Chinese") << InterfaceLanguage::Chinese << QStringLiteral("1300")
                                 << QStringLiteral("2019年12月31日");
        QTest::newRow("English") << InterfaceLanguage::English << QStringLiteral("1300")
                                 << QStringLiteral("2019年12月31日");
        QTest::newRow("Russian") << InterfaceLanguage::Russian << QStringLiteral("15Вт")
                                 << QStringLiteral("31.12.2019");
    }
    void Samples() {
        QFETCH(InterfaceLanguage, language);
        QFETCH(QString, power);
        QFETCH(QString, date);
        const auto samples = SampleTexts(language);
        QCOMPARE(samples[CpuTemperature], QStringLiteral("45℃"));
        QCOMPARE(samples[CpuUsage], QStringLiteral("65%"));
        QCOMPARE(samples[MemoryUsage], QStringLiteral("20%"));
        QCOMPARE(samples[Time], QStringLiteral("12:00"));
        QCOMPARE(samples[CpuPower], power);
        QCOMPARE(samples[Date], date);
        QCOMPARE(samples[FanSpeed], QStringLiteral("1000"));
        QCOMPARE(samples[OtherText], QString());
        QCOMPARE(samples[OtherText2], QStringLiteral("2019-12-31"));
    }

    void OnlyRussianOverridesAndOnlyPowerAndDate() {
        for (int item = 0; item < kLiveValueCount; ++item) {
            QVERIFY(SampleOverride(item, InterfaceLanguage::Chinese).isNull());
            QVERIFY(SampleOverride(item, InterfaceLanguage::English).isNull());
            const QString russian = SampleOverride(item, InterfaceLanguage::Russian);
            QCOMPARE(!russian.isNull(), item == CpuPower || item == Date);
        }
        QCOMPARE(SampleOverride(CpuPower, InterfaceLanguage::Russian), QStringLiteral("15Вт"));
        QCOMPARE(SampleOverride(Date, InterfaceLanguage::Russian), QStringLiteral("31.12.2019"));
        QVERIFY(SampleOverride(-1, InterfaceLanguage::Russian).isNull());
        QVERIFY(SampleOverride(kLiveValueCount, InterfaceLanguage::Russian).isNull());
    }

    void StartTextsAreThoseOfTheThemes() {
        const QStringList common{QStringLiteral(u"45\u2103"), QStringLiteral("65%"), QStringLiteral("20%"),
                                 QStringLiteral("18:46")};
        const auto chinese = StartTexts(InterfaceLanguage::Chinese);
        const auto russian = StartTexts(InterfaceLanguage::Russian);
        for (int index = CpuTemperature; index <= Time; ++index) {
            QCOMPARE(chinese[index], common[index]);
            QCOMPARE(russian[index], common[index]);
        }
        QCOMPARE(chinese[CpuPower], QString());
        QCOMPARE(russian[CpuPower], QStringLiteral(u"15\u0412\u0442"));
        QCOMPARE(chinese[Date], QStringLiteral("2019.12.21"));
        QCOMPARE(russian[Date], QStringLiteral("21.12.2019"));
        QCOMPARE(chinese[FanSpeed], QStringLiteral("1000"));
        QCOMPARE(chinese[OtherText], QString());
        QCOMPARE(chinese[OtherText2], QString());
        QVERIFY(StartTexts(InterfaceLanguage::English) == chinese);
    }

    void ATextWithoutARussianFormIsTheUsualOne() {
        QCOMPARE(TextIn({"125w", "125Вт"}, InterfaceLanguage::Russian), QStringLiteral("125Вт"));
        QCOMPARE(TextIn({"125w", "125Вт"}, InterfaceLanguage::English), QStringLiteral("125w"));
        QCOMPARE(TextIn({"45℃"}, InterfaceLanguage::Russian), QStringLiteral("45℃"));
        for (const InterfaceLanguage language : kLanguages) {
            QVERIFY(TextIn({}, language).isNull());
        }
    }
};

KIVO_APPLESS_TEST(TestItemTable)
#include "tst_item_table.moc"
