#include <QTest>

#include "editor/custom_layout_rules.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr int E = kEmptySlot;
constexpr SlotRow kEmptyRow{{E, E, E, E, E}};

struct Layout {
    SlotRow row = kEmptyRow;
    ItemFlags ticked{};

    void Tick(int kind) { SetFiveSlotItem(kind, true, row, ticked); }
    void Untick(int kind) { SetFiveSlotItem(kind, false, row, ticked); }
};

ItemFlags Flags(std::initializer_list<int> kinds) {
    ItemFlags flags{};
    for (const int kind : kinds) {
        flags[size_t(kind)] = true;
    }
    return flags;
}

}  // namespace

class TestCustomLayoutRules : public QObject {
    Q_OBJECT

private slots:
    void TickingFillsTheFirstEmptySlot() {
        Layout layout;
        layout.row = {{E, CpuUsage, E, E, E}};
        layout.Tick(FanSpeed);
        QCOMPARE(layout.row, (SlotRow{{FanSpeed, CpuUsage, E, E, E}}));
        layout.Tick(CpuPower);
        QCOMPARE(layout.row, (SlotRow{{FanSpeed, CpuUsage, CpuPower, E, E}}));
        QVERIFY(layout.ticked[FanSpeed] && layout.ticked[CpuPower]);
    }

    void UntickingEmptiesEverySlotOfTheKind() {
        Layout layout;
        layout.row = {{FanSpeed, CpuUsage, FanSpeed, E, E}};
        layout.ticked = Flags({FanSpeed, CpuUsage});
        layout.Untick(FanSpeed);
        QCOMPARE(layout.row, (SlotRow{{E, CpuUsage, E, E, E}}));
        QVERIFY(!layout.ticked[FanSpeed]);
        QVERIFY(layout.ticked[CpuUsage]);
    }

    void DateThenTimeFillOneSlot() {
        Layout layout;
        layout.Tick(Date);
        QCOMPARE(layout.row, (SlotRow{{Date, E, E, E, E}}));
        layout.Tick(Time);
        QCOMPARE(layout.row, (SlotRow{{Time, E, E, E, E}}));
        QVERIFY(layout.ticked[Date] && layout.ticked[Time]);
    }

    void UntickingTimeTurnsTheSharedSlotBackIntoDate() {
        Layout layout;
        layout.Tick(Date);
        layout.Tick(Time);
        layout.Untick(Time);
        QCOMPARE(layout.row, (SlotRow{{Date, E, E, E, E}}));
        QVERIFY(layout.ticked[Date] && !layout.ticked[Time]);
        layout.Untick(Date);
        QCOMPARE(layout.row, kEmptyRow);
    }

    void UntickingDateLeavesTheTimeInTheSharedSlot() {
        Layout layout;
        layout.Tick(Date);
        layout.Tick(Time);
        layout.Untick(Date);
        QCOMPARE(layout.row, (SlotRow{{Time, E, E, E, E}}));
        QVERIFY(!layout.ticked[Date] && layout.ticked[Time]);
        layout.Untick(Time);
        QCOMPARE(layout.row, kEmptyRow);
    }

    void DateJoinsTheTimesSlot() {
        Layout layout;
        layout.Tick(Time);
        layout.Tick(Date);
        QCOMPARE(layout.row, (SlotRow{{Time, E, E, E, E}}));
        QVERIFY(layout.ticked[Date]);
    }

    // With both in a slot of their own, as a damaged table may have them.
    void UntickingDateTurnsItsOwnSlotIntoTime() {
        Layout layout;
        layout.row = {{CpuUsage, Date, E, E, E}};
        layout.ticked = Flags({CpuUsage, Date, Time});
        layout.Untick(Date);
        QCOMPARE(layout.row, (SlotRow{{CpuUsage, Time, E, E, E}}));
        QVERIFY(!layout.ticked[Date]);
    }

    void TheSixthKindIsNotPlacedAndGetsNoSlotLater() {
        Layout layout;
        for (const int kind : {CpuTemperature, CpuUsage, MemoryUsage, Time, CpuPower, FanSpeed}) {
            layout.Tick(kind);
        }
        const SlotRow full{{CpuTemperature, CpuUsage, MemoryUsage, Time, CpuPower}};
        QCOMPARE(layout.row, full);
        QVERIFY(layout.ticked[FanSpeed]);
        layout.Untick(CpuUsage);
        QCOMPARE(layout.row, (SlotRow{{CpuTemperature, E, MemoryUsage, Time, CpuPower}}));
        QVERIFY(layout.ticked[FanSpeed]);
    }

