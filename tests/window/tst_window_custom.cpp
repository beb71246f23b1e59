#include <tuple>

#include "support/custom_page_test_support.h"
#include "support/test_program.h"

Q_DECLARE_METATYPE(kivo::SlotRow)

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kNone = kEmptySlot;

}  // namespace

// The page of the custom layouts: what is ticked and dragged, and what the panel and the settings make of it.
class TestWindowCustom : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void EmptyTableShowsNothing_data();
    void EmptyTableShowsNothing();
    void TicksFillTheSlots_data();
    void TicksFillTheSlots();
    void SeventhUnchecksItself();
    void OneItemBoxesAreRadioButtons();
    void DraggingExchangesSlots_data();
    void DraggingExchangesSlots();
    void DraggingNeedsFiveItems();
    void CentreTakesTurnsWithTheText();
    void ApplyBringsItToThePanel_data();
    void ApplyBringsItToThePanel();
    void EditsStayAwayFromThePanel();
    void CancelPutsEverythingBack();
    void ThemesAppliedMeanwhileLeaveTheLayoutAlone();
    void BoxesFollowUndoCancelAndPage();
    void TenKeysAreStored();
};

void TestWindowCustom::initTestCase() {
    PrepareApplication();
}

void TestWindowCustom::EmptyTableShowsNothing_data() {
    QTest::addColumn<int>("variant");
    QTest::newRow("five items") << 0;
    QTest::newRow("one item") << 1;
}

void TestWindowCustom::EmptyTableShowsNothing() {
    QFETCH(int, variant);
    SetUpEmptyLayouts(0, variant);
    CustomDesk desk;
    QCOMPARE(desk.Slots(), kNoItems);
    QCOMPARE(desk.Boxes(), QVector<int>());
    desk.Tap("btnApply");
    const ScreenState state = desk.Editor()->Shown();
    SkinCache skins;
    const QImage bare = ComposeBackground(state, LoadPicture(PicturePath(state)), skins).image;
    QCOMPARE(PixelsThatDiffer(desk.panel.State().UprightImage(), bare), 0);
}

void TestWindowCustom::TicksFillTheSlots_data() {
    QTest::addColumn<QVector<int>>("clicks");
    QTest::addColumn<SlotRow>("slotItems");
    QTest::addColumn<QVector<int>>("ticked");
    const auto row = [](const char* name, const QVector<int>& clicks, const SlotRow& slotItems,
                        const QVector<int>& ticked) { QTest::newRow(name) << clicks << slotItems << ticked; };
    row("first empty slot", {3}, {MemoryUsage, kNone, kNone, kNone, kNone}, {3});
    row("a gap first", {1, 2, 1, 3}, {MemoryUsage, CpuUsage, kNone, kNone, kNone}, {2, 3});
    row("date", {6}, {Date, kNone, kNone, kNone, kNone}, {6});
    row("date then time", {6, 4}, {Time, kNone, kNone, kNone, kNone}, {4, 6});
    row("date then time, time off", {6, 4, 4}, {Date, kNone, kNone, kNone, kNone}, {6});
    row("date then time, date off", {6, 4, 6}, {Time, kNone, kNone, kNone, kNone}, {4});
    row("time then date", {1, 4, 6}, {CpuTemperature, Time, kNone, kNone, kNone}, {1, 4, 6});
    row("both off again", {4, 6, 4, 6}, kNoItems, {});
    row("sixth is ticked but has no slot", {1, 2, 3, 4, 5, 7},
        {CpuTemperature, CpuUsage, MemoryUsage, Time, CpuPower}, {1, 2, 3, 4, 5, 7});
    row("sixth gets no slot later", {1, 2, 3, 4, 5, 7, 1}, {kNone, CpuUsage, MemoryUsage, Time, CpuPower},
        {2, 3, 4, 5, 7});
    row("sixth is placed when ticked again", {1, 2, 3, 4, 5, 7, 1, 7, 7},
        {FanSpeed, CpuUsage, MemoryUsage, Time, CpuPower}, {2, 3, 4, 5, 7});
    row("date and time count as one", {1, 2, 3, 4, 5, 6, 7},
        {CpuTemperature, CpuUsage, MemoryUsage, Time, CpuPower}, {1, 2, 3, 4, 5, 6, 7});
    row("date beside full slots", {1, 2, 3, 5, 7, 6},
        {CpuTemperature, CpuUsage, MemoryUsage, CpuPower, FanSpeed}, {1, 2, 3, 5, 6, 7});
}

