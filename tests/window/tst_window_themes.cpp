#include "support/person.h"
#include "support/test_program.h"
#include "widgets/nimb_push_button.h"

Q_DECLARE_METATYPE(kivo::Theme)
Q_DECLARE_METATYPE(kivo::Orientation)

using namespace kivo;
using namespace kivo::test;

// Themes as a person picks and applies them, read on the panel.
class TestWindowThemes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void AppliedThemeIsOnThePanel_data();
    void AppliedThemeIsOnThePanel();
    void ListFollowsTheChoice();
    void NextStartShowsWhatWasApplied();
    void WhatIsNotAppliedNeverReachesThePanel();
    void ThemesOneAfterAnotherWhileItRefreshes();
    void FailedUploadIsMadeUpFor_data();
    void FailedUploadIsMadeUpFor();
    void FailedUploadAfterARestartIsMadeUpFor();
    void SignStandsInTheMiddleAndClosesByItself_data();
    void SignStandsInTheMiddleAndClosesByItself();
    void EscapeAndCloseLeaveTheSignOpen();
    void ClosingTheWindowBehindTheSignLosesNothing();
    void ApplyPressedTwiceUploadsOnce();
    void ApplyRightAfterTheStart_data();
    void ApplyRightAfterTheStart();
    void ExitDuringAnUploadIsAskedAfterIt_data();
    void ExitDuringAnUploadIsAskedAfterIt();
    void EachPageKeepsItsStyle();
    void ThemeApplyStoresNoCustomEdits();
    void KeyboardAlonePicksAndApplies();
};

namespace {

ScreenState ThemeLook(Theme theme, Orientation orientation, int style,
                      InterfaceLanguage language = InterfaceLanguage::English) {
    ThemeState themes = LoadThemeState(language);
    themes.mode = 0;
    themes.theme = int(theme);
    themes.orientation = orientation;
    themes.themeStyle = style;
    return MakeScreenState(themes, LoadSlotTable(), LoadCurRectId(), language);
}

const char* OrientationButton(Orientation orientation) {
    return orientation == Orientation::Landscape ? "btnLandscape" : "btnPortrait";
}

void Choose(const Desk& desk, Theme theme, Orientation orientation) {
    ClickOn(desk, OrientationButton(orientation));
    ClickListRow(desk, "themeList", int(theme));
}

int Chosen(const Desk& desk, const char* first, const char* second) {
    const auto pressed = [&desk](const char* name) {
        return desk.Find<NimbPushButton>(name)->IsPressed() ? 1 : 0;
    };
    return pressed(first) == pressed(second) ? -1 : pressed(second);
}

// The panel as it is after a start, with the look that the settings have.
std::unique_ptr<Desk> RunningDesk() {
    auto desk = std::make_unique<Desk>();
    StartBlank(*desk);
    desk->Show();
    return desk;
}
#define TRY_RUNNING(desk) QTRY_VERIFY_WITH_TIMEOUT((desk)->panel.State().counts.areas > 5, 20000)

}  // namespace

void TestWindowThemes::initTestCase() {
    PrepareApplication();
}

void TestWindowThemes::init() {
    SetUpProfile();
}

void TestWindowThemes::AppliedThemeIsOnThePanel_data() {
    QTest::addColumn<Theme>("theme");
    QTest::addColumn<Orientation>("orientation");
    QTest::addColumn<int>("style");
    QTest::addColumn<QString>("locale");
    const QString english = QStringLiteral("en_US");
    for (const Orientation orientation : {Orientation::Landscape, Orientation::Portrait}) {
        const char* lies = orientation == Orientation::Landscape ? "landscape" : "portrait";
        QTest::addRow("default %s", lies) << Theme::Default << orientation << 0 << english;
        QTest::addRow("scene %s", lies) << Theme::Scene << orientation << 0 << english;
        QTest::addRow("scene, small date %s", lies) << Theme::Scene << orientation << 1 << english;
        QTest::addRow("TDP %s", lies) << Theme::Tdp << orientation << 0 << english;
        QTest::addRow("time %s", lies) << Theme::Time << orientation << 0 << english;
    }
    QTest::newRow("Chinese") << Theme::Time << Orientation::Landscape << 0 << QStringLiteral("zh_CN");
    QTest::newRow("Russian") << Theme::Tdp << Orientation::Portrait << 0 << QStringLiteral("ru_RU");
}

