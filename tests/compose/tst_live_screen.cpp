#include <QtTest>

#include "compose/background_picture.h"
#include "compose/live_screen.h"
#include "compose_test_support.h"
#include "device/transfers.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// A software panel with everything before it.
struct Desk {
    VirtualHidApi panel;
    ScreenSession session{panel};
    Transfers transfers{session};
    QTemporaryDir folder;
    BackgroundStore backgrounds{folder.filePath(QStringLiteral("whole.png"))};
    ItemTexts texts{QStringLiteral("45℃"),
                    QStringLiteral("37%"),
                    QStringLiteral("20%"),
                    QStringLiteral("18:46"),
                    QStringLiteral("15w"),
                    QStringLiteral("2026.11.21"),
                    QStringLiteral("1000"),
                    QString(),
                    QString()};
    LiveScreen screen{transfers, backgrounds, [this](int item) { return texts[size_t(item)]; }};

    Desk() {
        session.InitDeviceTable();
        session.EnumerateScreens();
    }
    static ScreenState StateOf(Theme theme, Orientation orientation = Orientation::Landscape) {
        return ThemeScreen(theme, orientation, InterfaceLanguage::Chinese);
    }
    void Load(Theme theme, Orientation orientation = Orientation::Landscape) {
        screen.SetLoaded(StateOf(theme, orientation));
    }
    bool Apply(Theme theme) {
        screen.SetChosen(StateOf(theme));
        return screen.ComposeWholeFrame();
    }
    quint64 Areas() const { return panel.State().counts.areas; }
    QImage Picture() const { return panel.State().image.copy(); }
    QByteArray SavedBackground() const {
        QFile file(folder.filePath(QStringLiteral("whole.png")));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void SendAll() {
        for (int item = 0; item < kLiveValueCount; ++item) {
            screen.RenderLiveItem(texts[size_t(item)], item);
        }
    }
};

}  // namespace

class TestLiveScreen : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void ComposedFrameReachesThePanel();
    void FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel_data();
    void FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel();
    void UnchangedTimeIsSentAgainAndOtherItemsAreNot();
    void KeptDrawingsFollowTheState();
    void EditedButNotAppliedStateDoesNotReachThePanel();
    void FailedUploadLeavesStateTextsAndBackground();
    void FailedFirstUploadOfARunLeavesTheBackgroundOfTheLastRun();
    void ForgottenTextsAreSentInFull();
    void ShownTextsAreThoseThatWereTaken();
    void BackgroundIsRestoredWithoutSending();
    void ReplacedBackgroundIsSeen();
    void RegistersItselfWhileItLives();
    void OddItemsAndTextsDoNothing();
};

