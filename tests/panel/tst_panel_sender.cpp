#include <QtTest>

#include "panel_desk.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

Q_DECLARE_METATYPE(std::function<void(Desk&)>)

// What reaches a panel that takes everything.
class TestPanelSender : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void ComposedFrameReachesThePanel();
    void FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel_data();
    void FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel();
    void UnchangedTimeIsSentAgainAndOtherItemsAreNot();
    void KeptDrawingsFollowTheState();
    void EditedButNotAppliedStateDoesNotReachThePanel();
    void ShownTextsAreThoseThatWereTaken();
    void OddItemsAndTextsDoNothing();
    void ARectangleThatFitsNoReportIsTriedOnce();

    void ArrivalSendsEverythingButTheFrame();
    void ArrivalDrawsAllOfATimeThatMovesItsDigits();
    void AnotherPanelGetsTheFrame();
    void AnotherPanelThatWasSeenBeforePreparingGetsTheFrame();
    void TextForAnotherPanelWaitsForItsFrame();
    void NewNodesOfTheSamePanelAreAnArrival();
    void ReplacedBackgroundIsPutBack();

    void FrameHasThePictureThatIsHandedIn();
    void StandInIsShownWhole();
    void FrameThatIsOwedKeepsTheBackgroundOfItsApply();
    void EndBeforeThePictureComposesNothing();
    void SecondRunSendsNoFrameAgain();
    void RunThatCannotTellSendsTheFrame_data();
    void RunThatCannotTellSendsTheFrame();
    void PreparingAgainDoesNothing();
    void PreparingComposesAMissingBackgroundWithoutSending();
    void FrameTakenByAPanelWithoutAKeyIsRecalled();

    void EachRoundSetsTheClock();
    void StatusFollowsAFrame();
};

void TestPanelSender::initTestCase() {
    SetUpDrawing();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestPanelSender::ComposedFrameReachesThePanel() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default, Orientation::Portrait));
    const PanelState state = desk.panel.State();
    QCOMPARE(state.counts.frames, quint64(1));
    QCOMPARE(state.counts.commands, quint64(3));  // orientation, orientation, time
    QCOMPARE(state.counts.errors, quint64(0));
    QCOMPARE(state.orientation, std::optional<int>(2));
    QVERIFY(state.shownTime.has_value());
    const ScreenState applied = desk.run->sender.Applied();
    QVERIFY(applied == ThemeScreen(Theme::Default, Orientation::Portrait));
    QVERIFY(desk.DifferenceTo(applied).isNull());
}

void TestPanelSender::FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel_data() {
    QTest::addColumn<int>("theme");
    QTest::addColumn<int>("orientation");
    QTest::addColumn<int>("reports");
    QTest::newRow("default, lying") << 0 << 0 << 7;
    QTest::newRow("default, standing") << 0 << 1 << 7;
    QTest::newRow("scene, lying") << 1 << 0 << 8;
    QTest::newRow("scene, standing") << 1 << 1 << 6;
    QTest::newRow("TDP, lying") << 2 << 0 << 8;
    QTest::newRow("TDP, standing") << 2 << 1 << 8;
    QTest::newRow("time, lying") << 3 << 0 << 8;
    QTest::newRow("time, standing") << 3 << 1 << 8;
}

void TestPanelSender::FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel() {
    QFETCH(int, theme);
    QFETCH(int, orientation);
    QFETCH(int, reports);
    Desk desk;
    QVERIFY(desk.run->Apply(Theme(theme), Orientation(orientation)));
    const QImage composed = desk.Picture();
    desk.run->SendTexts();
    QCOMPARE(int(desk.Counts().areas), reports);
    QCOMPARE(desk.Picture(), composed);
    QCOMPARE(desk.Counts().errors, quint64(0));
}

void TestPanelSender::UnchangedTimeIsSentAgainAndOtherItemsAreNot() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->SendTexts();
    const QImage before = desk.Picture();
    const quint64 areas = desk.Counts().areas;
    for (int round = 0; round < 3; ++round) {
        desk.run->SendTexts();
    }
    QCOMPARE(desk.Counts().areas - areas, quint64(6));
    QCOMPARE(desk.Picture(), before);
    QVERIFY(!desk.run->sender.RenderLiveItem(desk.texts[CpuUsage], CpuUsage));
    QVERIFY(desk.run->sender.RenderLiveItem(QStringLiteral("38%"), CpuUsage));
}