void TestWindowThemes::AppliedThemeIsOnThePanel() {
    QFETCH(Theme, theme);
    QFETCH(Orientation, orientation);
    QFETCH(int, style);
    QFETCH(QString, locale);
    // Else the texts of another language would be owed at the start.
    RememberPanel(LanguageForLocale(QLocale(locale)));
    Desk desk{QLocale(locale)};
    desk.Show();
    Choose(desk, theme, orientation);
    if (style == 1) {
        ClickOn(desk, "choiceSecond");
    }
    const ScreenState look = ThemeLook(theme, orientation, style, CurrentInterfaceLanguage());
    QCOMPARE(desk.panel.State().counts.frames, quint64(0));

    QVERIFY(ApplyAndWait(desk));
    const QVector<PanelReport> reports = desk.wire.Reports();
    int at = 0;
    while (at < reports.size() && reports[at].kind != PanelReportKind::Chunk) {
        ++at;
    }
    QVERIFY(reports.size() >= at + 30);
    for (int chunk = 1; chunk <= 27; ++chunk, ++at) {
        QCOMPARE(int(reports[at].kind), int(PanelReportKind::Chunk));
        QCOMPARE(reports[at].chunkNumber, chunk);
    }
    QCOMPARE(int(reports[at].kind), int(PanelReportKind::Orientation));
    QCOMPARE(int(reports[at + 1].kind), int(PanelReportKind::Orientation));
    QCOMPARE(reports[at].orientation, int(orientation) + 1);
    QCOMPARE(int(reports[at + 2].kind), int(PanelReportKind::TimeShow));

    QVERIFY(desk.window->Session().Applied() == look);
    QVERIFY(SavedLook(CurrentInterfaceLanguage()) == look);
    TRY_PANEL_SHOWS(desk, look);
    TRY_VALUES_GO_ON(desk);
    TRY_PANEL_SHOWS(desk, look);
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
    QCOMPARE(desk.panel.State().orientation, std::optional<int>(int(orientation) + 1));
}

void TestWindowThemes::ListFollowsTheChoice() {
    Desk desk;
    desk.Show();
    auto* list = desk.Find<QListWidget>("themeList");
    QCOMPARE(list->currentRow(), 0);
    const qint64 lying = list->item(0)->icon().cacheKey();
    ClickListRow(desk, "themeList", 2);
    ClickOn(desk, "btnPortrait");
    QCOMPARE(list->currentRow(), 2);
    QVERIFY(list->item(0)->icon().cacheKey() != lying);
    QCOMPARE(Chosen(desk, "btnLandscape", "btnPortrait"), 1);
    // Only the scene theme has two sizes of the date.
    for (int theme = 0; theme < kThemeCount; ++theme) {
        ClickListRow(desk, "themeList", theme);
        QCOMPARE(desk.Find("choiceFirst")->isVisible(), theme == int(Theme::Scene));
        QCOMPARE(desk.Find("dateSizeLabel")->isVisible(), theme == int(Theme::Scene));
        QCOMPARE(desk.Find("choiceSecond")->isVisible(), theme == int(Theme::Scene));
    }
}

