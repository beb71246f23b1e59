#include <QtTest>

#include "compose/rgb565.h"
#include "panel/lit_frame.h"
#include "panel_desk.h"
#include "record_test_support.h"
#include "support/forwarding_hid_api.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

Q_DECLARE_METATYPE(AwayRules)
Q_DECLARE_METATYPE(AwayFacts)

// What makes a panel dark, what it shows then, and what afterwards.
class TestPanelLight : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }
    void ReasonsFollowRulesAndFacts_data();
    void ReasonsFollowRulesAndFacts();
    void LightFollowsTheReasons_data();
    void LightFollowsTheReasons();
    void NoItemHasAPlaceOnIt();
    void BlackRecordOwesItsFrameOnly();
    void RoundsOfABlackPanelSendTheClockOnly();
    void PanelShowsAgainWhatItIsToShow();
    void WhatIsAppliedMeanwhileIsShownAfterwards();
    void PanelThatIsPluggedInIsDarkToo();
    void NextRunIsBright();
    void DimmedPanelIsTheSamePictureDimmed_data();
    void DimmedPanelIsTheSamePictureDimmed();
    void NextRunAtNightSendsNoFrame();
    void LightThatChangesInTheMiddleOfAFrame_data();
    void LightThatChangesInTheMiddleOfAFrame();
};

namespace {

bool IsBlack(const Desk& desk) {
    QImage black(320, 170, QImage::Format_RGB16);
    black.fill(Qt::black);
    return desk.Picture() == black;
}

// Every rule ticked, and a night in which everything is dimmed.
AwayRules AllRules() {
    AwayRules rules;
    rules.darkAtLock = rules.darkAtSleep = rules.darkAtScreenSaver = rules.darkAtExit = true;
    rules.night = NightLight::Dimmed;
    return rules;
}

// Nothing goes on, in the light of day.
AwayFacts Noon() {
    AwayFacts facts;
    facts.localTime = QTime(12, 0);
    return facts;
}

// What a panel shows that is dimmed over this state.
QByteArray DimmedPixels(const Desk& desk, const ScreenState& state) {
    SkinCache skins;
    const PanelBackground background = ComposeBackground(state, LoadPicture(PicturePath(state)), skins);
    const QImage image = ComposeFrame(state, background, desk.texts);
    QByteArray pixels = WirePixels(image, image.rect(), state.orientation);
    DimWirePixels(pixels);
    return pixels;
}

// What it shows, in the order of the wire.
QByteArray ShownPixels(const Desk& desk) {
    const QImage image = desk.Picture();
    return WirePixels(image, image.rect(), Orientation::Landscape);
}

}  // namespace

void TestPanelLight::ReasonsFollowRulesAndFacts_data() {
    QTest::addColumn<AwayRules>("rules");
    QTest::addColumn<AwayFacts>("facts");
    QTest::addColumn<int>("reasons");
    const auto row = [](const char* name, const AwayRules& rules, const AwayFacts& facts,
                        DarkReasons reasons) { QTest::newRow(name) << rules << facts << int(reasons); };
    const AwayRules factory;
    AwayFacts everything = Noon();
    everything.isAsked = everything.isLocked = everything.isAsleep = true;
    everything.isSaverOn = true;
    AwayFacts end = everything;
    end.isEnding = true;
    AwayFacts night = Noon();
    night.localTime = QTime(23, 0);
    AwayRules blackNight;
    blackNight.night = NightLight::Black;
    AwayRules none;
    none.darkAtSleep = false;
    row("nothing goes on", AllRules(), Noon(), {});
    row("sleep and command only, where nobody chose", factory, everything,
        DarkReason::Asked | DarkReason::Asleep);
    row("everything", AllRules(), everything,
        DarkReason::Asked | DarkReason::Locked | DarkReason::Asleep | DarkReason::ScreenSaver);
    row("the end, whatever else goes on", AllRules(), end, DarkReason::Ending);
    row("the end, where it is not ticked", blackNight, end, {});
    row("nothing is ticked", none, everything, DarkReason::Asked);
    row("a night that nobody chose", factory, night, {});
    row("dimmed night", AllRules(), night, DarkReason::NightDimmed);
    row("black night", blackNight, night, DarkReason::NightBlack);
    row("black night, at noon", blackNight, Noon(), {});
    for (const auto& [name, fact, reason] :
         {std::make_tuple("locked", &AwayFacts::isLocked, DarkReason::Locked),
          std::make_tuple("asleep", &AwayFacts::isAsleep, DarkReason::Asleep),
          std::make_tuple("screen saver", &AwayFacts::isSaverOn, DarkReason::ScreenSaver),
          std::make_tuple("ending", &AwayFacts::isEnding, DarkReason::Ending)}) {
        AwayFacts facts = Noon();
        facts.*fact = true;
        row(name, AllRules(), facts, reason);
    }
}

