#include <QApplication>

#include "free_text_test_support.h"
#include "support/test_program.h"

Q_DECLARE_METATYPE(kivo::ThemeState)

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int E = kEmptySlot;
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

// Items dragged between slots.
class TestDragTool : public QObject {
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
        Hands hand(CustomThemes(orientation));
        hand.Drag(SlotPoint(from, orientation), SlotPoint(to, orientation));
        QCOMPARE(hand.Row(), Swapped(kFactoryRow, from, to));
        QCOMPARE(hand.editor.CanUndo(), from != to);
    }

    void DroppingOnAnEmptySlotMovesTheEmptyEntryToo() {
        Hands hand(CustomThemes(), TableOf({{CpuPower, E, E, E, E}}));
        hand.Drag(SlotPoint(0), SlotPoint(4));
        QCOMPARE(hand.Row(), (SlotRow{{E, E, E, E, CpuPower}}));
    }

    void PressingOnAnEmptySlotStartsNoDrag() {
        Hands hand(CustomThemes(), TableOf({{E, CpuUsage, E, E, E}}));
        QVERIFY(!hand.drag.Press(SlotPoint(0)));
        hand.drag.Release(SlotPoint(1));
        QCOMPARE(hand.Row(), (SlotRow{{E, CpuUsage, E, E, E}}));
    }

    // Who wants a longer way before a press becomes a drag reaches the next zone with less.
    void AClickIsNoDrop() {
        const int usual = QApplication::startDragDistance();
        QApplication::setStartDragDistance(40);
        Hands hand;
        const QPoint besideTheCentre(135, 130);
        hand.Drag(besideTheCentre, besideTheCentre + QPoint(20, 0));
        const SlotRow afterAClick = hand.Row();
        QApplication::setStartDragDistance(usual);
        hand.Drag(besideTheCentre, besideTheCentre + QPoint(20, 0));
        QCOMPARE(afterAClick, kFactoryRow);
        QCOMPARE(hand.Row(), Swapped(kFactoryRow, 0, 2));
    }

    void AFreeTextHoldsNoSlotOnceLoaded() {
        SlotTable table = EmptySlotTable();
        table[0] = {{OtherText, CpuUsage, OtherText2, E, E}};
        Hands hand(CustomThemes(), table);
        QCOMPARE(hand.Row(), (SlotRow{{E, CpuUsage, E, E, E}}));
        QVERIFY(!hand.Layout().shown[OtherText]);
        QVERIFY(!hand.Layout().shown[OtherText2]);
    }

    void DroppingOutsideEverySlotChangesNothing() {
        Hands hand;
        hand.Drag(SlotPoint(0), QPoint(217, 20));
        QCOMPARE(hand.Row(), kFactoryRow);
        hand.Drag(SlotPoint(0), QPoint(-50, -50));
        QCOMPARE(hand.Row(), kFactoryRow);
    }

    // The zone that grabs begins 9 panel pixels left of the slot, the zone that takes 10.
    void TheTakingZoneIsWiderThanTheGrabbingOne() {
        const QPoint between(1, 90);  // slot 0: 2 to 136 grabs, 1 to 137 takes
        Hands hand;
        hand.Drag(between, SlotPoint(4));
        QCOMPARE(hand.Row(), kFactoryRow);
        hand.Drag(SlotPoint(4), between);
        QCOMPARE(hand.Row(), Swapped(kFactoryRow, 0, 4));
    }

    void ACaptionBelongsToItsSlot() {
        Hands hand;
        const QPoint caption = SlotPoint(0) + QPoint(0, 45);
        hand.Drag(caption, SlotPoint(1));
        QCOMPARE(hand.Row(), Swapped(kFactoryRow, 0, 1));
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
        Hands hand(themes);
        hand.Drag(SlotPoint(2), SlotPoint(0));
        hand.Drag(SlotPoint(0), SlotPoint(2));
        QCOMPARE(hand.editor.Edited().slotTable, FactorySlotTable());
    }

    void SlotsAreExchangedByKeys() {
        Hands hand;
        hand.drag.Key(Qt::Key_Space);  // the centre slot
        hand.drag.Key(Qt::Key_Right);
        hand.drag.Key(Qt::Key_Space);
        QCOMPARE(hand.Row(), Swapped(kFactoryRow, 2, 4));
        hand.drag.Key(Qt::Key_Space);
        hand.drag.Key(Qt::Key_Escape);
        hand.drag.Key(Qt::Key_Down);
        hand.drag.Key(Qt::Key_Space);
        hand.drag.Key(Qt::Key_Left);
        hand.drag.Key(Qt::Key_Left);
        hand.drag.Key(Qt::Key_Down);
        hand.drag.Key(Qt::Key_Space);
        QCOMPARE(hand.Row(), Swapped(Swapped(kFactoryRow, 2, 4), 3, 1));
    }

    void KeysReachEverySlot() {
        for (int target = 0; target < kSlotCount; ++target) {
            Hands hand;
            const std::array<std::array<int, 2>, kSlotCount> ways{{{Qt::Key_Left, 0},
                                                                   {Qt::Key_Left, Qt::Key_Down},
                                                                   {0, 0},
                                                                   {Qt::Key_Right, Qt::Key_Down},
                                                                   {Qt::Key_Right, Qt::Key_Up}}};
            hand.drag.Key(Qt::Key_Space);
            for (const int key : ways[size_t(target)]) {
                if (key != 0) {
                    hand.drag.Key(Qt::Key(key));
                }
            }
            hand.drag.Key(Qt::Key_Space);
            QCOMPARE(hand.Row(), Swapped(kFactoryRow, 2, target));
        }
    }

    void AHeldItemGoesWithTheMouse() {
        Hands hand;
        QVERIFY(hand.drag.Press(SlotPoint(0)));
        QCOMPARE(hand.drag.HeldSlot(), 0);
        hand.drag.Move(SlotPoint(0) + QPoint(2, 1));
        QVERIFY(!hand.drag.IsDrag());
        QCOMPARE(hand.drag.Offset(), QPoint());
        hand.drag.Move(SlotPoint(0) + QPoint(60, 7));
        QVERIFY(hand.drag.IsDrag());
        QCOMPARE(hand.drag.Offset(), QPoint(60, 7));
        hand.drag.GiveUp();
        QVERIFY(!hand.drag.IsHolding());
        QCOMPARE(hand.Row(), kFactoryRow);
    }

    void WhatTakesTheItemIsMarked() {
        Hands hand;
        hand.drag.Press(SlotPoint(0));
        QCOMPARE(hand.drag.MarkedSlot(), 0);
        hand.drag.Move(SlotPoint(3));
        QCOMPARE(hand.drag.MarkedSlot(), 3);
        hand.drag.Move(QPoint(217, 20));
        QCOMPARE(hand.drag.MarkedSlot(), E);
        QVERIFY(!hand.drag.Release(QPoint(217, 20)));
    }

    void HoverMarksWhatAPressWouldTake() {
        Hands hand;
        QVERIFY(hand.drag.Hover(SlotPoint(4)));
        QVERIFY(!hand.drag.Hover(SlotPoint(4) + QPoint(1, 0)));
        QCOMPARE(hand.drag.MarkedSlot(), 4);
        QVERIFY(hand.drag.LeaveHover());
        QCOMPARE(hand.drag.MarkedSlot(), E);
    }

    void TheTimesSlotHoldsTheDateToo() {
        Hands hand;
        hand.editor.SetItem(Date, true);
        hand.Drag(SlotPoint(kCentreSlot), SlotPoint(0));
        QCOMPARE(SlotOf(hand.editor.Shown(), Date), 0);
    }
};

KIVO_TEST(TestDragTool)
#include "tst_drag_tool.moc"