void TestWindowCustom::TicksFillTheSlots() {
    QFETCH(QVector<int>, clicks);
    QFETCH(SlotRow, slotItems);
    QFETCH(QVector<int>, ticked);
    SetUpEmptyLayouts();
    const CustomDesk desk;
    for (int number : qAsConst(clicks)) {
        desk.Tick(number);
    }
    QCOMPARE(desk.Slots(), slotItems);
    QCOMPARE(desk.Boxes(), ticked);
    const ScreenState state = desk.Editor()->Shown();
    for (int kind = 0; kind < kLiveValueCount; ++kind) {
        QCOMPARE(IsShown(state, kind), ticked.contains(kind + 1));
    }
}

void TestWindowCustom::SeventhUnchecksItself() {
    SetUpEmptyLayouts();
    const CustomDesk desk;
    desk.WriteText(QStringLiteral("six"));  // counts, but takes no slot
    for (int number : {1, 2, 3, 5, 7}) {
        desk.Tick(number);
    }
    const SlotRow full{{CpuTemperature, CpuUsage, MemoryUsage, CpuPower, FanSpeed}};
    QCOMPARE(desk.Slots(), full);
    for (int refused : {4, 6}) {
        desk.Tick(refused);
        QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 3, 5, 7, 8}));
        QCOMPARE(desk.Slots(), full);
        QVERIFY(!IsShown(desk.Editor()->Shown(), refused - 1));
    }
    // With the text gone there is room for a sixth.
    desk.WriteText(QString());
    desk.Tick(4);
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 3, 4, 5, 7}));
}

void TestWindowCustom::OneItemBoxesAreRadioButtons() {
    SetUpEmptyLayouts(0, 1);
    CustomDesk desk;
    desk.Tick(2);
    QCOMPARE(desk.Slots()[kCentreSlot], int(CpuUsage));
    desk.Tick(6);
    QCOMPARE(desk.Boxes(), QVector<int>{6});
    QCOMPARE(desk.Slots(), (SlotRow{{kNone, kNone, Date, kNone, kNone}}));
    desk.ApplyAndCompare();
    QCOMPARE(StoredSlots()[QStringLiteral("CustomShow/1-2")], QStringLiteral("5"));
    desk.Tick(6);
    QCOMPARE(desk.Boxes(), QVector<int>());
    QCOMPARE(desk.Slots(), kNoItems);
    desk.ApplyAndCompare();
    QCOMPARE(StoredSlots()[QStringLiteral("CustomShow/1-2")], QStringLiteral("-1"));
}

void TestWindowCustom::DraggingExchangesSlots_data() {
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    for (int orientation : {0, 1}) {
        const char* name = orientation == 0 ? "lying" : "standing";
        QTest::addRow("%s 0 to 4", name) << orientation << 0 << 4;
        QTest::addRow("%s 2 to the empty one", name) << orientation << 2 << 3;
        QTest::addRow("%s the empty one to 1", name) << orientation << 3 << 1;
        QTest::addRow("%s to nowhere", name) << orientation << 0 << -1;
    }
}

void TestWindowCustom::DraggingExchangesSlots() {
    QFETCH(int, orientation);
    QFETCH(int, from);
    QFETCH(int, to);
    SetUpFactoryLayouts(orientation);
    const CustomDesk desk;
    desk.Tick(3);  // slot 3 becomes an empty one
    desk.Tap("btnEdit");
    SlotRow expected{{CpuTemperature, CpuUsage, Time, kNone, CpuPower}};
    QCOMPARE(desk.Slots(), expected);
    const QPoint start = desk.SlotPlace(from);
    const QPoint end = to < 0 ? QPoint(desk.Editor()->width() - 3, 3) : desk.SlotPlace(to);
    desk.Press(desk.Editor(), start);
    const bool grabbed = from != 3;
    QCOMPARE(desk.Editor()->cursor().shape() != Qt::ArrowCursor, grabbed);
    desk.Move(desk.Editor(), end);
    desk.Release(desk.Editor(), end);
    QCOMPARE(desk.Editor()->cursor().shape(), Qt::ArrowCursor);
    if (grabbed && to >= 0) {
        std::swap(expected[size_t(from)], expected[size_t(to)]);
    }
    QCOMPARE(desk.Slots(), expected);
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 4, 5}));
}

void TestWindowCustom::DraggingNeedsFiveItems() {
    SetUpFactoryLayouts(0, 1);
    const CustomDesk desk;
    desk.Tap("btnEdit");
    const SlotTable before = desk.Editor()->Edited().slotTable;
    desk.Drag(desk.SlotPlace(2), desk.SlotPlace(4));
    QCOMPARE(desk.Editor()->Edited().slotTable, before);
}

