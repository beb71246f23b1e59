#include <QPushButton>
#include <QTimeEdit>
#include <thread>

#include "support/person.h"
#include "support/test_program.h"
#include "window/away_light.h"
#include "window/night_dialog.h"
#include "window/state_line.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kPatienceMs = 30000;

AwayRules RulesWith(bool AwayRules::*tick) {
    AwayRules rules;
    rules.*tick = true;
    return rules;
}

}  // namespace

// A person who goes and comes back, as the screen shows it.
class TestAwayLight : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init();
    void cleanup() { m_desk.reset(); }
    void PanelIsBlackWhileLockedAndThenAsBefore();
    void WhatIsNotTickedDarkensNothing();
    void SleepIsLetOnceThePanelIsBlack();
    void SleepThatDoesNotWaitIsReadyWhenItIsTold();
    void SleepWithoutAScreenIsLet();
    void ScreenThatHangsHoldsNoSleepUp();
    void WriteThatEndsAfterTheWakeUpLetsNoLaterSleep();
    void SleepThatNobodyEndedEndsWithTheWakeUp();
    void SystemIsHeldOnlyForATick();
    void LockInTheMiddleOfAnUpload_data();
    void LockInTheMiddleOfAnUpload();
    void CommandAndLockAreTwoReasons();
    void PersonAtTheWindowEndsALock();
    void WindowAskedForByACommandEndsNoLock();
    void EndLeavesABlackPanel();
    void EndWithoutItsTickLeavesThePicture();
    void EndBrightensWhatWasDarkForAnotherReason_data();
    void EndBrightensWhatWasDarkForAnotherReason();
    void ScreenThatHangsHoldsTheEndUpForAWhileOnly();
    void NightComesAndGoes_data();
    void NightComesAndGoes();
    void TickIsFollowedAtOnce();
    void NightTimesAreAskedFor();
    void RulesThatCannotBeSavedAreTold();

private:
    // The program starts anew with these rules.
    void StartWith(const AwayRules& rules);
    bool IsRunning() const { return m_desk->panel.State().counts.areas > 5; }
    bool IsBlack() const;
    // A whole picture of the saved state, with the values that were sent.
    bool ShowsItsPicture() const;
    // Not asked a second time, as QTRY_VERIFY does: the next value may be on its way by then.
    bool ShowsItsPictureSoon() const {
        return QTest::qWaitFor([this] { return ShowsItsPicture(); }, kPatienceMs);
    }
    // As a second start does.
    void Tell(OutsideKind kind, const char* value);
    QString Phrase() const { return m_desk->Find<StateLine>("stateLine")->Phrase(); }
    int Frames() const { return int(m_desk->panel.State().counts.frames); }

    std::unique_ptr<Desk> m_desk;
    mutable PanelBackground m_background;  // composed last, and of what
    mutable ScreenState m_backgroundOf;
};

void TestAwayLight::init() {
    SetUpProfile();
    m_desk = std::make_unique<Desk>();
}

void TestAwayLight::StartWith(const AwayRules& rules) {
    m_desk->Close();
    QVERIFY(SaveAwayRules(rules));
    PanelMemory().Forget();  // so that the panel gets its picture
    m_desk->startWindow();
    const quint64 areas = m_desk->panel.State().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(m_desk->panel.State().counts.areas > areas + 5, kPatienceMs);
}

bool TestAwayLight::IsBlack() const {
    const QImage image = m_desk->panel.State().image.copy();
    QImage black(image.size(), image.format());
    black.fill(Qt::black);
    return image == black;
}

void TestAwayLight::Tell(OutsideKind kind, const char* value) {
    OutsideCommands commands;
    commands[size_t(kind)] = QString::fromLatin1(value);
    m_desk->window->TakeFromOutside(commands, {[] { return true; }, [](const OutsideAnswer&) {}});
}

bool TestAwayLight::ShowsItsPicture() const {
    const LiveSession& session = m_desk->window->Session();
    if (session.Status().isFrameOwed) {
        return false;
    }
    const ScreenState state = SavedLook();
    if (m_background.image.isNull() || m_backgroundOf != state) {
        m_background = ExpectedBackground(state);
        m_backgroundOf = state;
    }
    return PixelsThatDiffer(ComposeFrame(state, m_background, session.ShownTexts()),
                            m_desk->panel.State().UprightImage().convertToFormat(QImage::Format_RGB16)) == 0;
}