void TestLiveScreen::initTestCase() {
    SetUpDrawing();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestLiveScreen::ComposedFrameReachesThePanel() {
    Desk desk;
    desk.Load(Theme::Default, Orientation::Portrait);
    QVERIFY(desk.screen.ComposeWholeFrame());
    const PanelState state = desk.panel.State();
    QCOMPARE(state.counts.frames, quint64(1));
    QCOMPARE(state.counts.errors, quint64(0));
    QCOMPARE(state.orientation, std::optional<int>(2));
    SkinCache skins;
    const ScreenState applied = desk.screen.Applied();
    const QImage background = ComposeBackground(applied, LoadPicture(PicturePath(applied)), skins);
    QCOMPARE(state.UprightImage().convertToFormat(QImage::Format_RGB16),
             ComposeFrame(applied, background, desk.texts));
}

void TestLiveScreen::FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel_data() {
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

void TestLiveScreen::FirstRoundAfterAFrameRedrawsEveryItemAndChangesNoPixel() {
    QFETCH(int, theme);
    QFETCH(int, orientation);
    QFETCH(int, reports);
    Desk desk;
    desk.Load(Theme(theme), Orientation(orientation));
    QVERIFY(desk.screen.ComposeWholeFrame());
    const QImage composed = desk.Picture();
    desk.SendAll();
    QCOMPARE(int(desk.Areas()), reports);
    QCOMPARE(desk.Picture(), composed);
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

void TestLiveScreen::UnchangedTimeIsSentAgainAndOtherItemsAreNot() {
    Desk desk;
    desk.Load(Theme::Default);
    QVERIFY(desk.screen.ComposeWholeFrame());
    desk.SendAll();
    const QImage before = desk.Picture();
    const quint64 areas = desk.Areas();
    for (int round = 0; round < 3; ++round) {
        desk.SendAll();
    }
    QCOMPARE(desk.Areas() - areas, quint64(6));
    QCOMPARE(desk.Picture(), before);
}

void TestLiveScreen::KeptDrawingsFollowTheState() {
    Desk desk;
    desk.Load(Theme::Default);
    QVERIFY(desk.screen.ComposeWholeFrame());
    desk.SendAll();
    QVERIFY(desk.Apply(Theme::Time));
    const QImage composed = desk.Picture();
    desk.SendAll();
    QCOMPARE(desk.Picture(), composed);
    // And back, at another time.
    desk.texts[Time] = QStringLiteral("18:47");
    QVERIFY(desk.Apply(Theme::Default));
    const QImage second = desk.Picture();
    desk.SendAll();
    QCOMPARE(desk.Picture(), second);
}

void TestLiveScreen::EditedButNotAppliedStateDoesNotReachThePanel() {
    Desk desk;
    desk.Load(Theme::Default);
    QVERIFY(desk.screen.ComposeWholeFrame());
    const QImage composed = desk.Picture();
    desk.screen.SetChosen(Desk::StateOf(Theme::Time, Orientation::Portrait));
    desk.SendAll();
    QCOMPARE(desk.Picture(), composed);
    QCOMPARE(int(desk.screen.Applied().theme), int(Theme::Default));
}

void TestLiveScreen::FailedUploadLeavesStateTextsAndBackground() {
    Desk desk;
    desk.Load(Theme::Default);
    QVERIFY(desk.screen.ComposeWholeFrame());
    desk.SendAll();
    const QImage before = desk.Picture();
    const QByteArray saved = desk.SavedBackground();

    desk.panel.FailWritesFrom(5);
    QVERIFY(!desk.Apply(Theme::Scene));
    desk.panel.ClearFaults();
    QCOMPARE(int(desk.screen.Applied().theme), int(Theme::Default));
    // The file belongs to the last composed frame, taken or not.
    QVERIFY(desk.SavedBackground() != saved);
    // Live values still stand on what the panel shows: drawn again in full, no pixel changes.
    desk.screen.ForgetDrawnTexts();
    desk.SendAll();
    QCOMPARE(desk.Picture(), before);

    QVERIFY(desk.screen.ComposeWholeFrame());
    QCOMPARE(int(desk.screen.Applied().theme), int(Theme::Scene));
}

void TestLiveScreen::FailedFirstUploadOfARunLeavesTheBackgroundOfTheLastRun() {
    Desk desk;
    desk.Load(Theme::Default);
    QVERIFY(desk.screen.ComposeWholeFrame());
    desk.SendAll();
    const QImage before = desk.Picture();

    BackgroundStore backgrounds(desk.folder.filePath(QStringLiteral("whole.png")));
    LiveScreen nextRun(desk.transfers, backgrounds, [&desk](int item) { return desk.texts[size_t(item)]; });
    nextRun.SetLoaded(Desk::StateOf(Theme::Default));
    desk.panel.FailWritesFrom(1);
    for (const Theme theme : {Theme::Scene, Theme::Tdp}) {
        nextRun.SetChosen(Desk::StateOf(theme));
        QVERIFY(!nextRun.ComposeWholeFrame());
    }
    desk.panel.ClearFaults();
    for (int item = 0; item < kLiveValueCount; ++item) {
        nextRun.RenderLiveItem(desk.texts[size_t(item)], item);
    }
    QVERIFY(desk.Areas() > 0);
    QCOMPARE(desk.Picture(), before);
}

void TestLiveScreen::ForgottenTextsAreSentInFull() {
    Desk desk;
    desk.Load(Theme::Scene);
    QVERIFY(desk.screen.ComposeWholeFrame());
    const QImage composed = desk.Picture();
    // The panel has lost its picture.
    const std::vector<quint8> black(static_cast<size_t>(kFrameBytes));
    QVERIFY(desk.transfers.SendWholeImage(black.data(), 0));
    desk.screen.ForgetDrawnTexts();
    desk.SendAll();
    const QRect time = desk.screen.Applied().layout.textRect[Time];
    QCOMPARE(desk.Picture().copy(time), composed.copy(time));
}

void TestLiveScreen::ShownTextsAreThoseThatWereTaken() {
    Desk desk;
    desk.Load(Theme::Time);
    QVERIFY(desk.screen.ShownTexts()[Time].isEmpty());
    QVERIFY(desk.screen.ComposeWholeFrame());
    QCOMPARE(desk.screen.ShownTexts()[Time], QStringLiteral("18:46"));
    QVERIFY(desk.screen.ShownTexts()[FanSpeed].isEmpty());  // this theme hides it
    desk.panel.Unplug();
    desk.screen.RenderLiveItem(QStringLiteral("18:47"), Time);
    QCOMPARE(desk.screen.ShownTexts()[Time], QStringLiteral("18:46"));
    desk.panel.Plug();
    desk.screen.RenderLiveItem(QStringLiteral("18:47"), Time);
    QCOMPARE(desk.screen.ShownTexts()[Time], QStringLiteral("18:47"));
}

void TestLiveScreen::BackgroundIsRestoredWithoutSending() {
    Desk desk;
    desk.Load(Theme::Default);
    desk.screen.RestoreBackground();
    QVERIFY(desk.backgrounds.Exists());
    QCOMPARE(desk.panel.State().counts.reports, quint64(0));
}

void TestLiveScreen::ReplacedBackgroundIsSeen() {
    Desk desk;
    desk.Load(Theme::Default);
    QVERIFY(desk.screen.ComposeWholeFrame());
    QImage red(320, 170, QImage::Format_RGB32);
    red.fill(Qt::red);
    QVERIFY(red.save(desk.folder.filePath(QStringLiteral("whole.png"))));
    desk.screen.RenderLiveItem(QStringLiteral("99%"), CpuUsage);
    QCOMPARE(desk.Picture().pixelColor(245, 119), QColor(Qt::red));
}

void TestLiveScreen::RegistersItselfWhileItLives() {
    QVERIFY(liveItemRenderer == nullptr);
    {
        const Desk desk;
        QVERIFY(liveItemRenderer == &desk.screen);
    }
    QVERIFY(liveItemRenderer == nullptr);
}

void TestLiveScreen::OddItemsAndTextsDoNothing() {
    Desk desk;
    desk.Load(Theme::Default);
    QVERIFY(desk.screen.ComposeWholeFrame());
    const quint64 areas = desk.Areas();
    desk.screen.RenderLiveItem(QString(), Time);
    desk.screen.RenderLiveItem(QStringLiteral("x"), -1);
    desk.screen.RenderLiveItem(QStringLiteral("x"), kLiveValueCount);
    desk.screen.RenderLiveItem(QStringLiteral("x"), OtherText);
    QCOMPARE(desk.Areas(), areas);
}

KIVO_TEST(TestLiveScreen)
#include "tst_live_screen.moc"