void TestWindowCustom::CentreTakesTurnsWithTheText() {
    SetUpFactoryLayouts();
    const CustomDesk desk;
    desk.WriteText(QStringLiteral("text"));
    desk.Drag(desk.RowPlace(2), desk.RowPlace(1));
    QCOMPARE(desk.Editor()->Edited().textRow, 1);
    const SlotRow before = desk.Slots();
    // Where the text reaches into the zone of the slot.
    const QPoint both(desk.TextPlace().x(),
                      SlotPressRect(kCentreSlot, desk.Lying(), desk.Editor()->size()).bottom() - 1);
    for (int round = 0; round < 2; ++round) {
        const int centre = desk.Slots()[kCentreSlot];
        desk.Drag(both, desk.SlotPlace(0));  // the slot's turn
        QCOMPARE(desk.Slots()[0], centre);
        QCOMPARE(desk.Editor()->Edited().textRow, 1);
        desk.Drag(both, desk.RowPlace(0));  // the text's
        QCOMPARE(desk.Slots()[0], centre);
        QCOMPARE(desk.Editor()->Edited().textRow, 0);
        desk.Drag(desk.RowPlace(0), desk.RowPlace(1));
        QCOMPARE(desk.Editor()->Edited().textRow, 1);
    }
    QCOMPARE(desk.Slots(), before);
}

void TestWindowCustom::ApplyBringsItToThePanel_data() {
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("variant");
    QTest::newRow("lying, five items") << 0 << 0;
    QTest::newRow("lying, one item") << 0 << 1;
    QTest::newRow("standing, five items") << 1 << 0;
    QTest::newRow("standing, one item") << 1 << 1;
}

void TestWindowCustom::ApplyBringsItToThePanel() {
    QFETCH(int, orientation);
    QFETCH(int, variant);
    SetUpFactoryLayouts(orientation, variant);
    ScreenState before;
    {
        CustomDesk desk;
        EditEverything(desk);
        CheckEverything(desk, variant);
        desk.ApplyAndCompare();
        CheckEverything(desk, variant);
        // And it stays so.
        desk.WaitForLiveValues();
        QTRY_VERIFY_WITH_TIMEOUT(desk.PanelShows(desk.Session().Applied()), 20000);
        QCOMPARE(desk.panel.State().orientation.value_or(0), orientation + 1);
        QCOMPARE(desk.panel.State().counts.errors, quint64(0));
        before = desk.Editor()->Shown();
    }
    // The next start shows the same.
    CustomDesk desk;
    QVERIFY(desk.Editor()->Shown() == before);
    QVERIFY(desk.Session().Applied() == before);
    CheckEverything(desk, variant);
    QCOMPARE(desk.Tools()->IndicatorColor(), 3);
    QCOMPARE(desk.SizeBox()->currentIndex(), 1);
    desk.ApplyAndCompare();
    QVERIFY(desk.Editor()->Shown() == before);
}

void TestWindowCustom::EditsStayAwayFromThePanel() {
    SetUpFactoryLayouts();
    CustomDesk desk;
    desk.ApplyAndCompare();
    const ScreenState applied = desk.Session().Applied();
    const quint64 frames = desk.panel.State().counts.frames;
    EditEverything(desk);
    desk.Tap("btnPortrait");
    QVERIFY(desk.Editor()->Shown() != applied);
    QVERIFY(desk.Session().Applied() == applied);
    // Text entry open, a drag under way: live values go on over what was applied.
    desk.Tap("colorLabel");
    desk.Type(QStringLiteral("not yet"));
    desk.WaitForLiveValues();
    QTRY_VERIFY_WITH_TIMEOUT(desk.PanelShows(applied), 20000);
    desk.Press(desk.Editor(), desk.SlotPlace(1));
    desk.WaitForLiveValues();
    QTRY_VERIFY_WITH_TIMEOUT(desk.PanelShows(applied), 20000);
    desk.Release(desk.Editor(), desk.SlotPlace(2));
    // A screen that comes back gets what was applied, too.
    desk.panel.Unplug();
    desk.panel.Plug();
    desk.Session().OpenScreen();
    desk.Session().NoteArrival();
    desk.WaitForLiveValues();
    QTRY_VERIFY_WITH_TIMEOUT(desk.PanelShows(applied), 20000);
    QCOMPARE(desk.panel.State().counts.frames, frames);
    QCOMPARE(LoadEditState(applied.language).themes.orientation, Orientation::Landscape);
    QCOMPARE(LoadSlotTable(), FactorySlotTable());
}