void TestAwayLight::PanelIsBlackWhileLockedAndThenAsBefore() {
    StartWith(RulesWith(&AwayRules::darkAtLock));
    QVERIFY(ShowsItsPictureSoon());
    const int frames = Frames();
    Q_EMIT m_desk->away->lockedChanged(true);
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(Phrase(), QStringLiteral("Screen is dark: locked"), kPatienceMs);
    // Then the clock alone: rounds go on, and nothing is drawn.
    const PanelCounts counts = m_desk->panel.State().counts;
    QTRY_VERIFY_WITH_TIMEOUT(m_desk->panel.State().counts.commands > counts.commands + 2, kPatienceMs);
    QCOMPARE(m_desk->panel.State().counts.areas, counts.areas);
    QCOMPARE(Frames(), frames + 1);
    QVERIFY(IsBlack());
    Q_EMIT m_desk->away->lockedChanged(false);
    QVERIFY(ShowsItsPictureSoon());
    QCOMPARE(Frames(), frames + 2);
    QTRY_VERIFY_WITH_TIMEOUT(!Phrase().contains(QStringLiteral("dark")), kPatienceMs);
    QCOMPARE(m_desk->panel.State().counts.errors, quint64(0));
}

void TestAwayLight::WhatIsNotTickedDarkensNothing() {
    AwayRules none;
    none.darkAtSleep = false;
    StartWith(none);
    const int frames = Frames();
    Q_EMIT m_desk->away->lockedChanged(true);
    Q_EMIT m_desk->away->saverChanged(true);
    Q_EMIT m_desk->away->sleeping();
    const quint64 commands = m_desk->panel.State().counts.commands;
    QTRY_VERIFY_WITH_TIMEOUT(m_desk->panel.State().counts.commands > commands + 2, kPatienceMs);
    QCOMPARE(Frames(), frames);
    QVERIFY(!Phrase().contains(QStringLiteral("dark")));
}

void TestAwayLight::SleepIsLetOnceThePanelIsBlack() {
    StartWith({});
    QVERIFY(m_desk->away->holdsSleep);
    Q_EMIT m_desk->away->sleeping();
    QCOMPARE(m_desk->away->timesLet, 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->away->timesLet, 1, kPatienceMs);
    QVERIFY(IsBlack());
    QTRY_COMPARE_WITH_TIMEOUT(Phrase(), QStringLiteral("Screen is dark: asleep"), kPatienceMs);
    Q_EMIT m_desk->away->awake();
    QVERIFY(ShowsItsPictureSoon());
}

void TestAwayLight::SleepThatDoesNotWaitIsReadyWhenItIsTold() {
    StartWith({});
    m_desk->away->longestInSleeping = std::chrono::milliseconds(kPatienceMs);
    Q_EMIT m_desk->away->sleeping();
    QVERIFY(IsBlack());
}

void TestAwayLight::SleepWithoutAScreenIsLet() {
    StartWith({});
    m_desk->panel.Unplug();
    Q_EMIT m_desk->away->sleeping();
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->away->timesLet, 1, kPatienceMs);
    // One that was pulled out meanwhile and comes back is bright.
    Q_EMIT m_desk->away->awake();
    m_desk->panel.Plug();
    m_desk->window->Session().OpenScreen();
    QVERIFY(ShowsItsPictureSoon());
}

void TestAwayLight::ScreenThatHangsHoldsNoSleepUp() {
    StartWith({});
    QSemaphore letGo;
    m_desk->wire.BeforeChunk(5, [&letGo] { letGo.acquire(); });
    m_desk->away->longestInSleeping = std::chrono::milliseconds(100);
    Q_EMIT m_desk->away->sleeping();
    QVERIFY(!IsBlack());
    QCOMPARE(m_desk->away->timesLet, 0);
    letGo.release();
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->away->timesLet, 1, kPatienceMs);
    QVERIFY(IsBlack());
}