void TestPanelLight::ReasonsFollowRulesAndFacts() {
    QFETCH(AwayRules, rules);
    QFETCH(AwayFacts, facts);
    QTEST(int(DarkReasonsFor(rules, facts)), "reasons");
}

void TestPanelLight::LightFollowsTheReasons_data() {
    QTest::addColumn<int>("reasons");
    QTest::addColumn<int>("light");
    const auto row = [](const char* name, DarkReasons reasons, PanelLight light) {
        QTest::newRow(name) << int(reasons) << int(light);
    };
    row("none", {}, PanelLight::Full);
    row("dimmed night", DarkReason::NightDimmed, PanelLight::Dimmed);
    row("black night", DarkReason::NightBlack, PanelLight::Black);
    row("asked", DarkReason::Asked, PanelLight::Black);
    row("locked", DarkReason::Locked, PanelLight::Black);
    row("asleep", DarkReason::Asleep, PanelLight::Black);
    row("screen saver", DarkReason::ScreenSaver, PanelLight::Black);
    row("ending", DarkReason::Ending, PanelLight::Black);
    row("locked in a dimmed night", DarkReason::Locked | DarkReason::NightDimmed, PanelLight::Black);
}

void TestPanelLight::LightFollowsTheReasons() {
    QFETCH(int, reasons);
    QTEST(int(LightFor(DarkReasons(reasons))), "light");
}

void TestPanelLight::NoItemHasAPlaceOnIt() {
    const SharedFrame& blank = BlackFrame();
    for (int item = 0; item < kLiveValueCount; ++item) {
        QVERIFY(!HasPlace(blank->state, item));
    }
    QCOMPARE(ComposeFrame(blank->state, blank->background, kTexts), blank->background.image);
}

void TestPanelLight::BlackRecordOwesItsFrameOnly() {
    PanelRecord record = Complete(FrameOf(Theme::Default));
    SetLight(record, PanelLight::Black);
    QVERIFY(WhatIsOwed(record).frame);
    ApplyComposedState(record, BlackFrame(), kTexts);
    QVERIFY(!WhatIsOwed(record).frame);
    for (int item = 0; item < kLiveValueCount; ++item) {
        QVERIFY(!IsTextOwed(record, item, QStringLiteral("1")));
    }
    QCOMPARE(ShownTexts(record), ItemTexts());
    SetLight(record, PanelLight::Full);
    QVERIFY(WhatIsOwed(record).frame);
}

void TestPanelLight::RoundsOfABlackPanelSendTheClockOnly() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->Round();
    desk.run->sender.SetLight(PanelLight::Black);
    desk.run->Round();
    QVERIFY(IsBlack(desk));
    const quint64 areas = desk.Counts().areas;
    const quint64 frames = desk.Counts().frames;
    const quint64 commands = desk.Counts().commands;
    desk.texts[CpuUsage] = QStringLiteral("99%");
    for (int round = 0; round < 3; ++round) {
        QVERIFY(desk.run->Round());
    }
    QVERIFY(IsBlack(desk));
    QCOMPARE(desk.Counts().areas, areas);
    QCOMPARE(desk.Counts().frames, frames);
    QCOMPARE(desk.Counts().commands, commands + 3);
    QCOMPARE(desk.Counts().errors, quint64(0));
    QCOMPARE(desk.run->Condition(), PanelCondition::Sent);
}

void TestPanelLight::PanelShowsAgainWhatItIsToShow() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default, Orientation::Portrait));
    desk.run->sender.SetLight(PanelLight::Black);
    desk.run->Round();
    QVERIFY(IsBlack(desk));
    desk.texts[CpuUsage] = QStringLiteral("99%");
    desk.run->sender.SetLight(PanelLight::Full);
    desk.run->Round();
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Default, Orientation::Portrait)).isNull());
    QCOMPARE(desk.panel.State().orientation, std::optional<int>(2));
}

void TestPanelLight::WhatIsAppliedMeanwhileIsShownAfterwards() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->sender.SetLight(PanelLight::Black);
    QVERIFY(desk.run->Apply(Theme::Time));
    QVERIFY(IsBlack(desk));
    desk.run->Round();
    QVERIFY(IsBlack(desk));
    desk.run->sender.SetLight(PanelLight::Full);
    desk.run->Round();
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Time, Orientation::Landscape)).isNull());
}