void TestWindowThemes::NextStartShowsWhatWasApplied() {
    ScreenState look;
    {
        Desk desk;
        desk.Show();
        Choose(desk, Theme::Scene, Orientation::Portrait);
        ClickOn(desk, "choiceSecond");
        QVERIFY(ApplyAndWait(desk));
        look = desk.window->Session().Applied();
    }
    Desk desk;
    StartBlank(desk);
    desk.Show();
    QCOMPARE(desk.Find<QListWidget>("themeList")->currentRow(), int(Theme::Scene));
    QCOMPARE(Chosen(desk, "btnLandscape", "btnPortrait"), 1);
    QCOMPARE(Chosen(desk, "choiceFirst", "choiceSecond"), 1);
    QCOMPARE(Chosen(desk, "btnTheme", "btnImage"), 0);
    QVERIFY(desk.Editor()->Shown() == look);
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.frames == 1, 20000);
    TRY_PANEL_SHOWS(desk, look);
}

void TestWindowThemes::WhatIsNotAppliedNeverReachesThePanel() {
    const auto desk = RunningDesk();
    TRY_RUNNING(desk);
    const ScreenState look = desk->window->Session().Applied();
    const ThemeState saved = LoadThemeState(InterfaceLanguage::English);
    Choose(*desk, Theme::Tdp, Orientation::Portrait);
    ClickListRow(*desk, "pictureList", 3);
    TRY_VALUES_GO_ON(*desk);
    TRY_PANEL_SHOWS(*desk, look);
    ClickListRow(*desk, "themeList", int(Theme::Scene));
    ClickOn(*desk, "choiceSecond");
    ClickOn(*desk, "btnImage");
    ClickAt(desk->Find("check4"), QPoint(8, 12));
    TRY_VALUES_GO_ON(*desk);
    desk->window->hide();
    TRY_VALUES_GO_ON(*desk);
    TRY_PANEL_SHOWS(*desk, look);
    QCOMPARE(desk->panel.State().counts.frames, quint64(1));
    QCOMPARE(desk->panel.State().orientation, std::optional<int>(1));
    QVERIFY(LoadThemeState(InterfaceLanguage::English) == saved);
}

void TestWindowThemes::ThemesOneAfterAnotherWhileItRefreshes() {
    const auto desk = RunningDesk();
    TRY_RUNNING(desk);
    quint64 frames = 1;
    for (const Theme theme : {Theme::Time, Theme::Scene}) {
        const Orientation orientation = frames % 2 == 0 ? Orientation::Landscape : Orientation::Portrait;
        Choose(*desk, theme, orientation);
        QVERIFY(ApplyAndWait(*desk));
        ++frames;
        QCOMPARE(desk->panel.State().counts.frames, frames);
        TRY_VALUES_GO_ON(*desk);
        TRY_PANEL_SHOWS(*desk, ThemeLook(theme, orientation, 0));
    }
}

void TestWindowThemes::FailedUploadIsMadeUpFor_data() {
    QTest::addColumn<int>("chunk");  // 0: pulled out before
    QTest::addColumn<bool>("vanishes");
    QTest::newRow("unplugged") << 0 << true;
    QTest::newRow("pulled out at the first chunk") << 1 << true;
    QTest::newRow("a chunk in the middle is refused") << 14 << false;
    QTest::newRow("pulled out at the last chunk") << 27 << true;
}

void TestWindowThemes::FailedUploadIsMadeUpFor() {
    QFETCH(int, chunk);
    QFETCH(bool, vanishes);
    const auto desk = RunningDesk();
    TRY_RUNNING(desk);
    const ScreenState before = desk->window->Session().Applied();
    const ScreenState after = ThemeLook(Theme::Time, Orientation::Portrait, 0);
    Choose(*desk, Theme::Time, Orientation::Portrait);
    if (chunk == 0) {
        desk->panel.Unplug();
    }
    desk->wire.BeforeChunk(chunk,
                           [&] { vanishes ? desk->panel.VanishAtReport(1) : desk->panel.FailWritesFrom(1); });
    QVERIFY(ApplyAndWait(*desk));
    // Over a frame of which a part was taken nothing more is drawn; else the old one stays in use.
    QVERIFY(desk->window->Session().Applied() == (chunk > 1 ? after : before));
    QVERIFY(desk->window->Session().Status().isFrameOwed);
    QCOMPARE(desk->panel.State().counts.frames, quint64(1));
    QVERIFY(SavedLook() == after);

    desk->panel.ClearFaults();
    desk->panel.Plug();
    QTRY_VERIFY_WITH_TIMEOUT(!desk->window->Session().Status().isFrameOwed, 20000);
    TRY_VALUES_GO_ON(*desk);
    TRY_PANEL_SHOWS(*desk, after);
    QCOMPARE(desk->panel.State().counts.frames, quint64(2));
    QCOMPARE(desk->panel.State().orientation, std::optional<int>(2));
}