void TestPanelSender::KeptDrawingsFollowTheState() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.run->SendTexts();
    QVERIFY(desk.run->Apply(Theme::Time));
    const QImage composed = desk.Picture();
    desk.run->SendTexts();
    QCOMPARE(desk.Picture(), composed);
    // And back, at another time.
    desk.texts[Time] = QStringLiteral("18:47");
    QVERIFY(desk.run->Apply(Theme::Default));
    const QImage second = desk.Picture();
    desk.run->SendTexts();
    QCOMPARE(desk.Picture(), second);
}

void TestPanelSender::EditedButNotAppliedStateDoesNotReachThePanel() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    const QImage composed = desk.Picture();
    desk.run->sender.SetChosen(ThemeScreen(Theme::Time, Orientation::Portrait));
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Picture(), composed);
    QCOMPARE(desk.Counts().frames, quint64(1));
    QCOMPARE(desk.run->AppliedTheme(), Theme::Default);
}

void TestPanelSender::ShownTextsAreThoseThatWereTaken() {
    Desk desk;
    PanelSender& sender = desk.run->sender;
    QVERIFY(sender.ShownTexts()[Time].isEmpty());
    QVERIFY(desk.run->Apply(Theme::Time));
    QCOMPARE(sender.ShownTexts()[Time], QStringLiteral("18:46"));
    QVERIFY(sender.ShownTexts()[FanSpeed].isEmpty());  // this theme hides it
    desk.panel.Unplug();
    sender.RenderLiveItem(QStringLiteral("18:47"), Time);
    QCOMPARE(sender.ShownTexts()[Time], QStringLiteral("18:46"));
    desk.panel.Plug();
    sender.RenderLiveItem(QStringLiteral("18:47"), Time);
    QCOMPARE(sender.ShownTexts()[Time], QStringLiteral("18:47"));
}

void TestPanelSender::OddItemsAndTextsDoNothing() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    PanelSender& sender = desk.run->sender;
    QVERIFY(!sender.RenderLiveItem(QString(), Time));
    QVERIFY(!sender.RenderLiveItem(QStringLiteral("x"), -1));
    QVERIFY(!sender.RenderLiveItem(QStringLiteral("x"), kLiveValueCount));
    QVERIFY(!sender.RenderLiveItem(QStringLiteral("x"), OtherText));
    QCOMPARE(desk.Counts().areas, quint64(0));
}

void TestPanelSender::ARectangleThatFitsNoReportIsTriedOnce() {
    Desk desk;
    ScreenState state = ThemeScreen(Theme::Default, Orientation::Landscape);
    state.layout.textRect[CpuUsage] = QRect(0, 0, 320, 170);
    desk.run->sender.SetChosen(state);
    QVERIFY(desk.run->sender.ComposeWholeFrame());
    QVERIFY(desk.run->sender.RenderLiveItem(desk.texts[CpuUsage], CpuUsage));
    QVERIFY(!desk.run->sender.RenderLiveItem(desk.texts[CpuUsage], CpuUsage));
    QCOMPARE(desk.Counts().areas, quint64(0));
}

void TestPanelSender::ArrivalSendsEverythingButTheFrame() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    const PanelCounts before = desk.Counts();
    const QImage composed = desk.Picture();
    QByteArray black(kFrameBytes, '\0');
    desk.run->transfers.SendWholeImage(reinterpret_cast<const quint8*>(black.constData()), 0);
    desk.run->sender.NoteArrival();
    QVERIFY(desk.run->Round());
    const PanelCounts after = desk.Counts();
    QCOMPARE(after.frames - before.frames, quint64(1));      // the black one
    QCOMPARE(after.commands - before.commands, quint64(3));  // clock, orientation, time show
    QCOMPARE(after.areas - before.areas, quint64(7));
    for (const int item : kLiveItems) {
        const QRect place = desk.run->sender.Applied().layout.textRect[size_t(item)];
        QCOMPARE(desk.Picture().copy(place), composed.copy(place));
    }
}