    void ADateOrTimeWithoutASlotOnlyGetsItsFlag_data() {
        QTest::addColumn<int>("kind");
        QTest::newRow("date") << int(Date);
        QTest::newRow("time") << int(Time);
    }
    void ADateOrTimeWithoutASlotOnlyGetsItsFlag() {
        QFETCH(int, kind);
        Layout layout;
        layout.row = {{CpuTemperature, CpuUsage, MemoryUsage, FanSpeed, CpuPower}};
        const SlotRow full = layout.row;
        layout.Tick(kind);
        QCOMPARE(layout.row, full);
        QVERIFY(layout.ticked[size_t(kind)]);
    }

    void FreeTextNeedsNoSlot() {
        Layout layout;
        layout.Tick(OtherText);
        QCOMPARE(layout.row, kEmptyRow);
        QVERIFY(layout.ticked[OtherText]);
    }

    void AKindThatDoesNotExistChangesNothing() {
        Layout layout;
        layout.row = {{kLiveValueCount, -7, E, E, E}};
        const SlotRow odd = layout.row;
        for (const int kind : {-1, -7, kLiveValueCount}) {
            layout.Tick(kind);
            layout.Untick(kind);
            SetSingleItem(kind, true, layout.row, layout.ticked);
            QCOMPARE(layout.row, odd);
            QCOMPARE(layout.ticked, ItemFlags{});
        }
    }

    void ASecondSingleItemTakesThePlaceOfTheFirst() {
        SlotRow row{{Time, CpuUsage, E, Date, FanSpeed}};
        ItemFlags chosen{};
        SetSingleItem(CpuTemperature, true, row, chosen);
        // Slots 0 and 3 are cleared, 1 and 4 are not.
        QCOMPARE(row, (SlotRow{{E, CpuUsage, CpuTemperature, E, FanSpeed}}));
        SetSingleItem(Date, true, row, chosen);
        QCOMPARE(row, (SlotRow{{E, CpuUsage, Date, E, FanSpeed}}));
        QCOMPARE(chosen, Flags({Date}));
    }

    void UnchoosingEmptiesTheCentreSlotOnly() {
        SlotRow row{{Time, CpuUsage, Date, Date, FanSpeed}};
        ItemFlags chosen = Flags({Date});
        SetSingleItem(Date, false, row, chosen);
        QCOMPARE(row, (SlotRow{{Time, CpuUsage, E, Date, FanSpeed}}));
        QCOMPARE(chosen, Flags({Date}));
    }

    void TheLimit_data() {
        QTest::addColumn<QVector<int>>("ticked");
        QTest::addColumn<int>("kind");
        QTest::addColumn<bool>("allowed");
        const QVector<int> five{CpuTemperature, CpuUsage, MemoryUsage, CpuPower, FanSpeed};
        QTest::newRow("the first") << QVector<int>{} << int(Time) << true;
        QTest::newRow("the sixth") << five << int(Time) << true;
        QTest::newRow("the seventh") << five + QVector<int>{OtherText} << int(Time) << false;
        QTest::newRow("the sixth beside a free text")
            << QVector<int>{CpuTemperature, CpuUsage, MemoryUsage, CpuPower, OtherText} << int(FanSpeed)
            << true;
        QTest::newRow("time and date count as one")
            << QVector<int>{Time, Date, CpuTemperature, CpuUsage, MemoryUsage, CpuPower} << int(FanSpeed)
            << true;
        QTest::newRow("time joins date") << five + QVector<int>{Date} << int(Time) << true;
        QTest::newRow("date joins time") << five + QVector<int>{Time} << int(Date) << true;
        QTest::newRow("the seventh beside time and date")
            << QVector<int>{Time, Date, CpuTemperature, CpuUsage, MemoryUsage, CpuPower, FanSpeed}
            << int(OtherText) << false;
    }
    void TheLimit() {
        QFETCH(QVector<int>, ticked);
        QFETCH(int, kind);
        QFETCH(bool, allowed);
        ItemFlags flags{};
        for (const int each : qAsConst(ticked)) {
            flags[size_t(each)] = true;
        }
        QCOMPARE(MayTick(kind, flags), allowed);
    }

    void SwappingMovesAnEmptyEntryToo() {
        SlotRow row{{CpuPower, 1, 2, 3, E}};
        SwapSlots(row, 0, 4);
        QCOMPARE(row, (SlotRow{{E, 1, 2, 3, CpuPower}}));
    }
};

KIVO_APPLESS_TEST(TestCustomLayoutRules)
#include "tst_custom_layout_rules.moc"