void TestWindowCustom::CancelPutsEverythingBack() {
    SetUpFactoryLayouts();
    CustomDesk desk;
    const EditState before = desk.Editor()->Edited();
    const QByteArray settings = StoredSlots().value(QStringLiteral("CustomShow/0-0")).toUtf8();
    EditEverything(desk);
    desk.Tap("colorLabel");
    desk.Type(QStringLiteral("half"));
    QVERIFY(desk.Find("btnEdit_cancel")->isVisible());
    desk.Tap("btnEdit_cancel");
    // All but the picture, which is chosen beside the tools; a trim goes with its picture.
    EditState kept = before;
    LayoutRecord& layout = LayoutInForce(kept);
    const LayoutRecord& now = LayoutInForce(desk.Editor()->Edited());
    QVERIFY(now.picture != layout.picture);
    layout.picture = now.picture;
    std::tie(layout.xPt, layout.yPt, layout.xZoom, layout.yZoom) =
        std::tie(now.xPt, now.yPt, now.xZoom, now.yZoom);
    QVERIFY(desk.Editor()->Edited() == kept);
    QVERIFY(!desk.Editor()->IsEditing());
    QVERIFY(!desk.Editor()->IsTextEntryOpen());
    QVERIFY(!desk.Tools()->isVisible());
    QVERIFY(!desk.Colors()->isVisible());
    QVERIFY(desk.Find("btnEdit")->isVisible());
    QVERIFY(!desk.Find("btnEdit_cancel")->isVisible());
    // A Return too many must not apply.
    QCOMPARE(QApplication::focusWidget(), desk.Find("btnEdit"));
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 2, 3, 4, 5}));
    QCOMPARE(desk.Tools()->IndicatorColor(), before.themes.layouts[8].colorIndex);
    QCOMPARE(StoredSlots().value(QStringLiteral("CustomShow/0-0")).toUtf8(), settings);
    // Cancelled is gone: there is no way back to it.
    desk.Tap("btnEdit");
    desk.Tap("backButton");
    QVERIFY(desk.Editor()->Edited() == kept);
    desk.ApplyAndCompare();
}

void TestWindowCustom::ThemesAppliedMeanwhileLeaveTheLayoutAlone() {
    SetUpFactoryLayouts();
    CustomDesk desk;
    EditEverything(desk);
    const EditState edited = desk.Editor()->Edited();
    desk.Tap("btnTheme");
    desk.Tap("btnApply");
    QTRY_VERIFY_WITH_TIMEOUT(desk.PanelShows(desk.Session().Applied()), 20000);
    QVERIFY(!desk.Session().Applied().custom);
    QCOMPARE(LoadSlotTable(), FactorySlotTable());
    QCOMPARE(LoadThemeState(InterfaceLanguage::English).layouts[8].freeText, QString());
    // The work is still there.
    desk.Tap("btnImage");
    QVERIFY(desk.Editor()->Edited() == edited);
    desk.ApplyAndCompare();
    QCOMPARE(LoadSlotTable(), edited.slotTable);
}

void TestWindowCustom::BoxesFollowUndoCancelAndPage() {
    SetUpFactoryLayouts();
    const CustomDesk desk;
    const QVector<int> factory{1, 2, 3, 4, 5};
    QCOMPARE(desk.Boxes(), factory);
    desk.Tap("btnEdit");
    desk.Tick(1);
    desk.Tick(7);
    QCOMPARE(desk.Boxes(), (QVector<int>{2, 3, 4, 5, 7}));
    desk.Tap("backButton");
    QCOMPARE(desk.Boxes(), (QVector<int>{2, 3, 4, 5}));
    desk.Tap("backButton");
    QCOMPARE(desk.Boxes(), factory);
    desk.Tap("backButton");
    QCOMPARE(desk.Boxes(), factory);
    desk.Tick(2);
    desk.Tap("choiceSecond");
    QCOMPARE(desk.Boxes(), QVector<int>{1});
    desk.Tap("choiceFirst");
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 3, 4, 5}));
    desk.Tap("btnTheme");
    desk.Tap("btnImage");
    QCOMPARE(desk.Boxes(), (QVector<int>{1, 3, 4, 5}));
    desk.Tap("btnEdit");
    desk.Tap("btnEdit_cancel");
    QCOMPARE(desk.Boxes(), factory);
}

void TestWindowCustom::TenKeysAreStored() {
    SetUpEmptyLayouts();
    const CustomDesk desk;
    desk.Tick(6);
    desk.Tap("btnApply");
    QFile file(ConfigFilePath());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QList<QByteArray> lines;
    bool inGroup = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith('[')) {
            inGroup = line == "[CustomShow]";
        } else if (inGroup && !line.isEmpty()) {
            lines.append(line);
        }
    }
    QCOMPARE(lines, (QList<QByteArray>{"0-0=5", "0-1=-1", "0-2=-1", "0-3=-1", "0-4=-1", "1-0=-1", "1-1=-1",
                                       "1-2=-1", "1-3=-1", "1-4=-1"}));
}

KIVO_TEST(TestWindowCustom)
#include "tst_window_custom.moc"
