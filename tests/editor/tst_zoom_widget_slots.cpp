#include "editor_test_support.h"
#include "free_text_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const SlotRow kFactoryRow = FactorySlotTable()[0];

SlotRow Swapped(SlotRow row, int a, int b) {
    std::swap(row[size_t(a)], row[size_t(b)]);
    return row;
}

}  // namespace

class TestZoomWidgetSlots : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void WhileASlotIsDraggedTheCursorTellsSo() {
        Editor editor;
        editor.Press(SlotPoint(0));
        QVERIFY(editor.cursor().shape() != Qt::ArrowCursor);
        editor.Release(SlotPoint(1));
        QCOMPARE(editor.cursor().shape(), Qt::ArrowCursor);
    }

    // The window opens it, and the drag goes on.
    void ADragBeforeEditingAsksForIt() {
        Editor editor;
        editor.SetEditing(false);
        QSignalSpy wanted(&editor, &ZoomWidget::editingWanted);
        editor.Press(SlotPoint(0));
        editor.Release(SlotPoint(0));
        QCOMPARE(wanted.size(), 0);  // a click
        editor.Drag(SlotPoint(0), SlotPoint(4));
        QCOMPARE(wanted.size(), 1);
        QCOMPARE(editor.Row(), kFactoryRow);  // nobody opened it
        connect(&editor, &ZoomWidget::editingWanted, &editor, [&editor] { editor.SetEditing(true); });
        editor.Drag(SlotPoint(0), SlotPoint(4));
        QCOMPARE(wanted.size(), 2);
        QVERIFY(editor.IsEditing());
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, 0, 4));
        QCOMPARE(editor.cursor().shape(), Qt::ArrowCursor);
    }

    void ADropIsTold() {
        Editor editor;
        QSignalSpy changed(&editor, &ZoomWidget::layoutChanged);
        QSignalSpy remote(&editor, &ZoomWidget::HideRemote);
        editor.Drag(SlotPoint(0), SlotPoint(4));
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, 0, 4));
        QCOMPARE(changed.size(), 1);
        QCOMPARE(remote.size(), 1);
        QCOMPARE(remote[0][0].toInt(), 0);
        editor.Drag(SlotPoint(0), QPoint(217, 20));
        QCOMPARE(changed.size(), 1);
    }

    void PressingOnAnEmptySlotLeavesTheCursor() {
        Editor editor(CustomThemes(), EmptySlotTable());
        editor.Press(SlotPoint(0));
        QCOMPARE(editor.cursor().shape(), Qt::ArrowCursor);
    }

    // Where it was it stands fainter, and under the mouse there is more than before.
    void ADraggedItemGoesWithTheMouse_data() {
        QTest::addColumn<Orientation>("orientation");
        for (const Orientation orientation : kOrientations) {
            QTest::newRow(NameOf(orientation)) << orientation;
        }
    }
    void ADraggedItemGoesWithTheMouse() {
        QFETCH(Orientation, orientation);
        SlotTable table = EmptySlotTable();
        table[0][0] = CpuTemperature;
        Editor editor(CustomThemes(orientation), table);
        const QPoint from = SlotPoint(0, orientation);
        const QPoint to = SlotPoint(1, orientation);
        editor.Press(from);
        const QImage held = editor.grab().toImage();
        editor.MoveTo(to);
        const QImage dragged = editor.grab().toImage();
        const QRect text = MappingFor(orientation, editor.size()).Mapped(SlotRect(0, orientation));
        const auto brightest = [](const QImage& image, const QRect& rect) {
            int most = 0;
            for (int y = rect.top(); y <= rect.bottom(); ++y) {
                for (int x = rect.left(); x <= rect.right(); ++x) {
                    most = qMax(most, qGray(image.pixel(x, y)));
                }
            }
            return most;
        };
        QVERIFY(brightest(dragged, text) < brightest(held, text));
        QVERIFY(brightest(dragged, text.translated(to - from)) > brightest(held, text.translated(to - from)));
        editor.Release(from);
        QVERIFY(DifferentRect(held, editor.grab().toImage(), 60).isNull());
    }

    void NothingIsDraggedWithAnotherButton() {
        Editor editor;
        editor.Press(SlotPoint(0), Qt::RightButton);
        QTest::mouseRelease(&editor, Qt::RightButton, Qt::NoModifier, SlotPoint(4));
        QCOMPARE(editor.Row(), kFactoryRow);
    }

    // A press that means nothing here may move the window; one that does must not.
    void APressThatDragsIsNotForTheWindow() {
        QWidget window;
        window.resize(500, 400);
        auto* editor = new ZoomWidget(&window);
        editor->resize(EditorSize(kLying));
        SaveSlotTable(FactorySlotTable());
        editor->LoadCustomShow();
        editor->ShowTheme(CustomThemes(), true);
        window.show();
        const auto isTaken = [&](QPoint at) {
            QMouseEvent press(QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            press.setAccepted(false);
            // The event is made accepted before it is delivered; who does not want it ignores it.
            press.accept();
            QCoreApplication::sendEvent(editor, &press);
            return press.isAccepted();
        };
        const QPoint besideTheScreen(217, 20);
        QVERIFY(!isTaken(besideTheScreen));
        QVERIFY(isTaken(SlotPoint(0)));
        editor->SetEditing(true);
        QVERIFY(isTaken(besideTheScreen));
        QVERIFY(isTaken(SlotPoint(0)));
    }

    void ADragThatIsInterruptedChangesNothing_data() {
        QTest::addColumn<int>("how");
        QTest::newRow("another page") << 0;
        QTest::newRow("another orientation") << 1;
        QTest::newRow("editing closed") << 2;
        QTest::newRow("Escape") << 3;
        QTest::newRow("trim mode") << 4;
    }
    void ADragThatIsInterruptedChangesNothing() {
        QFETCH(int, how);
        Editor editor;
        editor.Press(SlotPoint(0));
        switch (how) {
            case 0:
                editor.ShowTheme(editor.Edited().themes, false);
                break;
            case 1:
                editor.SetOrientation(1);
                break;
            case 2:
                editor.SetEditing(false);
                break;
            case 3:
                QTest::keyClick(&editor, Qt::Key_Escape);
                break;
            default:
                editor.SetTrimMode(1);
        }
        editor.Release(SlotPoint(4));
        QCOMPARE(editor.Row(), kFactoryRow);
    }

    void ASlotUnderTheMouseIsMarked() {
        Editor editor;
        QTest::mouseMove(&editor, QPoint(217, 20));
        QTest::qWait(1);
        const QImage before = editor.grab().toImage();
        QTest::mouseMove(&editor, SlotPoint(0));
        QTRY_VERIFY(!DifferentRect(before, editor.grab().toImage()).isNull());
        // The mark is the outline of the slot's chip and nothing else changes.
        const QRect changed = DifferentRect(before, editor.grab().toImage());
        const QRect chip = MappingFor(kLying, editor.size()).Mapped(SlotChipRect(0, kLying, true));
        QVERIFY(changed.contains(chip));
        QVERIFY2(chip.adjusted(-5, -5, 5, 5).contains(changed), Describe(changed).constData());
    }

    void TheEditorTakesTheKeyboardOnlyWhileItEdits() {
        Editor editor;
        QCOMPARE(editor.focusPolicy(), Qt::StrongFocus);
        editor.SetEditing(false);
        QCOMPARE(editor.focusPolicy(), Qt::NoFocus);
    }

    void ItIsNamedForThoseWhoDoNotSeeIt() {
        Editor editor;
        QVERIFY(!editor.accessibleName().isEmpty());
        const QString whileEditing = editor.toolTip();
        QVERIFY(!whileEditing.isEmpty());
        editor.SetTrimMode(1);
        QVERIFY(!editor.toolTip().isEmpty());
        QVERIFY(editor.toolTip() != whileEditing);
        editor.SetTrimMode(0);
        QCOMPARE(editor.toolTip(), whileEditing);
        // Of one item there is nothing to exchange.
        ThemeState themes = editor.Edited().themes;
        themes.customStyle = 1;
        editor.ShowTheme(themes, false);
        QVERIFY(!editor.toolTip().isEmpty());
        QVERIFY(editor.toolTip() != whileEditing);
        QCOMPARE(editor.accessibleDescription(), editor.toolTip());
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

    void HoverShowsWhoseTurnItIs() {
        Editor editor;
        editor.GiveText(Words());
        editor.MoveTextUpTo(1);
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
};

KIVO_TEST(TestZoomWidgetSlots)
#include "tst_zoom_widget_slots.moc"