void TestWindowThemes::FailedUploadAfterARestartIsMadeUpFor() {
    const auto desk = RunningDesk();
    TRY_RUNNING(desk);
    desk->Restart();
    desk->Show();
    TRY_VALUES_GO_ON(*desk);
    for (const Theme theme : {Theme::Scene, Theme::Tdp}) {
        ClickListRow(*desk, "themeList", int(theme));
        ClickListRow(*desk, "pictureList", 4);
        const ScreenState look = desk->Editor()->Shown();
        desk->wire.BeforeChunk(3, [&] { desk->panel.FailWritesFrom(1); });
        QVERIFY(ApplyAndWait(*desk));
        desk->panel.ClearFaults();
        QTRY_VERIFY_WITH_TIMEOUT(!desk->window->Session().Status().isFrameOwed, 20000);
        TRY_VALUES_GO_ON(*desk);
        TRY_PANEL_SHOWS(*desk, look);
    }
}

void TestWindowThemes::SignStandsInTheMiddleAndClosesByItself_data() {
    QTest::addColumn<QPoint>("place");
    QTest::newRow("odd") << QPoint(37, 23);
    QTest::newRow("in part off the screen") << QPoint(-101, -33);
}

void TestWindowThemes::SignStandsInTheMiddleAndClosesByItself() {
    QFETCH(QPoint, place);
    Desk desk;
    desk.Show();
    desk.window->move(place);
    bool stood = false;
    QVERIFY(ApplyAndWait(desk, [&](const NimbProcessDialog& sign) {
        stood = sign.isVisible() && sign.isModal() &&
                sign.geometry() == QRect(place.x() + 480 - 64, place.y() + 294 - 64, 128, 128);
    }));
    QVERIFY(stood);
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
}

void TestWindowThemes::EscapeAndCloseLeaveTheSignOpen() {
    Desk desk;
    desk.Show();
    bool stayed = false;
    QVERIFY(ApplyAndWait(desk, [&](NimbProcessDialog& sign) {
        QTest::keyClick(sign.windowHandle(), Qt::Key_Escape);
        sign.close();
        sign.reject();
        ClickOn(desk, "btnExit");
        stayed = sign.isVisible() && QApplication::activeModalWidget() == &sign &&
                 desk.panel.State().counts.frames == 0;
    }));
    QVERIFY(stayed);
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
    TRY_VALUES_GO_ON(desk);
}

void TestWindowThemes::ClosingTheWindowBehindTheSignLosesNothing() {
    Desk desk;
    desk.Show();
    QVERIFY(ApplyAndWait(desk, [&](const NimbProcessDialog&) { desk.window->close(); }));
    QVERIFY(!desk.window->isVisible());
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
    TRY_VALUES_GO_ON(desk);
    desk.window->BringToFront();
    QVERIFY(QTest::qWaitForWindowExposed(desk.window.get()));
    QVERIFY(ApplyAndWait(desk));
}