// The write hangs over the wake-up, and by the time it ends the system is held for the next sleep.
void TestAwayLight::WriteThatEndsAfterTheWakeUpLetsNoLaterSleep() {
    StartWith({});
    QSemaphore letGo;
    m_desk->wire.BeforeChunk(5, [&letGo] { letGo.acquire(); });
    Q_EMIT m_desk->away->sleeping();
    Q_EMIT m_desk->away->awake();
    letGo.release();
    QVERIFY(ShowsItsPictureSoon());
    QCoreApplication::processEvents();
    QCOMPARE(m_desk->away->timesLet, 0);
    // The next one comes in the middle of such a write.
    m_desk->wire.BeforeChunk(5, [&letGo] { letGo.acquire(); });
    Q_EMIT m_desk->away->sleeping();
    Q_EMIT m_desk->away->awake();
    Q_EMIT m_desk->away->sleeping();
    letGo.release();
    QTRY_COMPARE_WITH_TIMEOUT(m_desk->away->timesLet, 1, kPatienceMs);
    QVERIFY(IsBlack());
}

void TestAwayLight::SleepThatNobodyEndedEndsWithTheWakeUp() {
    StartWith({});
    Q_EMIT m_desk->away->sleeping();
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kPatienceMs);
    // The window compares the clock with its last look, which may be yet to come.
    const auto sleepOn = [this] {
        m_desk->timeAsleep += std::chrono::hours(8);
        return !IsBlack();
    };
    QTRY_VERIFY_WITH_TIMEOUT(sleepOn(), kPatienceMs);
    QVERIFY(ShowsItsPictureSoon());
}

void TestAwayLight::SystemIsHeldOnlyForATick() {
    AwayRules rules;
    rules.darkAtSleep = false;
    StartWith(rules);
    QVERIFY(!m_desk->away->holdsSleep);
    StartWith({});
    QVERIFY(m_desk->away->holdsSleep);
}

void TestAwayLight::LockInTheMiddleOfAnUpload_data() {
    QTest::addColumn<bool>("isUnlockedToo");
    QTest::newRow("lock") << false;
    QTest::newRow("lock and unlock") << true;
}

void TestAwayLight::LockInTheMiddleOfAnUpload() {
    QFETCH(bool, isUnlockedToo);
    StartWith(RulesWith(&AwayRules::darkAtLock));
    m_desk->Show();
    ToldAwayWatch* const away = m_desk->away;
    const auto tell = [away](bool isLocked) {
        QMetaObject::invokeMethod(away, [away, isLocked] { Q_EMIT away->lockedChanged(isLocked); });
    };
    m_desk->wire.BeforeChunk(10, [tell] { tell(true); });
    if (isUnlockedToo) {
        m_desk->wire.BeforeChunk(20, [tell] { tell(false); });
    }
    ClickListRow(*m_desk, "themeList", 2);
    QVERIFY(ApplyAndWait(*m_desk));
    if (!isUnlockedToo) {
        QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kPatienceMs);
        tell(false);
    }
    QVERIFY(ShowsItsPictureSoon());
    QCOMPARE(int(SavedLook().theme), 2);
    QCOMPARE(m_desk->panel.State().counts.errors, quint64(0));
}

void TestAwayLight::CommandAndLockAreTwoReasons() {
    StartWith(RulesWith(&AwayRules::darkAtLock));
    Tell(OutsideKind::Blank, "on");
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kPatienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(Phrase(), QStringLiteral("Screen is dark: on request"), kPatienceMs);
    Q_EMIT m_desk->away->lockedChanged(true);
    QCOMPARE(Phrase(), QStringLiteral("Screen is dark: locked"));
    const int frames = Frames();
    Tell(OutsideKind::Blank, "off");
    QCOMPARE(Phrase(), QStringLiteral("Screen is dark: locked"));
    const quint64 commands = m_desk->panel.State().counts.commands;
    QTRY_VERIFY_WITH_TIMEOUT(m_desk->panel.State().counts.commands > commands + 2, kPatienceMs);
    QCOMPARE(Frames(), frames);
    Q_EMIT m_desk->away->lockedChanged(false);
    QVERIFY(ShowsItsPictureSoon());
}

void TestAwayLight::PersonAtTheWindowEndsALock() {
    StartWith(RulesWith(&AwayRules::darkAtLock));
    Q_EMIT m_desk->away->lockedChanged(true);
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kPatienceMs);
    m_desk->window->iconActivated(QSystemTrayIcon::Trigger);
    QVERIFY(ShowsItsPictureSoon());
}

