#include <QtTest>

#include "panel/blank_frame.h"
#include "panel_desk.h"
#include "record_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// A panel that is to be dark, and what it shows afterwards.
class TestBlankFrame : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }
    void NoItemHasAPlaceOnIt();
    void BlankRecordOwesItsFrameOnly();
    void RoundsOfABlankPanelSendNoValue();
    void PanelShowsAgainWhatItIsToShow();
    void WhatIsAppliedMeanwhileIsShownAfterwards();
    void PanelThatIsPluggedInIsDarkToo();
    void NextRunIsNotBlank();
};

namespace {

bool IsBlack(const Desk& desk) {
    QImage black(320, 170, QImage::Format_RGB16);
    black.fill(Qt::black);
    return desk.Picture() == black;
}

}  // namespace

void TestBlankFrame::NoItemHasAPlaceOnIt() {
    const SharedFrame blank = MakeBlankFrame();
    for (int item = 0; item < kLiveValueCount; ++item) {
        QVERIFY(!HasPlace(blank->state, item));
    }
    QCOMPARE(ComposeFrame(blank->state, blank->background, kTexts), blank->background.image);
    QCOMPARE(MakeBlankFrame()->id, blank->id);
}

void TestBlankFrame::BlankRecordOwesItsFrameOnly() {
    PanelRecord record = Complete(FrameOf(Theme::Default));
    SetBlank(record, MakeBlankFrame());
    QVERIFY(WhatIsOwed(record).frame);
    ApplyComposedState(record, MakeBlankFrame(), kTexts);
    QVERIFY(!WhatIsOwed(record).frame);
    for (int item = 0; item < kLiveValueCount; ++item) {
        QVERIFY(!IsTextOwed(record, item, QStringLiteral("1")));
    }
    QCOMPARE(ShownTexts(record), ItemTexts());
    SetBlank(record, nullptr);
    QVERIFY(WhatIsOwed(record).frame);
}

void TestBlankFrame::RoundsOfABlankPanelSendNoValue() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->Round();
    desk.run->sender.SetBlank(true);
    desk.run->Round();
    QVERIFY(IsBlack(desk));
    const quint64 areas = desk.Counts().areas;
    const quint64 frames = desk.Counts().frames;
    desk.texts[CpuUsage] = QStringLiteral("99%");
    for (int round = 0; round < 3; ++round) {
        QVERIFY(desk.run->Round());
    }
    QVERIFY(IsBlack(desk));
    QCOMPARE(desk.Counts().areas, areas);
    QCOMPARE(desk.Counts().frames, frames);
    QCOMPARE(desk.Counts().errors, quint64(0));
    QCOMPARE(desk.run->Condition(), PanelCondition::Sent);
}

void TestBlankFrame::PanelShowsAgainWhatItIsToShow() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default, Orientation::Portrait));
    desk.run->sender.SetBlank(true);
    desk.run->Round();
    QVERIFY(IsBlack(desk));
    desk.texts[CpuUsage] = QStringLiteral("99%");
    desk.run->sender.SetBlank(false);
    desk.run->Round();
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Default, Orientation::Portrait)).isNull());
    QCOMPARE(desk.panel.State().orientation, std::optional<int>(2));
}

void TestBlankFrame::WhatIsAppliedMeanwhileIsShownAfterwards() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->sender.SetBlank(true);
    QVERIFY(desk.run->Apply(Theme::Time));
    QVERIFY(IsBlack(desk));
    desk.run->Round();
    QVERIFY(IsBlack(desk));
    desk.run->sender.SetBlank(false);
    desk.run->Round();
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Time, Orientation::Landscape)).isNull());
}

void TestBlankFrame::PanelThatIsPluggedInIsDarkToo() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.panel.Unplug();
    desk.run->Round();
    desk.run->sender.SetBlank(true);
    desk.run->Round();
    desk.panel.Plug();
    desk.run->session.EnumerateScreens();
    desk.run->Round();
    QVERIFY(IsBlack(desk));
}

void TestBlankFrame::NextRunIsNotBlank() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->sender.SetBlank(true);
    desk.run->Round();
    desk.StartRun();
    desk.run->sender.Prepare();
    desk.run->Round();
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Default, Orientation::Landscape)).isNull());
}

KIVO_TEST(TestBlankFrame)
#include "tst_blank_frame.moc"