// A change of this time sends the rectangles of the digits that moved, which would leave the black around
// them.
void TestPanelSender::ArrivalDrawsAllOfATimeThatMovesItsDigits() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Scene));
    QVERIFY(desk.run->Round());
    const QImage composed = desk.Picture();
    const QByteArray black(kFrameBytes, '\0');
    desk.run->transfers.SendWholeImage(reinterpret_cast<const quint8*>(black.constData()), 0);
    desk.run->sender.NoteArrival();
    QVERIFY(desk.run->Round());
    const QRect place = desk.run->sender.Applied().layout.textRect[Time];
    QCOMPARE(desk.Picture().copy(place), composed.copy(place));
}

void TestPanelSender::AnotherPanelGetsTheFrame() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Tdp, Orientation::Portrait));
    QVERIFY(desk.run->Round());
    const PanelCounts before = desk.Counts();
    desk.texts[CpuPower] = QStringLiteral("99w");
    desk.Replug(VirtualHidApi::NodeNumbers::Same, "another");
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames - before.frames, quint64(1));
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
    QCOMPARE(desk.run->memory.Read()->panelKey, QByteArray("another"));
}

// The clock of a start is set before the frame is prepared.
void TestPanelSender::AnotherPanelThatWasSeenBeforePreparingGetsTheFrame() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    const quint64 frames = desk.Counts().frames;
    desk.Replug(VirtualHidApi::NodeNumbers::Same, "another");
    desk.StartRun();
    QVERIFY(desk.run->sender.SendTimeSync());
    desk.run->sender.Prepare();
    QVERIFY(desk.run->sender.Status().isFrameOwed);
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames, frames + 1);
}

void TestPanelSender::TextForAnotherPanelWaitsForItsFrame() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.Replug(VirtualHidApi::NodeNumbers::Same, "another");
    // In the middle of a round: nobody has looked yet.
    QVERIFY(!desk.run->sender.RenderLiveItem(QStringLiteral("38%"), CpuUsage));
    QCOMPARE(desk.Counts().areas, quint64(0));
    QVERIFY(desk.run->sender.Status().isFrameOwed);
}

void TestPanelSender::NewNodesOfTheSamePanelAreAnArrival() {
    for (const auto numbers : {VirtualHidApi::NodeNumbers::New, VirtualHidApi::NodeNumbers::Swapped}) {
        Desk desk;
        QVERIFY(desk.run->Apply(Theme::Default));
        QVERIFY(desk.run->Round());
        const PanelCounts before = desk.Counts();
        desk.panel.Unplug();
        QVERIFY(!desk.run->Round());
        desk.panel.Plug(numbers);
        desk.run->session.EnumerateScreens();
        QVERIFY(desk.run->Round());
        QCOMPARE(desk.Counts().frames, before.frames);
        QCOMPARE(desk.Counts().areas - before.areas, quint64(7));
        QCOMPARE(desk.Counts().errors, quint64(0));
    }
}

void TestPanelSender::ReplacedBackgroundIsPutBack() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    const QByteArray saved = desk.SavedBackground();
    QImage red(320, 170, QImage::Format_RGB32);
    red.fill(Qt::red);
    QVERIFY(red.save(desk.BackgroundPath()));
    desk.texts[CpuUsage] = QStringLiteral("99%");
    // What is drawn over is in memory.
    desk.run->now = desk.run->now.load() + std::chrono::seconds(2);
    QVERIFY(desk.run->Round());
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
    QCOMPARE(desk.SavedBackground(), saved);
}

void TestPanelSender::FrameHasThePictureThatIsHandedIn() {
    Desk desk;
    QImage red(640, 340, QImage::Format_RGB32);
    red.fill(Qt::red);
    desk.run->picture = [&red](const ScreenState&) { return FramePicture{red}; };
    QVERIFY(desk.run->Apply(Theme::Scene));
    SkinCache skins;
    const ScreenState state = ThemeScreen(Theme::Scene, Orientation::Landscape);
    QCOMPARE(desk.Picture().convertToFormat(QImage::Format_RGB16),
             ComposeFrame(state, ComposeBackground(state, red, skins), desk.texts));
}