void TestPanelLight::PanelThatIsPluggedInIsDarkToo() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.panel.Unplug();
    desk.run->Round();
    desk.run->sender.SetLight(PanelLight::Black);
    desk.run->Round();
    desk.panel.Plug();
    desk.run->session.EnumerateScreens();
    desk.run->Round();
    QVERIFY(IsBlack(desk));
}

void TestPanelLight::NextRunIsBright() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->sender.SetLight(PanelLight::Black);
    desk.run->Round();
    desk.StartRun();
    desk.run->sender.Prepare();
    desk.run->Round();
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Default, Orientation::Landscape)).isNull());
}

void TestPanelLight::DimmedPanelIsTheSamePictureDimmed_data() {
    QTest::addColumn<Theme>("theme");
    QTest::addColumn<Orientation>("orientation");
    QTest::newRow("lying") << Theme::Default << Orientation::Landscape;
    QTest::newRow("standing") << Theme::Tdp << Orientation::Portrait;
}

void TestPanelLight::DimmedPanelIsTheSamePictureDimmed() {
    QFETCH(Theme, theme);
    QFETCH(Orientation, orientation);
    const ScreenState state = ThemeScreen(theme, orientation);
    Desk desk;
    QVERIFY(desk.run->Apply(theme, orientation));
    const QByteArray bright = ShownPixels(desk);
    desk.run->sender.SetLight(PanelLight::Dimmed);
    desk.run->Round();
    QCOMPARE(ShownPixels(desk), DimmedPixels(desk, state));
    QVERIFY(ShownPixels(desk) != bright);
    // Live values stand on it as bright as the rest.
    const quint64 frames = desk.Counts().frames;
    desk.texts[CpuUsage] = QStringLiteral("99%");
    desk.run->Round();
    QCOMPARE(ShownPixels(desk), DimmedPixels(desk, state));
    QCOMPARE(desk.Counts().frames, frames);
    desk.run->sender.SetLight(PanelLight::Full);
    desk.run->Round();
    QVERIFY(desk.DifferenceTo(state).isNull());
    QCOMPARE(desk.Counts().errors, quint64(0));
}

void TestPanelLight::NextRunAtNightSendsNoFrame() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->sender.SetLight(PanelLight::Dimmed);
    desk.run->Round();
    const quint64 frames = desk.Counts().frames;
    desk.StartRun();
    desk.run->sender.SetLight(PanelLight::Dimmed);
    desk.run->sender.Prepare();
    desk.run->Round();
    QCOMPARE(desk.Counts().frames, frames);
    QCOMPARE(ShownPixels(desk), DimmedPixels(desk, ThemeScreen(Theme::Default, Orientation::Landscape)));
}

void TestPanelLight::LightThatChangesInTheMiddleOfAFrame_data() {
    QTest::addColumn<bool>("comesBack");
    QTest::addColumn<int>("chunk");
    for (const int chunk : {1, 14, 27}) {
        QTest::addRow("locked at chunk %d", chunk) << false << chunk;
        QTest::addRow("unlocked at chunk %d", chunk) << true << chunk;
        QTest::addRow("locked at chunk %d, unlocked in the black frame", chunk) << true << chunk;
    }
}

void TestPanelLight::LightThatChangesInTheMiddleOfAFrame() {
    QFETCH(bool, comesBack);
    QFETCH(int, chunk);
    const bool isBoth = QByteArray(QTest::currentDataTag()).contains("in the black frame");
    Desk desk;
    WireTap wire(desk.panel);
    Run run(wire, desk.folder.path(), Memory::Kept, desk.texts);
    run.sender.SetLoaded(ThemeScreen(Theme::Default, Orientation::Landscape));
    const PanelLight before = comesBack && !isBoth ? PanelLight::Black : PanelLight::Full;
    const PanelLight after = before == PanelLight::Black ? PanelLight::Full : PanelLight::Black;
    run.sender.SetLight(before);
    wire.BeforeChunk(chunk, [&run, after] { run.sender.SetLight(after); });
    QVERIFY(run.Apply(Theme::Time));
    if (isBoth) {
        wire.BeforeChunk(chunk, [&run] { run.sender.SetLight(PanelLight::Full); });
        run.Round();
    }
    run.Round();
    if (comesBack) {
        QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Time, Orientation::Landscape)).isNull());
    } else {
        QVERIFY(IsBlack(desk));
    }
    QVERIFY(!run.sender.Status().isFrameOwed);
    QCOMPARE(desk.Counts().errors, quint64(0));
}

KIVO_TEST(TestPanelLight)
#include "tst_panel_light.moc"
