#include <QTest>

#include "compose/free_text.h"
#include "compose_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

ScreenState WithText(const QString& text, Orientation orientation, int row) {
    ScreenState state = CustomScreen(kNoItems, orientation);
    state.layout.freeText = text;
    state.textRow = row;
    return state;
}

QImage Drawn(const ScreenState& state) {
    QImage image = NoisyCanvas(state.orientation);
    QPainter painter(&image);
    DrawFreeText(painter, LayOutFreeText(state), image.rect());
    return image;
}

QRect Painted(const ScreenState& state) {
    return ChangedRect(Drawn(state), NoisyCanvas(state.orientation));
}

// The box of a row whose bottom follows from the font: three lines and their spacing.
QRect GrownBox(int row, Orientation orientation, int pixelSize) {
    QRect box = TextRowRect(row, orientation);
    const LineMetrics metrics = MetricsOf(pixelSize);
    box.setBottom(box.top() + 3 * metrics.height + metrics.lineSpacing - 1);
    return box;
}

constexpr QChar kEllipsis(0x2026);

const QString kTwentySix = QStringLiteral("abcdefghijklmnopqrstuvwxyz");

}  // namespace

class TestFreeText : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void EmptyTextChangesNothing_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << QStringLiteral("");
        QTest::newRow("blanks") << QStringLiteral("   ");
        QTest::newRow("line ends") << QStringLiteral("\n\n");
    }
    void EmptyTextChangesNothing() {
        QFETCH(QString, text);
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                const ScreenState state = WithText(text, orientation, row);
                QVERIFY(LayOutFreeText(state).lines.isEmpty());
                QVERIFY(Painted(state).isNull());
            }
        }
    }

    void NeverOverATheme() {
        for (const Theme theme : kThemes) {
            ScreenState state = ThemeScreen(theme, kLying);
            state.layout.freeText = QStringLiteral("text");
            QVERIFY(LayOutFreeText(state).lines.isEmpty());
            QVERIFY(Painted(state).isNull());
        }
    }

    void InBothCustomLayouts() {
        for (int variant = 0; variant < kVariantCount; ++variant) {
            ScreenState state = WithText(QStringLiteral("text"), kLying, 2);
            state.variant = variant;
            QCOMPARE(LayOutFreeText(state).lines.size(), 1);
        }
    }

    void OneLineStandsInItsRow_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("grown");    // the box's bottom follows from the font
        QTest::addColumn<bool>("fromTop");  // else centred
        QTest::newRow("landscape, first row, in its box") << kLying << 0 << false << false;
        QTest::newRow("landscape, second row, centred") << kLying << 1 << true << false;
        QTest::newRow("landscape, third row, from the top") << kLying << 2 << true << true;
        QTest::newRow("portrait, first row, centred") << kStanding << 0 << true << false;
        QTest::newRow("portrait, second row, centred") << kStanding << 1 << true << false;
        QTest::newRow("portrait, third row, from the top") << kStanding << 2 << true << true;
    }
    void OneLineStandsInItsRow() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(bool, grown);
        QFETCH(bool, fromTop);
        for (int sizeIndex = 0; sizeIndex < kTextSizeCount; ++sizeIndex) {
            ScreenState state = WithText(QStringLiteral("Hxgq08"), orientation, row);
            state.layout.sizeIndex = sizeIndex;
            const int pixelSize = FreeTextPixelSize(sizeIndex);
            const LineMetrics metrics = MetricsOf(pixelSize);
            const QRect box = grown ? GrownBox(row, orientation, pixelSize) : TextRowRect(row, orientation);
            const FreeTextBlock block = LayOutFreeText(state);
            QCOMPARE(block.pixelSize, pixelSize);
            QCOMPARE(block.lines.size(), 1);
            const int lineTop = block.lines.first().baseLine.y() - metrics.ascent;
            if (fromTop) {
                QCOMPARE(lineTop, box.top());
            } else {
                const int above = lineTop - box.top();
                const int below = box.bottom() + 1 - (lineTop + metrics.height);
                QVERIFY2(qAbs(above - below) <= 2,
                         QByteArray::number(above) + " above, " + QByteArray::number(below) + " below");
            }
            const QRect painted = Painted(state);
            QVERIFY2(qAbs((painted.left() - box.left()) - (box.right() - painted.right())) <= 3,
                     Describe(painted));
            QVERIFY(block.bounds.contains(painted));
        }
    }

    void SizeAndColour() {
        ScreenState state = WithText(QStringLiteral("text"), kLying, 1);
        for (int color = 0; color < kTextColorCount; ++color) {
            state.layout.colorIndex = color;
            QCOMPARE(LayOutFreeText(state).color, FreeTextColor(color));
            const QImage image = Drawn(state);
            const QRect painted = Painted(state);
            // The heart of a stroke has the full colour.
            QImage one(1, 1, QImage::Format_RGB16);
            one.fill(FreeTextColor(color));
            bool found = false;
            for (int y = painted.top(); y <= painted.bottom(); ++y) {
                for (int x = painted.left(); x <= painted.right(); ++x) {
                    found = found || PixelAt(image, x, y) == PixelAt(one, 0, 0);
                }
            }
            QVERIFY(found);
        }
    }

    void LongTextWrapsByWords() {
        for (const Orientation orientation : kOrientations) {
            const QString text = QStringLiteral("seven words that fill two lines here and some more");
            const ScreenState state = WithText(text, orientation, orientation == kLying ? 0 : 1);
            const FreeTextBlock block = LayOutFreeText(state);
            QVERIFY(block.lines.size() >= 2);
            QStringList words;
            for (const FreeTextLine& line : block.lines) {
                words += line.text.split(QLatin1Char(' '));
                QCOMPARE(line.text, line.text.trimmed());
            }
            QCOMPARE(words.join(QLatin1Char(' ')), text);
        }
    }

    void AWordWiderThanTheRowBreaksAnywhere() {
        const QString word = kTwentySix + kTwentySix;
        const FreeTextBlock block = LayOutFreeText(WithText(word, kStanding, 0));
        QVERIFY(block.lines.size() >= 2);
        QCOMPARE(Joined(block), word);
    }

    void ChineseWrapsWithoutBlanks() {
        const QString text = QStringLiteral("自定义文字可以换行而且不需要空格因为每个字都可以断开");
        const FreeTextBlock block = LayOutFreeText(WithText(text, kStanding, 1));
        QVERIFY(block.lines.size() >= 3);
        QCOMPARE(Joined(block), text);
    }

    void LineEndsAreKept() {
        const FreeTextBlock block = LayOutFreeText(WithText(QStringLiteral("one\ntwo"), kLying, 0));
        QCOMPARE(block.lines.size(), 2);
        QCOMPARE(block.lines[0].text, QStringLiteral("one"));
        QCOMPARE(block.lines[1].text, QStringLiteral("two"));
        QCOMPARE(block.lines[1].baseLine.y() - block.lines[0].baseLine.y(), MetricsOf(17).lineSpacing);
    }

    void CutToTwentyCharacters_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("picture");
        QTest::addColumn<bool>("cut");
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                for (const bool picture : {false, true}) {
                    QTest::addRow("%s, row %d, %s", NameOf(orientation).constData(), row,
                                  picture ? "with a picture" : "without a picture")
                        << orientation << row << picture << (orientation == kStanding && row == 2 && picture);
                }
            }
        }
    }
    void CutToTwentyCharacters() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(bool, picture);
        QFETCH(bool, cut);
        ScreenState state = WithText(kTwentySix, orientation, row);
        state.layout.sizeIndex = 2;
        state.layout.defaultPicture = DefaultBackground();
        state.layout.picture = picture ? QStringLiteral("/a/picture.png") : QString();
        QCOMPARE(Joined(LayOutFreeText(state)), cut ? kTwentySix.left(20) + kEllipsis : QString(kTwentySix));
        QCOMPARE(LayOutFreeText(state).isCut, cut);
        state.layout.freeText = kTwentySix.left(20);
        QCOMPARE(Joined(LayOutFreeText(state)), kTwentySix.left(20));
        QVERIFY(!LayOutFreeText(state).isCut);
    }

    void CharactersCountAsAPersonCountsThem_data() {
        QTest::addColumn<QString>("character");
        QTest::newRow("a pair of surrogates") << QStringLiteral("😀");
        QTest::newRow("a letter with its accent") << QStringLiteral("e\u0301");
    }
    void CharactersCountAsAPersonCountsThem() {
        QFETCH(QString, character);
        ScreenState state = WithText(character.repeated(20), kStanding, 2);
        state.layout.sizeIndex = 2;
        state.layout.picture = QStringLiteral("/a/picture.png");
        QCOMPARE(Joined(LayOutFreeText(state)), character.repeated(20));
        state.layout.freeText += character;
        QCOMPARE(Joined(LayOutFreeText(state)), character.repeated(20) + kEllipsis);
    }

    void NoBlankIsLeftBeforeTheCut() {
        ScreenState state = WithText(kTwentySix.left(18) + QStringLiteral("  xyz"), kStanding, 2);
        state.layout.sizeIndex = 2;
        state.layout.picture = QStringLiteral("/a/picture.png");
        QCOMPARE(Joined(LayOutFreeText(state)), kTwentySix.left(18) + kEllipsis);
    }

    void LinesThatHoldNothingDoNotCount() {
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                const FreeTextBlock plain =
                    LayOutFreeText(WithText(QStringLiteral("one\ntwo"), orientation, row));
                for (const QString& end : {QStringLiteral("\n"), QStringLiteral("\n \n\n\n\n\n\n\n\n\n"),
                                           QStringLiteral("\n").repeated(1000), QStringLiteral(" \t\r\n")}) {
                    const FreeTextBlock block =
                        LayOutFreeText(WithText(QStringLiteral("one\ntwo") + end, orientation, row));
                    QCOMPARE(block.bounds, plain.bounds);
                    QCOMPARE(block.lines.size(), 2);
                    QCOMPARE(block.lines[1].text, QStringLiteral("two"));
                }
            }
        }
        QVERIFY(LayOutFreeText(WithText(QStringLiteral("\n \n"), kLying, 1)).lines.isEmpty());
    }

    void AnyTextStaysOnTheCanvas_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("10,000 letters") << QString(10000, QLatin1Char('w'));
        QTest::newRow("10,000 words") << QStringLiteral("word ").repeated(10000);
        QTest::newRow("1,000 lines") << QStringLiteral("line\n").repeated(1000);
        QTest::newRow("emoji") << QStringLiteral("😀🎉👩‍👩‍👧‍👦🇨🇳 text");
        QTest::newRow("lone surrogates") << QString(QChar(0xD83D)) + QLatin1Char('a') + QChar(0xDE00);
        QTest::newRow("control characters") << QStringLiteral(
            "a\tb\rc\x01"
            "d\x7F");
        QTest::newRow("right to left") << QStringLiteral("שלום עולם مرحبا");
        QTest::newRow("stacked accents") << QStringLiteral("Z̸̡̢͍̹̯̺͓̐̊̿͐̓͝a̶̧̫̘̖͆l̷g̵o̴");
        QTest::newRow("zero width") << QString(300, QChar(0x200B)) + QLatin1Char('x');
        QTest::newRow("null character") << QString(QChar(0)) + QLatin1Char('x');
    }
    void AnyTextStaysOnTheCanvas() {
        QFETCH(QString, text);
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                const ScreenState state = WithText(text, orientation, row);
                const FreeTextBlock block = LayOutFreeText(state);
                QVERIFY(!block.lines.isEmpty());
                QVERIFY2(CanvasRect(orientation).contains(block.bounds), Describe(block.bounds));
                for (const FreeTextLine& line : block.lines) {
                    QVERIFY(line.baseLine.y() > 0);
                    QVERIFY(line.baseLine.y() < CanvasSize(orientation).height());
                }
                const QRect painted = Painted(state);
                QVERIFY(painted.isNull() || block.bounds.contains(painted));
            }
        }
    }

    void WhatDoesNotFitEndsInAnEllipsis() {
        for (const Orientation orientation : kOrientations) {
            const FreeTextBlock block =
                LayOutFreeText(WithText(QStringLiteral("word ").repeated(500), orientation, 2));
            QVERIFY(block.lines.size() > 1);
            const QString last = block.lines.last().text;
            QVERIFY2(last.contains(kEllipsis) || last.contains(QLatin1String("...")), qPrintable(last));
            QVERIFY(block.isCut);
        }
    }

    void RowsOutsideCountAsTheFirst() {
        for (const int row : {-1, 3, 1000000}) {
            const FreeTextBlock block = LayOutFreeText(WithText(QStringLiteral("text"), kLying, row));
            QCOMPARE(block.lines.size(), 1);
            QVERIFY(CanvasRect(kLying).contains(block.bounds));
        }
    }

    void ControlSignsDoNotTearItApart() {
        ScreenState state = WithText(QStringLiteral("one\ttwo"), kLying, 1);
        state.layout.freeText += QChar(0x202E) + QStringLiteral("three\r\nfour");
        const FreeTextBlock block = LayOutFreeText(state);
        QCOMPARE(block.lines.size(), 2);
        QCOMPARE(block.lines[0].text, QStringLiteral("one two three"));
        QCOMPARE(block.lines[1].text, QStringLiteral("four"));
    }

    void DrawnOnlyWhereItReaches() {
        const ScreenState state = WithText(QStringLiteral("text"), kLying, 0);
        const QRect bounds = LayOutFreeText(state).bounds;
        QImage image = NoisyCanvas(kLying);
        {
            QPainter painter(&image);
            DrawFreeText(painter, LayOutFreeText(state), QRect(0, bounds.bottom() + 1, 320, 20));
        }
        QVERIFY(ChangedRect(image, NoisyCanvas(kLying)).isNull());
    }

    void TheItemsKeepTheirWhite() {
        ScreenState state = CustomScreen(OnlySlot(0, CpuUsage), kLying);
        state.layout.freeText = QStringLiteral("text");
        state.layout.colorIndex = 2;
        state.textRow = 2;
        const ItemTexts texts = LiveTexts(state.language)[1];
        QImage with = BlackCanvas(kLying);
        QImage without = with;
        {
            QPainter painter(&with);
            DrawPanelTexts(painter, LayOutPanelTexts(state, texts), with.rect());
        }
        {
            QPainter painter(&without);
            DrawTexts(painter, LayOutTexts(state, texts), without.rect());
        }
        QVERIFY(LayOutFreeText(state).bounds.contains(ChangedRect(with, without)));
        QVERIFY(!ChangedRect(with, without).isNull());
    }
};

KIVO_TEST(TestFreeText)
#include "tst_free_text.moc"
