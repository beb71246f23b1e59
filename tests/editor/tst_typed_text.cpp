#include "editor/typed_text.h"
#include "free_text_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

ScreenState Screen(Orientation orientation, int row, int size = 0,
                   const SlotTable& slotTable = FactorySlotTable()) {
    EditState state;
    state.themes = CustomThemes(orientation);
    state.themes.layouts[size_t(CustomLayoutIndex(0))].sizeIndex = size;
    state.slotTable = slotTable;
    state.textRow = row;
    return MakeScreenState(state, InterfaceLanguage::Chinese);
}

TypedInput Typing(const QString& text) {
    return {text, int(text.size()), int(text.size()), QString()};
}

QString Placeholder() {
    return QStringLiteral("双击进行输入");
}

bool IsSame(const FreeTextBlock& a, const FreeTextBlock& b) {
    bool same = a.bounds == b.bounds && a.pixelSize == b.pixelSize && a.color == b.color &&
                a.lines.size() == b.lines.size();
    for (int k = 0; same && k < a.lines.size(); ++k) {
        same = a.lines[k].text == b.lines[k].text && a.lines[k].baseLine == b.lines[k].baseLine;
    }
    return same;
}

}  // namespace

class TestTypedText : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    // From the first letter to the last, so that nothing jumps when the typing ends.
    void ItStandsWhereItWillStand_data() { AddRowsAndTexts(); }
    void ItStandsWhereItWillStand() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        for (int size = 0; size < kTextSizeCount; ++size) {
            for (int length = 1; length <= text.size(); ++length) {
                ScreenState screen = Screen(orientation, row, size);
                const TypedText typed(screen, Typing(text.left(length)), Placeholder());
                screen.layout.freeText = text.left(length);
                QVERIFY(IsSame(typed.Block(), LayOutFreeText(screen)));
            }
        }
    }

    void ThePlaceholderStandsThereFainter_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QString>("text");
        for (const Orientation orientation : kOrientations) {
            for (const char* text : {"双击进行输入", "Type here", "Введите текст"}) {
                QTest::addRow("%s, %s", NameOf(orientation).constData(), text)
                    << orientation << QString::fromUtf8(text);
            }
        }
    }
    void ThePlaceholderStandsThereFainter() {
        QFETCH(Orientation, orientation);
        QFETCH(QString, text);
        for (int row = 0; row < kTextRowCount; ++row) {
            for (int size = 0; size < kTextSizeCount; ++size) {
                const TypedText typed(Screen(orientation, row, size), Typing(QString()), text);
                QStringList shown;
                for (const FreeTextLine& line : typed.Block().lines) {
                    shown.append(line.text);
                }
                QCOMPARE(shown.join(QLatin1Char(' ')), text);  // nothing is cut
                QVERIFY(typed.Block().color.alpha() < 200);
                QVERIFY(!typed.IsCut());
            }
        }
    }

    void EveryPositionIsFoundAgain_data() { AddRowsAndTexts(); }
    void EveryPositionIsFoundAgain() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        const ScreenState screen = Screen(orientation, row, 0, Nothing());
        const QRectF canvas(QPointF(0, 0), QSizeF(CanvasSize(orientation)));
        for (int caret = 0; caret <= text.size(); ++caret) {
            const TypedText typed(screen, {text, caret, caret, QString()}, QString());
            QVERIFY(canvas.contains(typed.Caret()));
            if (typed.IsCut()) {
                continue;  // its end stands nowhere
            }
            // A blank at which a line is broken has the next line's beginning.
            const int found = typed.PositionAt(typed.Caret().center());
            QVERIFY(found == caret || (found == caret + 1 && text.at(caret).isSpace()) ||
                    (found == caret - 1 && text.at(found).isSpace()));
        }
    }

    void TheCaretGoesFromLineToLine() {
        const QString text = QStringLiteral("one\ntwo and more\nthree");
        const ScreenState screen = Screen(kLying, 1, 0, Nothing());
        const auto at = [&](int caret) { return TypedText(screen, {text, caret, caret, QString()}, {}); };
        const int inSecond = text.indexOf(QLatin1String("and"));
        QCOMPARE(at(inSecond).LineStart(), text.indexOf(QLatin1String("two")));
        QCOMPARE(at(inSecond).LineEnd(), text.indexOf(QLatin1String("\nthree")));
        QVERIFY(at(inSecond).LineBeside(-1) <= 3);
        QVERIFY(at(inSecond).LineBeside(1) >= text.indexOf(QLatin1String("three")));
        QCOMPARE(at(1).LineBeside(-1), 1);
        QVERIFY(at(inSecond).Caret().top() > at(1).Caret().top());
    }

    void ABlankAtTheEndMovesTheCaretOnly() {
        const ScreenState screen = Screen(kLying, 2);
        const TypedText without(screen, Typing(QStringLiteral("Hello")), {});
        const TypedText with(screen, Typing(QStringLiteral("Hello ")), {});
        const TypedText newLine(screen, Typing(QStringLiteral("Hello\n")), {});
        QCOMPARE(with.Block().bounds, without.Block().bounds);
        QVERIFY(with.Caret().left() > without.Caret().left());
        QVERIFY(newLine.Caret().top() > without.Caret().top());
    }

    void ASelectionCoversItsLetters() {
        const QString text = QStringLiteral("one\ntwo");
        const TypedText typed(Screen(kLying, 1), {text, 1, 6, QString()}, {});
        const QVector<QRectF> rects = typed.Selection();
        QCOMPARE(rects.size(), 2);
        // The bounds are those of the ink; a selection is as high as the line.
        const int height = MetricsOf(typed.Block().pixelSize).height;
        const QRectF drawn = QRectF(typed.Block().bounds).adjusted(-2, -height / 2.0, 2, height / 2.0);
        for (const QRectF& rect : rects) {
            QVERIFY(drawn.contains(rect));
        }
        QVERIFY(TypedText(Screen(kLying, 1), Typing(text), {}).Selection().isEmpty());
    }

    void WhatAnInputMethodShowsIsLaidOutToo() {
        ScreenState screen = Screen(kLying, 2);
        const TypedText typed(screen, {QStringLiteral("ab"), 1, 1, QStringLiteral("ni")}, {});
        screen.layout.freeText = QStringLiteral("anib");
        QVERIFY(IsSame(typed.Block(), LayOutFreeText(screen)));
        QCOMPARE(typed.Preedit().size(), 1);
        // Positions are those of the text without it.
        QCOMPARE(typed.PositionAt(QPointF(1000, typed.Caret().center().y())), 2);
    }

    void ATextThatDoesNotFitIsCut() {
        const ScreenState screen = Screen(kStanding, 2);
        QVERIFY(!TypedText(screen, Typing(QStringLiteral("fits")), {}).IsCut());
        QVERIFY(!TypedText(screen, Typing(QStringLiteral("ends so…")), {}).IsCut());
        const QString longest(40, QChar(0x4F60));
        ScreenState pictured = screen;
        pictured.layout.picture = QStringLiteral("own.png");  // 20 characters then
        QVERIFY(TypedText(pictured, Typing(longest), {}).IsCut());
    }

    void NothingThatMeetsTheBoxIsPainted() {
        const ScreenState screen = Screen(kLying, 2);
        const PanelTexts all = LayOutPanelTexts(screen, SampleTexts(screen.language));
        QVector<QRectF> boxes{QRectF(TextRowRect(2, kLying))};
        for (const TextRun& run : all.runs) {
            boxes.append(QRectF(run.rect.center(), QSizeF(1, 1)));  // a value, or a caption, alone
        }
        for (const QRectF& box : qAsConst(boxes)) {
            const PanelTexts rest = WithoutItems(ItemsUnder(box, all), all);
            QVERIFY(!rest.runs.isEmpty());
            QVERIFY(rest.runs.size() < all.runs.size());
            for (const TextRun& run : rest.runs) {
                QVERIFY(!QRectF(run.rect).intersects(box));
                QVERIFY(!QRectF(ChipOf(all, run.item)).intersects(box));
            }
            // A value goes with its caption and the other way round.
            for (const TextRun& run : all.runs) {
                const auto isOfItem = [&run](const TextRun& other) { return other.item == run.item; };
                const auto count = std::count_if(rest.runs.begin(), rest.runs.end(), isOfItem);
                QVERIFY(count == 0 || count == std::count_if(all.runs.begin(), all.runs.end(), isOfItem));
            }
        }
    }

    void ABoxHoldsItsTextAndStaysOnTheScreen_data() { AddRowsAndTexts(); }
    void ABoxHoldsItsTextAndStaysOnTheScreen() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        const QSize widget = EditorSize(orientation);
        const TypedText typed(Screen(orientation, row), Typing(text), {});
        const ScreenMapping map = MappingFor(orientation, widget);
        const QRect box = TypingBoxRect(row, orientation, widget, typed.Block().bounds);
        QVERIFY(box.contains(map.Mapped(typed.Block().bounds)));
        QVERIFY(map.Mapped(QRect(QPoint(0, 0), CanvasSize(orientation))).contains(box));
        // Without a text it is the row's.
        QCOMPARE(TypingBoxRect(row, orientation, widget, QRect()), TextBoxRect(row, orientation, widget));
    }
};

KIVO_TEST(TestTypedText)
#include "tst_typed_text.moc"
