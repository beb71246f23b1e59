#include "free_text_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

class TestZoomWidgetTextDrag : public QObject {
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
        Editor editor(CustomThemes(orientation), Nothing());
        editor.GiveText(Words());
        QSignalSpy remote(&editor, &ZoomWidget::HideRemote);
        // Grabbed in its zone and, on the way back, by the letters themselves.
        editor.Drag(RowPoint(2, orientation), RowPoint(row, orientation));
        QCOMPARE(editor.Edited().textRow, row);
        QCOMPARE(remote.size(), 1);
        editor.Drag(DrawnText(editor), RowPoint(1, orientation));
        QCOMPARE(editor.Edited().textRow, 1);
    }

    void DroppingTheTextOutsideTheRowsLeavesIt() {
        Editor editor(CustomThemes(), Nothing());
        editor.GiveText(Words());
        editor.Drag(RowPoint(2), QPoint(200, 5));
        QCOMPARE(editor.Edited().textRow, 2);
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
        Editor editor(CustomThemes(), Nothing());
        editor.GiveText(hasText ? Words() : QString());
        editor.SetItemEnabled(OtherText, ticked);
        editor.Drag(RowPoint(2), RowPoint(0));
        QCOMPARE(editor.Edited().textRow, 2);
    }

    void AClickOnTheTextLeavesItsRow_data() { AddRowsAndTexts(); }
    void AClickOnTheTextLeavesItsRow() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        Editor editor(CustomThemes(orientation), Nothing());
        editor.GiveText(text);
        MoveUpTo(editor, row);
        const QRect drawn = DrawnIn(editor, row);
        const int aside = QApplication::startDragDistance() + 2;
        for (int y = drawn.top(); y <= drawn.bottom(); ++y) {
            for (const int x : {drawn.left(), drawn.center().x(), drawn.right()}) {
                const QPoint at(x, y);
                editor.Press(at);
                editor.Release(at);
                QCOMPARE(editor.Edited().textRow, row);
                editor.Drag(at, at + QPoint(3, 3));
                QCOMPARE(editor.Edited().textRow, row);
            }
            editor.Drag(QPoint(drawn.center().x(), y), QPoint(drawn.center().x() + aside, y));
            QCOMPARE(editor.Edited().textRow, row);
        }
    }

    void TheTextIsDraggedByAnyOfItsLines_data() { AddRowsAndTexts(); }
    void TheTextIsDraggedByAnyOfItsLines() {
        QFETCH(Orientation, orientation);
        QFETCH(int, row);
        QFETCH(QString, text);
        for (int to = 0; to < kTextRowCount; ++to) {
            Editor editor(CustomThemes(orientation), Nothing());
            editor.GiveText(text);
            MoveUpTo(editor, row);
            const QRect drawn = DrawnIn(editor, row);
            const QPoint by = DrawnIn(editor, to).center() - drawn.center();
            // The rows have not the same room for lines, so that only the middles correspond.
            const QVector<QPoint> grabs =
                text == Words() ? QVector<QPoint>{drawn.topLeft(), drawn.center(), drawn.bottomRight()}
                                : QVector<QPoint>{drawn.center()};
            for (const QPoint& from : grabs) {
                editor.Drag(from, from + by);
                QCOMPARE(editor.Edited().textRow, to);
                if (to != row) {
                    editor.Undo();
                }
            }
        }
    }

    // The text of the middle row stands below its rectangle.
    void APlaceThatIsMarkedTakesTheText() {
        Editor editor(CustomThemes(), Nothing());
        editor.GiveText(Words());
        const QRect mark = DrawnIn(editor, 1);
        const QPoint at = mark.center();
        QVERIFY(!TextDropRect(1, kLying, editor.size()).contains(at));
        editor.Drag(RowPoint(2), at);
        QCOMPARE(editor.Edited().textRow, 1);
    }

    void TheMarksAreWhereTheTextWouldBeDrawn_data() {
        QTest::addColumn<Orientation>("orientation");
        for (const Orientation orientation : kOrientations) {
            QTest::newRow(NameOf(orientation)) << orientation;
        }
    }
    void TheMarksAreWhereTheTextWouldBeDrawn() {
        QFETCH(Orientation, orientation);
        Editor editor(CustomThemes(orientation, 1));  // no slots are marked there
        editor.GiveText(Words());
        const QImage before = editor.grab().toImage();
        const QPoint at = DrawnText(editor);
        editor.Press(at);
        editor.MoveTo(at);
        const QRect changed = DifferentRect(before, editor.grab().toImage());
        const QRect all = DrawnIn(editor, 0) | DrawnIn(editor, 1) | DrawnIn(editor, 2);
        QVERIFY(changed.contains(all));
        QVERIFY(all.adjusted(-6, -6, 6, 6).contains(changed));
    }

    void WhereSlotAndTextDoNotOverlapTheOneThatIsDrawnIsTaken() {
        Editor editor;
        editor.GiveText(Words());
        MoveUpTo(editor, 1);
        const QPoint value = SlotPoint(kCentreSlot);
        QVERIFY(!DrawnIn(editor, 1).contains(value));
        for (int turn = 0; turn < 3; ++turn) {
            const SlotRow before = editor.Row();
            editor.Drag(value, SlotPoint(0));
            QVERIFY(editor.Row() != before);
        }
        // Beside the slot, in the text's own zone.
        const SlotRow before = editor.Row();
        editor.Drag(RowPoint(1) - QPoint(120, 0), RowPoint(2) - QPoint(120, 0));
        QCOMPARE(editor.Row(), before);
        QCOMPARE(editor.Edited().textRow, 2);
    }

    void HoverShowsWhoseTurnItIs() {
        Editor editor;
        editor.GiveText(Words());
        MoveUpTo(editor, 1);
        editor.clearFocus();  // which the keyboard has given it, with marks of its own
        const QPoint at = DrawnText(editor);
        const auto hovered = [&](QPoint position) {
            QHoverEvent hover(QEvent::HoverMove, position, QPointF());
            QCoreApplication::sendEvent(&editor, &hover);
            return editor.grab().toImage();
        };
        const QImage nothing = hovered(QPoint(217, 20));
        const QImage slot = hovered(at);
        editor.Press(at);
        editor.Release(at);
        const QImage text = editor.grab().toImage();
        QVERIFY(!DifferentRect(nothing, slot).isNull());
        QVERIFY(!DifferentRect(nothing, text).isNull());
        QVERIFY(!DifferentRect(slot, text).isNull());
        const int value = MappingFor(kLying, editor.size()).Mapped(SlotRect(kCentreSlot, kLying)).top();
        QVERIFY(DifferentRect(nothing, slot).top() <= value);  // the slot's outline goes about its value
        QVERIFY(DifferentRect(nothing, text).top() > value);   // the text stands below that
    }

    void InTheMiddleRowPressesTakeTurnsBetweenSlotAndText() {
        Editor editor;
        editor.GiveText(Words());
        QTest::keyClick(&editor, Qt::Key_PageUp);
        QCOMPARE(editor.Edited().textRow, 1);
        const QPoint at = DrawnText(editor);
        QVERIFY(SlotPressRect(kCentreSlot, kLying, editor.size()).contains(at));
        const QPoint outside(217, 20);
        SlotRow row = editor.Row();
        for (int turn = 0; turn < 2; ++turn) {
            editor.Drag(at, SlotPoint(0));
            std::swap(row[kCentreSlot], row[0]);
            QCOMPARE(editor.Row(), row);
            QCOMPARE(editor.Edited().textRow, 1);
            // Were it the slot's turn again, the slots would change; the text goes where it is dropped.
            editor.Drag(at, turn == 0 ? outside : RowPoint(2));
            QCOMPARE(editor.Row(), row);
        }
        QCOMPARE(editor.Edited().textRow, 2);
    }

    void InOtherRowsThePressesTakeNoTurns() {
        Editor editor;
        editor.GiveText(Words());
        for (int k = 0; k < 3; ++k) {
            const SlotRow before = editor.Row();
            editor.Drag(SlotPoint(kCentreSlot), SlotPoint(0));
            QVERIFY(editor.Row() != before);
        }
    }
};

KIVO_TEST(TestZoomWidgetTextDrag)
#include "tst_zoom_widget_text_drag.moc"
