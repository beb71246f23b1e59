// Where the free text goes when its row is taken.

#include <QTest>

#include "compose/free_text.h"
#include "compose_test_support.h"
#include "ink.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
constexpr QChar kEllipsis(0x2026);

const SlotRow kFactoryRow{{CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}};

// The layouts that come from the factory: five items, and one in the centre.
ScreenState Factory(int variant, Orientation orientation, const QString& text, int row, int sizeIndex) {
    ScreenState state = CustomScreen(variant == 0 ? kFactoryRow : OnlySlot(kCentreSlot, CpuTemperature),
                                     orientation, InterfaceLanguage::Chinese, variant);
    state.layout.freeText = text;
    state.layout.sizeIndex = sizeIndex;
    state.textRow = row;
    return state;
}

// The least of the free pixels between the free text and any other text.
int DistanceToTheRest(const ScreenState& state, int limit) {
    const PanelTexts texts = LayOutPanelTexts(state, LiveTexts(state.language)[3]);
    const Ink ink = Ink::Of(texts.freeText);
    int least = limit;
    for (const TextRun& run : texts.runs) {
        least = qMin(least, ink.DistanceTo(Ink::Of(run), limit));
    }
    return least;
}

// The ink above which no line is, in the row alone.
QRect BoundsAlone(ScreenState state) {
    state.slotItems = kNoItems;
    return LayOutFreeText(state).bounds;
}

}  // namespace