void TestPanelSender::StandInIsShownWhole() {
    Desk desk;
    ScreenState state = ThemeScreen(Theme::Scene, Orientation::Landscape);
    state.layout.xZoom = 160;
    state.layout.yZoom = 85;
    const QImage picture = LoadPicture(DefaultBackground());
    SkinCache skins;
    for (const bool isStandIn : {false, true}) {
        desk.run->picture = [&](const ScreenState&) { return FramePicture{picture, isStandIn}; };
        desk.run->sender.SetChosen(state);
        QVERIFY(desk.run->sender.ComposeWholeFrame());
        const ScreenState drawn = DrawnState(state, isStandIn);
        QCOMPARE(desk.Picture().convertToFormat(QImage::Format_RGB16),
                 ComposeFrame(state, ComposeBackground(drawn, picture, skins), desk.texts));
        // The frame is the state's all the same, with the trim it will have when its picture is back.
        QVERIFY(desk.run->sender.Applied() == state);
    }
}

void TestPanelSender::FrameThatIsOwedKeepsTheBackgroundOfItsApply() {
    Desk desk;
    int asked = 0;
    desk.run->picture = [&asked](const ScreenState&) {
        QImage image(320, 170, QImage::Format_RGB32);
        image.fill(++asked == 1 ? Qt::red : Qt::blue);
        return FramePicture{image};
    };
    desk.panel.Unplug();
    QVERIFY(!desk.run->Apply(Theme::Scene));
    desk.panel.Plug();
    desk.run->session.EnumerateScreens();
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames, quint64(1));
    QCOMPARE(asked, 1);
    QVERIFY(desk.Picture().pixelColor(160, 100).red() > desk.Picture().pixelColor(160, 100).blue());
}

void TestPanelSender::EndBeforeThePictureComposesNothing() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Scene));
    const QByteArray saved = desk.SavedBackground();
    const PanelCounts before = desk.Counts();
    desk.run->picture = [](const ScreenState&) { return std::nullopt; };
    QVERIFY(!desk.run->Apply(Theme::Time));
    QCOMPARE(desk.SavedBackground(), saved);
    QCOMPARE(desk.Counts().reports, before.reports);
    QCOMPARE(desk.run->AppliedTheme(), Theme::Scene);
    // Nor is anything restored at a start, and the next start does better.
    desk.StartRun(Memory::Kept, Theme::Time);
    desk.run->picture = [](const ScreenState&) { return std::nullopt; };
    desk.run->sender.Prepare();
    QCOMPARE(desk.SavedBackground(), saved);
    desk.StartRun(Memory::Kept, Theme::Time);
    desk.run->sender.Prepare();
    QVERIFY(desk.SavedBackground() != saved);
    QVERIFY(desk.run->Round());
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Time, Orientation::Landscape)).isNull());
}

void TestPanelSender::SecondRunSendsNoFrameAgain() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Time, Orientation::Portrait));
    QVERIFY(desk.run->Round());
    const PanelCounts before = desk.Counts();
    desk.StartRun(Memory::Kept, Theme::Time, Orientation::Portrait);
    desk.run->sender.Prepare();
    QCOMPARE(desk.Counts().reports, before.reports);
    QVERIFY(!desk.run->sender.Status().isFrameOwed);
    desk.texts[Time] = QStringLiteral("08:01");
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames, before.frames);
    QCOMPARE(desk.Counts().commands - before.commands, quint64(3));
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
    QCOMPARE(desk.run->sender.ShownTexts()[Time], QStringLiteral("08:01"));
}

void TestPanelSender::RunThatCannotTellSendsTheFrame_data() {
    using Change = std::function<void(Desk&)>;
    QTest::addColumn<Change>("change");
    QTest::addColumn<bool>("remembers");
    const auto row = [](const char* name, bool remembers, const Change& change) {
        QTest::newRow(name) << change << remembers;
    };
    row("another panel", true, [](Desk& desk) { desk.Replug(VirtualHidApi::NodeNumbers::Same, "another"); });
    row("another frame was taken", true, [](Desk& desk) {
        desk.run->memory.Write({"virtual", QByteArray(40, '0')});
    });
    row("the memory is gone", true, [](Desk& desk) { desk.run->memory.Forget(); });
    row("the memory is damaged", true, [](Desk& desk) {
        QFile file(desk.folder.filePath(QStringLiteral("whole.state")));
        QVERIFY(file.resize(file.size() / 2));
    });
    row("a panel that forgets", false, [](Desk&) {});
}