void TestAwayLight::WindowAskedForByACommandEndsNoLock() {
    StartWith(RulesWith(&AwayRules::darkAtLock));
    Q_EMIT m_desk->away->lockedChanged(true);
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kPatienceMs);
    Tell(OutsideKind::Show, "");
    QVERIFY(m_desk->window->isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(Phrase(), QStringLiteral("Screen is dark: locked"), kPatienceMs);
    const quint64 commands = m_desk->panel.State().counts.commands;
    QTRY_VERIFY_WITH_TIMEOUT(m_desk->panel.State().counts.commands > commands + 2, kPatienceMs);
    QVERIFY(IsBlack());
}

void TestAwayLight::EndLeavesABlackPanel() {
    StartWith(RulesWith(&AwayRules::darkAtExit));
    QVERIFY(m_desk->window->Stop());
    QVERIFY(IsBlack());
    m_desk->window.reset();
    m_desk->startWindow();
    QVERIFY(ShowsItsPictureSoon());
    QVERIFY(!IsBlack());
}

void TestAwayLight::EndWithoutItsTickLeavesThePicture() {
    StartWith({});
    const int frames = Frames();
    m_desk->Close();
    QCOMPARE(Frames(), frames);
    QVERIFY(!IsBlack());
}

void TestAwayLight::EndBrightensWhatWasDarkForAnotherReason_data() {
    QTest::addColumn<int>("night");
    QTest::addColumn<bool>("isLocked");
    QTest::addColumn<bool>("isAsked");
    QTest::newRow("locked") << int(NightLight::Usual) << true << false;
    QTest::newRow("asked") << int(NightLight::Usual) << false << true;
    QTest::newRow("black night") << int(NightLight::Black) << false << false;
    QTest::newRow("dimmed night") << int(NightLight::Dimmed) << false << false;
    QTest::newRow("all at once") << int(NightLight::Black) << true << true;
}

void TestAwayLight::EndBrightensWhatWasDarkForAnotherReason() {
    QFETCH(int, night);
    QFETCH(bool, isLocked);
    QFETCH(bool, isAsked);
    AwayRules rules = RulesWith(&AwayRules::darkAtLock);
    rules.night = NightLight(night);
    StartWith(rules);
    QVERIFY(ShowsItsPictureSoon());
    const int frames = Frames();
    m_desk->localTime = QTime(23, 0);
    if (isLocked) {
        Q_EMIT m_desk->away->lockedChanged(true);
    }
    if (isAsked) {
        Tell(OutsideKind::Blank, "on");
    }
    QTRY_VERIFY_WITH_TIMEOUT(Frames() > frames && !m_desk->window->Session().Status().isFrameOwed,
                             kPatienceMs);
    QVERIFY(!ShowsItsPicture());
    QVERIFY(m_desk->window->Stop());
    QVERIFY(ShowsItsPicture());
}

void TestAwayLight::ScreenThatHangsHoldsTheEndUpForAWhileOnly() {
    StartWith(RulesWith(&AwayRules::darkAtExit));
    QSemaphore letGo;
    m_desk->wire.BeforeChunk(5, [&letGo] { letGo.acquire(); });
    // The screen hangs for longer than the end waits for it.
    std::thread screen([&letGo] {
        std::this_thread::sleep_for(AwayLight::kLongestLastFrame + std::chrono::milliseconds(500));
        letGo.release();
    });
    QVERIFY(m_desk->window->Stop());
    screen.join();
    QVERIFY(!IsBlack());  // what came after the wait was not sent any more
    m_desk->window.reset();
}

void TestAwayLight::NightComesAndGoes_data() {
    QTest::addColumn<bool>("isBlack");
    QTest::newRow("dimmed") << false;
    QTest::newRow("black") << true;
}