class TestFreeTextPlacing : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    // Every row and size of both layouts in both orientations, with values as long as they get.
    void KeepsAwayFromEverythingElse_data() {
        QTest::addColumn<ScreenState>("state");
        const QVector<QPair<QByteArray, QString>> texts{
            {"short", QStringLiteral("Hello desk")},
            {"one long word", QStringLiteral("Supercalifragilistic")},
            {"a few words", QStringLiteral("My quiet gaming computer")},
            {"20 Chinese characters", QStringLiteral("人人生而自由在尊严和权利上一律平等他们赋")},
            {"60 characters",
             QStringLiteral("Как хорошо, что у меня есть этот маленький экран на столе! :)")},
            {"two lines", QStringLiteral("first line\nsecond line")}};
        for (const auto& [name, text] : texts) {
            for (const Orientation orientation : kOrientations) {
                for (int variant = 0; variant < kVariantCount; ++variant) {
                    for (int row = 0; row < kTextRowCount; ++row) {
                        for (int size = 0; size < kTextSizeCount; ++size) {
                            QTest::newRow(name + ", " + NameOf(orientation) + ", layout " +
                                          QByteArray::number(variant) + ", row " + QByteArray::number(row) +
                                          ", size " + QByteArray::number(size))
                                << Factory(variant, orientation, text, row, size);
                        }
                    }
                }
            }
        }
    }
    void KeepsAwayFromEverythingElse() {
        QFETCH(ScreenState, state);
        constexpr int kGap = 6;
        QCOMPARE(DistanceToTheRest(state, kGap), kGap);
    }

    // What fits anywhere, if smaller, is shown whole.
    void TextsOfAnOrdinaryLengthAreShownWhole() {
        for (const QString& text :
             {QStringLiteral("My quiet gaming computer"), QStringLiteral("Hello desk"),
              QStringLiteral("人人生而自由在尊严和权利"), QStringLiteral("Мой тихий компьютер")}) {
            for (const Orientation orientation : kOrientations) {
                for (int variant = 0; variant < kVariantCount; ++variant) {
                    for (int row = 0; row < kTextRowCount; ++row) {
                        for (int size = 0; size < kTextSizeCount; ++size) {
                            const FreeTextBlock block =
                                LayOutFreeText(Factory(variant, orientation, text, row, size));
                            QVERIFY(!block.isCut);
                            QString shown = Joined(block);
                            QCOMPARE(shown.remove(QLatin1Char(' ')), QString(text).remove(QLatin1Char(' ')));
                        }
                    }
                }
            }
        }
    }

    void ARowThatIsFreeIsKept_data() {
        QTest::addColumn<ScreenState>("state");
        QTest::newRow("one value, first row") << Factory(1, kLying, QStringLiteral("Hello desk"), 0, 0);
        QTest::newRow("one value, last row") << Factory(1, kLying, QStringLiteral("Hello desk"), 2, 2);
        QTest::newRow("five values, first row") << Factory(0, kLying, QStringLiteral("Hello desk"), 0, 0);
        QTest::newRow("five values, last row") << Factory(0, kLying, QStringLiteral("Hello desk"), 2, 0);
        QTest::newRow("portrait, first row") << Factory(0, kStanding, QStringLiteral("Hello desk"), 0, 0);
        QTest::newRow("portrait, last row") << Factory(0, kStanding, QStringLiteral("Hello desk"), 2, 0);
        ScreenState free = Factory(0, kStanding, QStringLiteral("Hello desk"), 1, 0);
        free.slotItems[kCentreSlot] = kEmptySlot;
        QTest::newRow("portrait, middle row, nothing in the centre") << free;
    }
    void ARowThatIsFreeIsKept() {
        QFETCH(ScreenState, state);
        const FreeTextBlock block = LayOutFreeText(state);
        state.slotItems = kNoItems;
        QCOMPARE(block.bounds, LayOutFreeText(state).bounds);
    }

    void ARowThatIsTakenIsLeftForTheNearestBand_data() {
        QTest::addColumn<ScreenState>("state");
        QTest::newRow("one value, landscape") << Factory(1, kLying, QStringLiteral("Hello desk"), 1, 2);
        QTest::newRow("one value, portrait") << Factory(1, kStanding, QStringLiteral("Hello desk"), 1, 0);
        QTest::newRow("five values, portrait") << Factory(0, kStanding, QStringLiteral("Hello desk"), 1, 2);
        QTest::newRow("first row, two lines") << Factory(1, kLying, QStringLiteral("Hello\ndesk"), 0, 2);
    }
    void ARowThatIsTakenIsLeftForTheNearestBand() {
        QFETCH(ScreenState, state);
        const FreeTextBlock block = LayOutFreeText(state);
        const bool hasCaption = state.slotItems[kCentreSlot] != Time;
        const QRect chip = SlotChipRect(kCentreSlot, state.orientation, hasCaption);
        // As near to the chip as its pill may come, on the side that is nearer to its row in this font.
        const QRect alone = BoundsAlone(state);
        const int belowTheChip = chip.bottom() + 1 + 7;
        const int aboveTheChip = chip.top() - 1 - 7;
        if (belowTheChip - alone.top() < alone.bottom() - aboveTheChip) {
            QCOMPARE(block.bounds.top(), belowTheChip);
        } else {
            QVERIFY(block.bounds.bottom() <= aboveTheChip);
        }
        QCOMPARE(block.pixelSize, FreeTextPixelSize(state.layout.sizeIndex));
        const int centre = CanvasSize(state.orientation).width() / 2;
        QVERIFY(qAbs(block.bounds.center().x() - centre) <= 3);
    }

    // The last portrait row begins at a fixed line: a second one would reach the values below it.
    void ASecondLineMovesTheFirstUp() {
        const FreeTextBlock one = LayOutFreeText(Factory(0, kStanding, QStringLiteral("Hello"), 2, 0));
        const FreeTextBlock two = LayOutFreeText(Factory(0, kStanding, QStringLiteral("Hello\ndesk"), 2, 0));
        QCOMPARE(two.lines.size(), 2);
        QCOMPARE(two.pixelSize, 17);
        QVERIFY(two.bounds.top() < one.bounds.top());
        QVERIFY(two.bounds.bottom() < SlotChipRect(1, kStanding, true).top() - 7);
    }

    // Two words, each a digit too wide for the column between the values.
    void NoBandIsWideEnoughSoItBecomesSmaller() {
        const int column =
            SlotChipRect(3, kLying, true).left() - SlotChipRect(0, kLying, true).right() - 1 - 2 * 11;
        const QString word(column / MetricsOf(17).digitWidth + 1, QLatin1Char('0'));
        const FreeTextBlock block = LayOutFreeText(Factory(0, kLying, word + QLatin1Char(' ') + word, 0, 0));
        QVERIFY(block.pixelSize < 17 && block.pixelSize >= 14);
        QCOMPARE(block.lines.size(), 2);
        QCOMPARE(block.lines.first().text, word);
        QVERIFY(!block.isCut);
        // Still in its row.
        QVERIFY(block.bounds.bottom() < SlotChipRect(kCentreSlot, kLying, false).top());
    }

    void OnlyWhatFitsNowhereIsCut() {
        for (const Orientation orientation : kOrientations) {
            const FreeTextBlock block =
                LayOutFreeText(Factory(0, orientation, QStringLiteral("人人生而自由").repeated(20), 0, 0));
            QVERIFY(block.isCut);
            QCOMPARE(block.pixelSize, 12);
            QVERIFY(block.lines.last().text.endsWith(kEllipsis));
            QVERIFY(block.lines.size() > 1);
        }
    }

    void ValuesOnOneSideOnlyLeaveTheOtherSide() {
        ScreenState state = Factory(0, kLying, QStringLiteral("Supercalifragil"), 0, 0);
        state.slotItems = {CpuTemperature, CpuUsage, kEmptySlot, kEmptySlot, kEmptySlot};
        const FreeTextBlock block = LayOutFreeText(state);
        QCOMPARE(block.lines.size(), 1);
        QCOMPARE(block.pixelSize, 17);
        QVERIFY(block.bounds.left() > SlotChipRect(0, kLying, true).right() + 10);
        QCOMPARE(block.bounds.top(), BoundsAlone(state).top());
    }
};

KIVO_TEST(TestFreeTextPlacing)
#include "tst_free_text_placing.moc"