void TestWindowThemes::ApplyPressedTwiceUploadsOnce() {
    Desk desk;
    desk.Show();
    auto* apply = desk.Find("btnApply");
    const auto post = [apply](QEvent::Type type) {
        const QPointF at(apply->rect().center());
        const auto held = type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton;
        auto* event = new QMouseEvent(type, at, apply->mapToGlobal(at.toPoint()), Qt::LeftButton, held, {});
        QCoreApplication::postEvent(apply, event);
    };
    // The second click waits in the queue when the first one begins to upload.
    for (int click = 0; click < 2; ++click) {
        post(QEvent::MouseButtonPress);
        post(QEvent::MouseButtonRelease);
    }
    QTRY_VERIFY(qobject_cast<NimbProcessDialog*>(QApplication::activeModalWidget()) == nullptr &&
                desk.panel.State().counts.frames > 0);
    QCOMPARE(desk.panel.State().counts.frames, quint64(1));
    // While the sign turns, nothing gets through to the button.
    QVERIFY(ApplyAndWait(desk, [&](const NimbProcessDialog&) { ClickOn(apply); }));
    TRY_VALUES_GO_ON(desk);
    QCOMPARE(desk.panel.State().counts.frames, quint64(2));
}

void TestWindowThemes::ApplyRightAfterTheStart_data() {
    QTest::addColumn<bool>("firstRun");
    QTest::newRow("later run") << false;
    QTest::newRow("first run") << true;
}

// The threads are started half a second later, when the upload is already under way.
void TestWindowThemes::ApplyRightAfterTheStart() {
    QFETCH(bool, firstRun);
    if (firstRun) {
        ForgetEverything();
    }
    Desk desk;
    desk.Show();
    Choose(desk, Theme::Tdp, Orientation::Portrait);
    QVERIFY(ApplyAndWait(desk));
    QTRY_VERIFY_WITH_TIMEOUT(desk.window->isVisible() != firstRun, 20000);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    TRY_VALUES_GO_ON(desk);
    TRY_PANEL_SHOWS(desk, ThemeLook(Theme::Tdp, Orientation::Portrait, 0));
    QCOMPARE(int(configFolderCreated), 0);
}

void TestWindowThemes::ExitDuringAnUploadIsAskedAfterIt_data() {
    QTest::addColumn<bool>("hasTray");
    QTest::newRow("from the tray") << true;
    QTest::newRow("by closing, without a tray") << false;
}

