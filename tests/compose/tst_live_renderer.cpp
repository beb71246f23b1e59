#include <QTest>

#include "compose/frame_composer.h"
#include "compose/live_renderer.h"
#include "compose/rgb565.h"
#include "compose_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

const QString kOther = QStringLiteral("something else");

QVector<Cut> Update(const ScreenState& state, int item) {
    return RenderItem(state, {NoisyCanvas(state.orientation)}, LiveTexts(state.language)[1], item, false)
        .cuts;
}

QVector<QRect> Places(const QVector<Cut>& cuts) {
    QVector<QRect> places;
    for (const Cut& cut : cuts) {
        places.append(cut.canvasRect);
    }
    return places;
}

ScreenState AloneInSlot(int slot, int item, Orientation orientation = kLying) {
    return CustomScreen(OnlySlot(slot, item), orientation);
}

}  // namespace

class TestLiveRenderer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    // fewest and most: the parts a change is sent in. The large time is divided by digit only where its font
    // is wide.
    void ThemeUpdates_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<int>("item");
        QTest::addColumn<int>("fewest");
        QTest::addColumn<int>("most");
        QTest::addColumn<bool>("alsoUnchanged");
        const auto row = [](const char* name, Theme theme, int item, int fewest, int most,
                            bool alsoUnchanged) {
            QTest::newRow(name) << theme << item << fewest << most << alsoUnchanged;
        };
        row("default: temperature", Theme::Default, CpuTemperature, 1, 1, false);
        row("default: utilisation", Theme::Default, CpuUsage, 1, 1, false);
        row("default: memory", Theme::Default, MemoryUsage, 1, 1, false);
        row("default: time every time", Theme::Default, Time, 1, 1, true);
        row("default: power", Theme::Default, CpuPower, 1, 1, false);
        row("default: date every time", Theme::Default, Date, 1, 1, true);
        row("default: fan", Theme::Default, FanSpeed, 1, 1, false);
        row("scene: no temperature", Theme::Scene, CpuTemperature, 0, 0, false);
        row("scene: no power", Theme::Scene, CpuPower, 0, 0, false);
        row("scene: no fan", Theme::Scene, FanSpeed, 0, 0, false);
        row("scene: hours and minutes every time", Theme::Scene, Time, 2, 4, true);
        row("scene: date every time", Theme::Scene, Date, 2, 4, true);
        row("TDP: temperature", Theme::Tdp, CpuTemperature, 1, 1, false);
        row("TDP: utilisation", Theme::Tdp, CpuUsage, 1, 1, false);
        row("TDP: power in halves", Theme::Tdp, CpuPower, 2, 2, false);
        row("TDP: time", Theme::Tdp, Time, 1, 1, true);
        row("TDP: date", Theme::Tdp, Date, 1, 1, true);
        row("time: temperature", Theme::Time, CpuTemperature, 1, 1, false);
        row("time: power", Theme::Time, CpuPower, 1, 1, false);
        row("time: time in halves", Theme::Time, Time, 2, 2, true);
        row("time: date in halves", Theme::Time, Date, 2, 2, true);
        row("time: the fan is hidden", Theme::Time, FanSpeed, 0, 0, false);
    }
    void ThemeUpdates() {
        QFETCH(Theme, theme);
        QFETCH(int, item);
        QFETCH(int, fewest);
        QFETCH(int, most);
        QFETCH(bool, alsoUnchanged);
        for (const Orientation orientation : kOrientations) {
            const ScreenState state = ThemeScreen(theme, orientation);
            const int changed = Update(state, item).size();
            QVERIFY2(changed >= fewest && changed <= most, QByteArray::number(changed));
            QCOMPARE(IsUpdateSent(state, item, true), fewest > 0);
            QCOMPARE(IsUpdateSent(state, item, false), alsoUnchanged);
        }
    }

    void SceneShowsNothingElseEvenWhenTicked() {
        ScreenState state = ThemeScreen(Theme::Scene, kLying);
        state.layout.shown.fill(true);
        for (const int item : {CpuTemperature, CpuUsage, MemoryUsage, CpuPower, FanSpeed}) {
            state.layout.textRect[size_t(item)] = QRect(10, 10, 40, 30);
            QVERIFY(Update(state, item).isEmpty());
        }
    }

    void ThemeParts_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("item");
        QTest::addColumn<QVector<QRect>>("parts");
        const auto row = [](const char* name, Theme theme, Orientation orientation, int item,
                            QVector<QRect> parts) {
            QTest::newRow(name) << theme << orientation << item << parts;
        };
        row("default temperature", Theme::Default, kLying, CpuTemperature, {Corners(158, 38, 204, 61)});
        row("default date", Theme::Default, kLying, Date, {Corners(0, 44, 135, 56)});
        row("default time", Theme::Default, kStanding, Time, {Corners(45, 8, 124, 31)});
        row("TDP power", Theme::Tdp, kLying, CpuPower,
            {Corners(106, 74, 162, 103), Corners(163, 74, 219, 103)});
        row("TDP power, portrait", Theme::Tdp, kStanding, CpuPower,
            {Corners(30, 141, 86, 170), Corners(87, 141, 143, 170)});
        row("time theme time", Theme::Time, kLying, Time,
            {Corners(100, 60, 159, 89), Corners(160, 60, 219, 89)});
        row("time theme date, odd width", Theme::Time, kStanding, Date,
            {Corners(30, 177, 80, 190), Corners(81, 177, 131, 190)});
        row("scene date, portrait", Theme::Scene, kStanding, Date,
            {Corners(0, 283, 84, 300), Corners(85, 283, 169, 300)});
        row("scene date, landscape, in quarters", Theme::Scene, kLying, Date,
            {Corners(69, 138, 114, 169), Corners(115, 138, 161, 169), Corners(162, 138, 207, 169),
             Corners(208, 138, 254, 169)});
    }
    void ThemeParts() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QFETCH(int, item);
        QFETCH(QVector<QRect>, parts);
        QCOMPARE(Places(Update(ThemeScreen(theme, orientation), item)), parts);
    }

    void CustomUpdates_data() {
        QTest::addColumn<ScreenState>("state");
        QTest::addColumn<int>("item");
        QTest::addColumn<int>("parts");
        QTest::addColumn<bool>("alsoUnchanged");
        ScreenState hidden = AloneInSlot(0, CpuUsage);
        hidden.layout.shown[CpuUsage] = false;
        ScreenState otherFlag = hidden;
        otherFlag.layout.selected[CpuUsage] = true;
        const auto row = [](const char* name, const ScreenState& state, int item, int parts,
                            bool alsoUnchanged) {
            QTest::newRow(name) << state << item << parts << alsoUnchanged;
        };
        row("outer slot, always", AloneInSlot(0, CpuUsage), CpuUsage, 2, true);
        row("centre slot, when it changes", AloneInSlot(2, CpuUsage), CpuUsage, 2, false);
        row("centre slot, portrait", AloneInSlot(2, CpuPower, kStanding), CpuPower, 2, false);
        row("time in an outer slot", AloneInSlot(4, Time), Time, 2, true);
        row("time in the centre", AloneInSlot(2, Time), Time, 2, true);
        row("date in an outer slot", AloneInSlot(3, Date), Date, 2, true);
        row("date in the centre", AloneInSlot(2, Date), Date, 2, false);
        row("date in the time's slot", SharedSlotScreen(1, kLying), Date, 2, true);
        row("time in the slot it shares", SharedSlotScreen(1, kLying), Time, 2, true);
        row("date in the time's slot, centre", SharedSlotScreen(2, kStanding), Date, 2, false);
        row("not placed", AloneInSlot(0, CpuUsage), CpuTemperature, 0, false);
        row("not placed, though ticked", CustomScreen(kNoItems, kLying), CpuTemperature, 0, false);
        row("not ticked", hidden, CpuUsage, 0, false);
        row("ticked in the other layout only", otherFlag, CpuUsage, 0, false);
        row("one-item layout", CustomScreen(OnlySlot(2, FanSpeed), kLying, InterfaceLanguage::Chinese, 1),
            FanSpeed, 2, false);
    }
    void CustomUpdates() {
        QFETCH(ScreenState, state);
        QFETCH(int, item);
        QFETCH(int, parts);
        QFETCH(bool, alsoUnchanged);
        QCOMPARE(Update(state, item).size(), parts);
        QCOMPARE(IsUpdateSent(state, item, true), parts > 0);
        QCOMPARE(IsUpdateSent(state, item, false), alsoUnchanged);
    }

    void CustomParts_data() {
        QTest::addColumn<ScreenState>("state");
        QTest::addColumn<int>("item");
        QTest::addColumn<QVector<QRect>>("parts");
        QTest::newRow("landscape slot") << AloneInSlot(0, CpuUsage) << int(CpuUsage)
                                        << QVector<QRect>{Corners(10, 16, 50, 45), Corners(51, 16, 91, 45)};
        QTest::newRow("portrait slot, odd width")
            << AloneInSlot(0, CpuUsage, kStanding) << int(CpuUsage)
            << QVector<QRect>{Corners(1, 18, 33, 41), Corners(34, 18, 66, 41)};
        QTest::newRow("portrait centre")
            << AloneInSlot(2, Date, kStanding) << int(Date)
            << QVector<QRect>{Corners(29, 145, 84, 174), Corners(85, 145, 140, 174)};
    }
    void CustomParts() {
        QFETCH(ScreenState, state);
        QFETCH(int, item);
        QFETCH(QVector<QRect>, parts);
        QCOMPARE(Places(Update(state, item)), parts);
    }

    // hours: from 2 pixels before the text, two digits and 4 wide; minutes: 2 digits and the colon further
    // on, less 2.
    void TheTimeIsSentByItsDigits() {
        const ScreenState state = AloneInSlot(0, Time);
        const LineMetrics metrics = MetricsOf(18);
        QVERIFY(metrics.separateDigits);
        const ItemTexts texts = LiveTexts(state.language)[1];
        const QVector<TextRun> runs = LayOutTexts(state, texts);
        const QVector<QRect> rects = SendRects(state, runs, Time, false);
        const QRect slot = SlotRect(0, kLying);
        const int textWidth = 4 * metrics.digitWidth + metrics.colonWidth;
        const int hours = slot.left() + (slot.width() - textWidth) / 2 - 2;
        const int minutes = hours + 2 * metrics.digitWidth + metrics.colonWidth - 2;
        const int top = slot.top() + (slot.height() - metrics.height) / 2;
        const QSize size(2 * metrics.digitWidth + 4, metrics.height);
        QCOMPARE(rects, (QVector<QRect>{QRect(QPoint(hours, top), size), QRect(QPoint(minutes, top), size)}));
    }

    void ATimeThatWasNeverDrawnIsSentWhole() {
        for (const ScreenState& state : {AloneInSlot(0, Time), AloneInSlot(2, Time, kStanding),
                                         SharedSlotScreen(3, kLying), ThemeScreen(Theme::Scene, kLying)}) {
            const ItemTexts texts = LiveTexts(state.language)[1];
            QRect covered;
            for (const Cut& cut :
                 RenderItem(state, {NoisyCanvas(state.orientation)}, texts, Time, true).cuts) {
                covered |= cut.canvasRect;
            }
            QCOMPARE(covered, LayOutTexts(state, texts).first().rect);
        }
    }

    void ItemsThatDoNotExistSendNothing() {
        for (const int item : {-1, int(OtherText), int(OtherText2), 9, 1000000}) {
            for (ScreenState state : {ThemeScreen(Theme::Default, kLying), AloneInSlot(0, item)}) {
                state.layout.shown.fill(true);
                ItemTexts texts = LiveTexts(state.language)[1];
                texts[OtherText] = kOther;
                QVERIFY(RenderItem(state, {NoisyCanvas(kLying)}, texts, item, true).cuts.isEmpty());
            }
        }
    }

    void PortraitCutArrivesTurned() {
        const ScreenState state = AloneInSlot(0, CpuUsage, kStanding);
        const QVector<Cut> cuts = Update(state, CpuUsage);
        QCOMPARE(cuts.size(), 2);
        // Slot 0 is 1,18 - 67,41: on the wire it begins at x 18 and ends 169 - 1 below.
        const QRect left = WireRect(cuts.first().canvasRect, kStanding);
        QCOMPARE(left, QRect(18, 169 - 33, 24, 33));
        QCOMPARE(WireRect(cuts.last().canvasRect, kStanding), QRect(18, 169 - 66, 24, 33));
        const ItemTexts texts = LiveTexts(state.language)[1];
        const QImage frame = ComposeFrame(state, {NoisyCanvas(kStanding)}, texts);
        for (const Cut& cut : cuts) {
            QCOMPARE(cut.pixels, WirePixels(frame, cut.canvasRect, kStanding));
        }
    }

    void ATextRectangleBeyondEveryReportIsNotSent() {
        ScreenState state = ThemeScreen(Theme::Default, kLying);
        state.layout.textRect[CpuUsage] = QRect(0, 0, 320, 170);
        QVERIFY(Update(state, CpuUsage).isEmpty());
    }

    void ATextRectangleOverTheEdgeIsSentAsFarAsThePanelGoes() {
        ScreenState state = ThemeScreen(Theme::Default, kLying);
        state.layout.textRect[CpuUsage] = QRect(300, 150, 60, 60);
        QCOMPARE(Places(Update(state, CpuUsage)), (QVector<QRect>{QRect(300, 150, 20, 20)}));
        state.layout.textRect[CpuUsage] = QRect(400, 150, 60, 60);
        QVERIFY(Update(state, CpuUsage).isEmpty());
        state.layout.textRect[CpuUsage] = QRect();
        QVERIFY(Update(state, CpuUsage).isEmpty());
    }
};

KIVO_TEST(TestLiveRenderer)
#include "tst_live_renderer.moc"