void TestAwayLight::NightComesAndGoes() {
    QFETCH(bool, isBlack);
    AwayRules rules;
    rules.night = isBlack ? NightLight::Black : NightLight::Dimmed;
    StartWith(rules);
    QVERIFY(ShowsItsPictureSoon());
    for (const QTime& time : {QTime(22, 0), QTime(0, 0)}) {
        m_desk->localTime = time;
        QTRY_COMPARE_WITH_TIMEOUT(
            Phrase(),
            isBlack ? QStringLiteral("Screen is dark: night") : QStringLiteral("Screen is dimmed: night"),
            kPatienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(!m_desk->window->Session().Status().isFrameOwed, kPatienceMs);
        QCOMPARE(IsBlack(), isBlack);
        QVERIFY(!ShowsItsPicture());
        m_desk->localTime = QTime(7, 0);
        QVERIFY(ShowsItsPictureSoon());
    }
}

// Another one beside the window's, over the same session: its menu can be got at.
void TestAwayLight::TickIsFollowedAtOnce() {
    StartWith({});
    auto told = std::make_unique<ToldAwayWatch>();
    ToldAwayWatch* const watch = told.get();
    AwayLight away({m_desk->window->Session(), *m_desk->Find<StateLine>("stateLine"), std::move(told),
                    [] { return QTime(12, 0); }});
    Q_EMIT watch->lockedChanged(true);
    QVERIFY(!IsBlack());
    away.Menu().findChild<QAction*>(QStringLiteral("darkAtLock"))->trigger();
    QTRY_VERIFY_WITH_TIMEOUT(IsBlack(), kPatienceMs);
    QVERIFY(LoadAwayRules() == RulesWith(&AwayRules::darkAtLock));
    away.Menu().findChild<QAction*>(QStringLiteral("darkAtLock"))->trigger();
    QVERIFY(ShowsItsPictureSoon());
    QVERIFY(LoadAwayRules() == AwayRules());
    QVERIFY(watch->holdsSleep);
    away.Menu().findChild<QAction*>(QStringLiteral("darkAtSleep"))->trigger();
    QVERIFY(!watch->holdsSleep);
}

void TestAwayLight::NightTimesAreAskedFor() {
    StateLine line(nullptr);
    AwayLight away({m_desk->window->Session(), line, nullptr, [] { return QTime(12, 0); }});
    auto* const times = away.Menu().findChild<QAction*>(QStringLiteral("nightTimes"));
    QCOMPARE(times->text(), QStringLiteral("22:00 – 07:00…"));
    times->trigger();
    NightDialog* dialog = nullptr;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        dialog = dialog != nullptr ? dialog : qobject_cast<NightDialog*>(window);
    }
    QVERIFY(dialog != nullptr && dialog->isVisible());
    QVERIFY(QApplication::activeModalWidget() == nullptr);
    dialog->findChild<QTimeEdit*>(QStringLiteral("nightFrom"))->setTime(QTime(23, 30));
    dialog->findChild<QTimeEdit*>(QStringLiteral("nightTo"))->setTime(QTime(6, 15));
    QVERIFY(away.Rules() == AwayRules());
    dialog->findChild<QPushButton*>(QStringLiteral("nightOk"))->click();
    QVERIFY(!dialog->isVisible());
    QCOMPARE(LoadAwayRules().nightFrom, 23 * 60 + 30);
    QCOMPARE(LoadAwayRules().nightTo, 6 * 60 + 15);
    QCOMPARE(times->text(), QStringLiteral("23:30 – 06:15…"));
    times->trigger();
    dialog->findChild<QTimeEdit*>(QStringLiteral("nightFrom"))->setTime(QTime(1, 0));
    dialog->findChild<QPushButton*>(QStringLiteral("nightCancel"))->click();
    QCOMPARE(LoadAwayRules().nightFrom, 23 * 60 + 30);
}

void TestAwayLight::RulesThatCannotBeSavedAreTold() {
    StateLine line(nullptr);
    AwayLight away({m_desk->window->Session(), line, nullptr, [] { return QTime(12, 0); }});
    const QString folder = SettingsFolder();
    QVERIFY(QDir(folder).removeRecursively());
    QFile file(folder);  // even the superuser cannot write settings below a file
    QVERIFY(file.open(QIODevice::WriteOnly));
    away.Menu().findChild<QAction*>(QStringLiteral("darkAtLock"))->trigger();
    QVERIFY(file.remove());
    QVERIFY(line.Unsaved().testFlag(SettingsPart::Away));
    QVERIFY(away.Rules().darkAtLock);  // for this run
    away.Menu().findChild<QAction*>(QStringLiteral("darkAtExit"))->trigger();
    QVERIFY(!line.Unsaved());
    QVERIFY(LoadAwayRules().darkAtLock && LoadAwayRules().darkAtExit);
}

KIVO_TEST(TestAwayLight)
#include "tst_away_light.moc"