void TestWindowThemes::ExitDuringAnUploadIsAskedAfterIt() {
    QFETCH(bool, hasTray);
    Desk desk(QLocale(QStringLiteral("en_US")), hasTray);
    desk.Show();
    quint64 framesWhenAsked = 0;
    const auto ask = [&](const NimbProcessDialog&) {
        if (hasTray) {
            desk.window->slotExit();
            desk.window->slotExit();
        } else {
            desk.window->close();
        }
    };
    OnNextDialog<ExitMessageBox>(desk.window.get(), [&](ExitMessageBox* box) {
        framesWhenAsked = desk.panel.State().counts.frames;
        ClickOn(box->findChild<QWidget*>(QStringLiteral("btnCancel")));
    });
    QVERIFY(ApplyAndWait(desk, ask));
    QTRY_COMPARE(framesWhenAsked, quint64(1));
    QTRY_VERIFY(QApplication::activeModalWidget() == nullptr);
    QVERIFY(desk.window->isVisible());
    TRY_VALUES_GO_ON(desk);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void TestWindowThemes::EachPageKeepsItsStyle() {
    Desk desk;
    desk.Show();
    const auto style = [&] { return Chosen(desk, "choiceFirst", "choiceSecond"); };
    ClickListRow(desk, "themeList", int(Theme::Scene));
    ClickOn(desk, "choiceSecond");
    QCOMPARE(style(), 1);
    ClickOn(desk, "btnImage");
    QCOMPARE(style(), 0);
    QCOMPARE(desk.Editor()->Shown().variant, 0);
    ClickOn(desk, "btnTheme");
    QCOMPARE(style(), 1);
    ClickOn(desk, "btnImage");
    ClickOn(desk, "choiceSecond");
    QCOMPARE(desk.Editor()->Shown().variant, 1);
    ClickOn(desk, "btnTheme");
    ClickOn(desk, "choiceFirst");
    ClickListRow(desk, "themeList", int(Theme::Tdp));
    ClickOn(desk, "btnPortrait");
    ClickOn(desk, "btnImage");
    QCOMPARE(desk.Editor()->Shown().variant, 1);
    QCOMPARE(Chosen(desk, "btnLandscape", "btnPortrait"), 1);
    ClickOn(desk, "btnTheme");
    QCOMPARE(desk.Find<QListWidget>("themeList")->currentRow(), int(Theme::Tdp));
    QVERIFY(desk.Editor()->Shown() == ThemeLook(Theme::Tdp, Orientation::Portrait, 0));
}

void TestWindowThemes::ThemeApplyStoresNoCustomEdits() {
    Desk desk;
    desk.Show();
    const ThemeState before = LoadThemeState(InterfaceLanguage::English);
    const SlotTable slotsBefore = LoadSlotTable();
    ClickOn(desk, "btnImage");
    ClickOn(desk, "btnEdit");
    auto* box = desk.Find<QCheckBox>("check4");
    const bool ticked = !box->isChecked();
    ClickAt(box, QPoint(8, 12));
    QCOMPARE(box->isChecked(), ticked);
    ClickListRow(desk, "pictureList", 5);
    const ScreenState edited = desk.Editor()->Shown();

    ClickOn(desk, "btnTheme");
    ClickListRow(desk, "themeList", int(Theme::Time));
    QVERIFY(ApplyAndWait(desk));
    const ThemeState after = LoadThemeState(InterfaceLanguage::English);
    QCOMPARE(after.theme, int(Theme::Time));
    QVERIFY(after.layouts == before.layouts);
    QVERIFY(LoadSlotTable() == slotsBefore);

    // Nor are they lost.
    ClickOn(desk, "btnImage");
    QVERIFY(desk.Editor()->Shown() == edited);
    QCOMPARE(box->isChecked(), ticked);
    QVERIFY(ApplyAndWait(desk));
    QVERIFY(SavedLook() == edited);
    TRY_PANEL_SHOWS(desk, edited);
}

void TestWindowThemes::KeyboardAlonePicksAndApplies() {
    Desk desk;
    desk.Show();
    QVERIFY(QTest::qWaitForWindowActive(desk.window.get()));
    QVERIFY(TabTo(desk, "btnPortrait"));
    PressKey(desk, Qt::Key_Space);
    QVERIFY(TabTo(desk, "themeList"));
    PressKey(desk, Qt::Key_Right);
    PressKey(desk, Qt::Key_Right);
    PressKey(desk, Qt::Key_Left);
    QVERIFY(TabTo(desk, "choiceSecond"));
    PressKey(desk, Qt::Key_Return);
    QVERIFY(TabTo(desk, "pictureList"));
    const QString before = PicturePath(desk.Editor()->Shown());
    PressKey(desk, Qt::Key_Right);
    PressKey(desk, Qt::Key_Space);
    const QString picture = PicturePath(desk.Editor()->Shown());
    QCOMPARE(BuiltInBackgrounds().indexOf(picture), BuiltInBackgrounds().indexOf(before) + 1);
    QVERIFY(TabTo(desk, "btnApply"));
    bool seen = false;
    OnNextDialog<NimbProcessDialog>(desk.window.get(), [&](NimbProcessDialog*) { seen = true; });
    PressKey(desk, Qt::Key_Return);
    QVERIFY(seen);
    ScreenState look = ThemeLook(Theme::Scene, Orientation::Portrait, 1);
    QCOMPARE(PicturePath(look), picture);
    QVERIFY(desk.window->Session().Applied() == look);
    TRY_PANEL_SHOWS(desk, look);
    QCOMPARE(desk.window->focusWidget(), desk.Find("btnApply"));
}

KIVO_TEST(TestWindowThemes)
#include "tst_window_themes.moc"
