#include <QApplication>

#include "free_text_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The free text dragged between its rows.
class TestDragToolText : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void DraggingTheTextChangesItsRow_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("row");
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                QTest::newRow(NameOf(orientation) + ", to row " + QByteArray::number(row))
                    << orientation << row;
            }
        }
    }
    void DraggingTheTextChangesItsRow() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        Hands hand(CustomThemes(orientation), Nothing());
        hand.GiveText(Words());
        // Grabbed in its zone and, on the way back, by the letters themselves.
        hand.Drag(RowPoint(2, orientation), RowPoint(row, orientation));
        QCOMPARE(hand.editor.Edited().textRow, row);
        hand.Drag(hand.drag.DrawnTextRect().center(), RowPoint(1, orientation));
        QCOMPARE(hand.editor.Edited().textRow, 1);
    }

    void DroppingTheTextOutsideTheRowsLeavesIt() {
        Hands hand(CustomThemes(), Nothing());
        hand.GiveText(Words());
        hand.Drag(RowPoint(2), QPoint(200, 5));
        QCOMPARE(hand.editor.Edited().textRow, 2);
    }

    void OnlyATickedTextThatIsThereIsDragged_data() {
        QTest::addColumn<bool>("hasText");
        QTest::addColumn<bool>("ticked");
        QTest::newRow("no text") << false << true;
        QTest::newRow("not ticked") << true << false;
    }
    void OnlyATickedTextThatIsThereIsDragged() {
        QFETCH(bool, hasText);
        QFETCH(bool, ticked);
        Hands hand(CustomThemes(), Nothing());
        hand.GiveText(hasText ? Words() : QString());
        hand.editor.SetItem(OtherText, ticked);
        hand.Drag(RowPoint(2), RowPoint(0));
        QCOMPARE(hand.editor.Edited().textRow, 2);
    }

    void AClickOnTheTextLeavesItsRow_data() { AddRowsAndTexts(); }
    void AClickOnTheTextLeavesItsRow() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        Hands hand(CustomThemes(orientation), Nothing());
        hand.GiveText(text);
        hand.MoveUpTo(row);
        const QRect drawn = hand.drag.DrawnTextRect(row);
        const int aside = QApplication::startDragDistance() + 2;
        for (int y = drawn.top(); y <= drawn.bottom(); ++y) {
            for (const int x : {drawn.left(), drawn.center().x(), drawn.right()}) {
                const QPoint at(x, y);
                hand.drag.Press(at);
                hand.drag.Release(at);
                QCOMPARE(hand.editor.Edited().textRow, row);
                hand.Drag(at, at + QPoint(3, 3));
                QCOMPARE(hand.editor.Edited().textRow, row);
            }
            hand.Drag(QPoint(drawn.center().x(), y), QPoint(drawn.center().x() + aside, y));
            QCOMPARE(hand.editor.Edited().textRow, row);
        }
    }

    void TheTextIsDraggedByAnyOfItsLines_data() { AddRowsAndTexts(); }
    void TheTextIsDraggedByAnyOfItsLines() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        for (int to = 0; to < kTextRowCount; ++to) {
            Hands hand(CustomThemes(orientation), Nothing());
            hand.GiveText(text);
            hand.MoveUpTo(row);
            const QRect drawn = hand.drag.DrawnTextRect(row);
            const QPoint by = hand.drag.DrawnTextRect(to).center() - drawn.center();
            // The rows have not the same room for lines, so that only the middles correspond.
            const QVector<QPoint> grabs =
                text == Words() ? QVector<QPoint>{drawn.topLeft(), drawn.center(), drawn.bottomRight()}
                                : QVector<QPoint>{drawn.center()};
            for (const QPoint& from : grabs) {
                hand.Drag(from, from + by);
                QCOMPARE(hand.editor.Edited().textRow, to);
                if (to != row) {
                    hand.editor.Undo();
                }
            }
        }
    }

    // The text of the middle row stands below its rectangle.
    void APlaceThatIsMarkedTakesTheText() {
        Hands hand(CustomThemes(), Nothing());
        hand.GiveText(Words());
        const QRect mark = hand.drag.DrawnTextRect(1);
        const QPoint at = mark.center();
        QVERIFY(!TextDropRect(1, kLying, EditorSize(kLying)).contains(at));
        hand.Drag(RowPoint(2), at);
        QCOMPARE(hand.editor.Edited().textRow, 1);
    }

    void WhereSlotAndTextDoNotOverlapTheOneThatIsDrawnIsTaken() {
        Hands hand;
        hand.GiveText(Words());
        hand.MoveUpTo(1);
        const QPoint value = SlotPoint(kCentreSlot);
        QVERIFY(!hand.drag.DrawnTextRect(1).contains(value));
        for (int turn = 0; turn < 3; ++turn) {
            const SlotRow before = hand.Row();
            hand.Drag(value, SlotPoint(0));
            QVERIFY(hand.Row() != before);
        }
        // Beside the slot, in the text's own zone.
        const SlotRow before = hand.Row();
        hand.Drag(RowPoint(1) - QPoint(120, 0), RowPoint(2) - QPoint(120, 0));
        QCOMPARE(hand.Row(), before);
        QCOMPARE(hand.editor.Edited().textRow, 2);
    }

    void InTheMiddleRowPressesTakeTurnsBetweenSlotAndText() {
        Hands hand;
        hand.GiveText(Words());
        hand.drag.Key(Qt::Key_PageUp);
        QCOMPARE(hand.editor.Edited().textRow, 1);
        const QPoint at = hand.drag.DrawnTextRect().center();
        QVERIFY(SlotPressRect(kCentreSlot, kLying, EditorSize(kLying)).contains(at));
        const QPoint outside(217, 20);
        SlotRow row = hand.Row();
        for (int turn = 0; turn < 2; ++turn) {
            hand.Drag(at, SlotPoint(0));
            std::swap(row[kCentreSlot], row[0]);
            QCOMPARE(hand.Row(), row);
            QCOMPARE(hand.editor.Edited().textRow, 1);
            // Were it the slot's turn again, the slots would change; the text goes where it is dropped.
            hand.Drag(at, turn == 0 ? outside : RowPoint(2));
            QCOMPARE(hand.Row(), row);
        }
        QCOMPARE(hand.editor.Edited().textRow, 2);
    }

    void InOtherRowsThePressesTakeNoTurns() {
        Hands hand;
        hand.GiveText(Words());
        for (int k = 0; k < 3; ++k) {
            const SlotRow before = hand.Row();
            hand.Drag(SlotPoint(kCentreSlot), SlotPoint(0));
            QVERIFY(hand.Row() != before);
        }
    }
};

KIVO_TEST(TestDragToolText)
#include "tst_drag_tool_text.moc"
