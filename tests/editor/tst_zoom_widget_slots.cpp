#include "editor_test_support.h"
#include "support/test_program.h"

Q_DECLARE_METATYPE(kivo::ThemeState)

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int E = kEmptySlot;
constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
const SlotRow kFactoryRow = FactorySlotTable()[0];

SlotRow Swapped(SlotRow row, int a, int b) {
    std::swap(row[size_t(a)], row[size_t(b)]);
    return row;
}

SlotTable TableOf(const SlotRow& row) {
    SlotTable table = EmptySlotTable();
    table[0] = row;
    return table;
}

}  // namespace

class TestZoomWidgetSlots : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }
    void init() { ForgetSettings(); }

    void DroppingASlotOnAnotherExchangesThem_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        for (const Orientation orientation : kOrientations) {
            for (int from = 0; from < kSlotCount; ++from) {
                for (int to = 0; to < kSlotCount; ++to) {
                    const QByteArray name = QByteArray::number(from) + " on " + QByteArray::number(to) +
                                            ", " + NameOf(orientation);
                    QTest::newRow(name) << orientation << from << to;
                }
            }
        }
    }
    void DroppingASlotOnAnotherExchangesThem() {
        QFETCH(Orientation, orientation);
        QFETCH(int, from);
        QFETCH(int, to);
        Editor editor(CustomThemes(orientation));
        QSignalSpy changed(&editor, &ZoomWidget::layoutChanged);
        QSignalSpy remote(&editor, &ZoomWidget::HideRemote);
        editor.Drag(SlotPoint(from, orientation), SlotPoint(to, orientation));
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, from, to));
        QCOMPARE(changed.size(), from == to ? 0 : 1);
        QCOMPARE(remote.size(), 1);
        QCOMPARE(remote[0][0].toInt(), 0);
    }

    void DroppingOnAnEmptySlotMovesTheEmptyEntryToo() {
        Editor editor(CustomThemes(), TableOf({{CpuPower, E, E, E, E}}));
        editor.Drag(SlotPoint(0), SlotPoint(4));
        QCOMPARE(editor.Row(), (SlotRow{{E, E, E, E, CpuPower}}));
    }

    void PressingOnAnEmptySlotStartsNoDrag() {
        Editor editor(CustomThemes(), TableOf({{E, CpuUsage, E, E, E}}));
        editor.Press(SlotPoint(0));
        QCOMPARE(editor.cursor().shape(), Qt::ArrowCursor);
        editor.Release(SlotPoint(1));
        QCOMPARE(editor.Row(), (SlotRow{{E, CpuUsage, E, E, E}}));
    }

    // Who wants a longer way before a press becomes a drag reaches the next zone with less.
    void AClickIsNoDrop() {
        const int usual = QApplication::startDragDistance();
        QApplication::setStartDragDistance(40);
        Editor editor;
        const QPoint besideTheCentre(135, 130);
        editor.Drag(besideTheCentre, besideTheCentre + QPoint(20, 0));
        const SlotRow afterAClick = editor.Row();
        QApplication::setStartDragDistance(usual);
        editor.Drag(besideTheCentre, besideTheCentre + QPoint(20, 0));
        QCOMPARE(afterAClick, kFactoryRow);
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, 0, 2));
    }

    void AFreeTextHoldsNoSlotOnceLoaded() {
        SlotTable table = EmptySlotTable();
        table[0] = {{OtherText, CpuUsage, OtherText2, E, E}};
        Editor editor(CustomThemes(), table);
        QCOMPARE(editor.Row(), (SlotRow{{E, CpuUsage, E, E, E}}));
        QVERIFY(!editor.Layout().shown[OtherText]);
        QVERIFY(!editor.Layout().shown[OtherText2]);
    }

    void DroppingOutsideEverySlotChangesNothing() {
        Editor editor;
        editor.Drag(SlotPoint(0), QPoint(217, 20));
        QCOMPARE(editor.Row(), kFactoryRow);
        editor.Drag(SlotPoint(0), QPoint(-50, -50));
        QCOMPARE(editor.Row(), kFactoryRow);
    }

    // The zone that grabs begins 9 panel pixels left of the slot, the zone that takes 10.
    void TheTakingZoneIsWiderThanTheGrabbingOne() {
        const QPoint between(1, 90);  // slot 0: 2 to 136 grabs, 1 to 137 takes
        Editor editor;
        editor.Drag(between, SlotPoint(4));
        QCOMPARE(editor.Row(), kFactoryRow);
        editor.Drag(SlotPoint(4), between);
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, 0, 4));
    }

    void ACaptionBelongsToItsSlot() {
        Editor editor;
        const QPoint caption = SlotPoint(0) + QPoint(0, 45);
        editor.Drag(caption, SlotPoint(1));
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, 0, 1));
    }

    void WhileASlotIsDraggedTheCursorTellsSo() {
        Editor editor;
        editor.Press(SlotPoint(0));
        QVERIFY(editor.cursor().shape() != Qt::ArrowCursor);
        editor.Release(SlotPoint(1));
        QCOMPARE(editor.cursor().shape(), Qt::ArrowCursor);
    }

    void OnlyTheFirstCustomLayoutsSlotsAreDragged_data() {
        QTest::addColumn<ThemeState>("themes");
        QTest::newRow("custom layout 1") << CustomThemes(kLying, 1);
        ThemeState theme = CustomThemes();
        theme.mode = 0;
        QTest::newRow("theme") << theme;
    }
    void OnlyTheFirstCustomLayoutsSlotsAreDragged() {
        QFETCH(ThemeState, themes);
        Editor editor(themes);
        editor.Drag(SlotPoint(2), SlotPoint(0));
        editor.Drag(SlotPoint(0), SlotPoint(2));
        QCOMPARE(editor.Edited().slotTable, FactorySlotTable());
    }

    void NothingIsDraggedUnlessEditingIsOpen() {
        Editor editor;
        editor.SetEditing(false);
        editor.Drag(SlotPoint(0), SlotPoint(4));
        QCOMPARE(editor.Row(), kFactoryRow);
        editor.SetEditing(true);
        editor.Drag(SlotPoint(0), SlotPoint(4));
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, 0, 4));
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
        const auto isTaken = [&] {
            QMouseEvent press(QEvent::MouseButtonPress, SlotPoint(0), Qt::LeftButton, Qt::LeftButton,
                              Qt::NoModifier);
            press.setAccepted(false);
            // The event is made accepted before it is delivered; who does not want it ignores it.
            press.accept();
            QCoreApplication::sendEvent(editor, &press);
            return press.isAccepted();
        };
        QVERIFY(!isTaken());
        editor->SetEditing(true);
        QVERIFY(isTaken());
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
        // The mark is the slot's outline and nothing else changes.
        const QRect changed = DifferentRect(before, editor.grab().toImage());
        const QRect slot = MappingFor(kLying, editor.size()).Mapped(SlotRect(0, kLying));
        QVERIFY(changed.contains(slot));
        QVERIFY(slot.adjusted(-9, -9, 9, 32).contains(changed));
    }

    void SlotsAreExchangedByKeys() {
        Editor editor;
        editor.activateWindow();
        editor.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&editor, Qt::Key_Space);  // the centre slot
        QTest::keyClick(&editor, Qt::Key_Right);
        QTest::keyClick(&editor, Qt::Key_Space);
        QCOMPARE(editor.Row(), Swapped(kFactoryRow, 2, 4));
        QTest::keyClick(&editor, Qt::Key_Space);
        QTest::keyClick(&editor, Qt::Key_Escape);
        QTest::keyClick(&editor, Qt::Key_Down);
        QTest::keyClick(&editor, Qt::Key_Space);
        QTest::keyClick(&editor, Qt::Key_Left);
        QTest::keyClick(&editor, Qt::Key_Left);
        QTest::keyClick(&editor, Qt::Key_Down);
        QTest::keyClick(&editor, Qt::Key_Space);
        QCOMPARE(editor.Row(), Swapped(Swapped(kFactoryRow, 2, 4), 3, 1));
    }

    void KeysReachEverySlot() {
        for (int target = 0; target < kSlotCount; ++target) {
            Editor editor;
            const std::array<std::array<int, 2>, kSlotCount> ways{{{Qt::Key_Left, 0},
                                                                   {Qt::Key_Left, Qt::Key_Down},
                                                                   {0, 0},
                                                                   {Qt::Key_Right, Qt::Key_Down},
                                                                   {Qt::Key_Right, Qt::Key_Up}}};
            QTest::keyClick(&editor, Qt::Key_Space);
            for (const int key : ways[size_t(target)]) {
                if (key != 0) {
                    QTest::keyClick(&editor, Qt::Key(key));
                }
            }
            QTest::keyClick(&editor, Qt::Key_Space);
            QCOMPARE(editor.Row(), Swapped(kFactoryRow, 2, target));
        }
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
        themes.style = 1;
        editor.ShowTheme(themes, false);
        QVERIFY(!editor.toolTip().isEmpty());
        QVERIFY(editor.toolTip() != whileEditing);
        QCOMPARE(editor.accessibleDescription(), editor.toolTip());
    }
};

KIVO_TEST(TestZoomWidgetSlots)
#include "tst_zoom_widget_slots.moc"