void TestPanelSender::RunThatCannotTellSendsTheFrame() {
    QFETCH(std::function<void(Desk&)>, change);
    QFETCH(bool, remembers);
    Desk desk(remembers ? Memory::Kept : Memory::None);
    QVERIFY(desk.run->Apply(Theme::Default));
    const quint64 frames = desk.Counts().frames;
    change(desk);
    desk.StartRun(remembers ? Memory::Kept : Memory::None);
    desk.run->sender.Prepare();
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames - frames, quint64(1));
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames - frames, quint64(1));
    QCOMPARE(desk.run->sender.Status().isSoftwarePanel, !remembers);
    QCOMPARE(QFile::exists(desk.folder.filePath(QStringLiteral("whole.state"))), remembers);
}

void TestPanelSender::PreparingAgainDoesNothing() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Time));
    desk.run->sender.Prepare();
    QCOMPARE(desk.run->AppliedTheme(), Theme::Time);
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames, quint64(1));
}

void TestPanelSender::PreparingComposesAMissingBackgroundWithoutSending() {
    Desk desk;
    desk.run->sender.Prepare();
    QVERIFY(FrameStore(desk.BackgroundPath()).Load(ThemeScreen(Theme::Default, Orientation::Landscape)));
    QCOMPARE(desk.Counts().reports, quint64(0));
    // The frame that the panel remembers is still the same one.
    QVERIFY(desk.run->Round());
    const quint64 frames = desk.Counts().frames;
    QVERIFY(QFile::remove(desk.BackgroundPath()));
    desk.StartRun();
    desk.run->sender.Prepare();
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames, frames);
}

void TestPanelSender::FrameTakenByAPanelWithoutAKeyIsRecalled() {
    Desk desk;
    desk.Replug(VirtualHidApi::NodeNumbers::Same, "first");
    QVERIFY(desk.run->Apply(Theme::Default));
    const QByteArray id = desk.run->memory.Read()->frameId;
    desk.run->memory.Write({QByteArray(), id});
    const quint64 frames = desk.Counts().frames;
    desk.StartRun();
    desk.run->sender.Prepare();
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames, frames);
}

void TestPanelSender::EachRoundSetsTheClock() {
    Desk desk;
    QVERIFY(desk.run->sender.SendTimeSync());
    QCOMPARE(desk.Counts().commands, quint64(1));
    QVERIFY(desk.panel.State().clock.has_value());
    QVERIFY(desk.run->Apply(Theme::Default));
    for (int round = 1; round <= 3; ++round) {
        const quint64 before = desk.Counts().commands;
        QVERIFY(desk.run->Round());
        QCOMPARE(desk.Counts().commands - before, quint64(1));
    }
}

void TestPanelSender::StatusFollowsAFrame() {
    Desk desk;
    QCOMPARE(desk.run->Condition(), PanelCondition::NoScreen);
    desk.run->sender.Prepare();
    QVERIFY(desk.run->sender.Status().isFrameOwed);
    QVERIFY(!desk.run->sender.Status().isSoftwarePanel);
    QVERIFY(desk.run->sender.SendTimeSync());
    QCOMPARE(desk.run->Condition(), PanelCondition::Sending);
    const int changes = desk.run->changes;
    QVERIFY(desk.run->Round());
    QVERIFY(desk.run->changes > changes);
    QCOMPARE(desk.run->Condition(), PanelCondition::Sent);
    QVERIFY(desk.run->sender.Status().sentAt.isValid());
    QVERIFY(!desk.run->sender.Status().isFrameOwed);
    desk.run->now = desk.run->now.load() + kSentIsToldFor;
    QCOMPARE(desk.run->Condition(), PanelCondition::Connected);
}

KIVO_TEST(TestPanelSender)
#include "tst_panel_sender.moc"
