#include <QtTest>

#include "../config/log_catcher.h"
#include "compose/panel_text.h"
#include "config/folders.h"
#include "device/hotplug.h"
#include "panel/live_session.h"
#include "resources/resources.h"
#include "support/built_paths.h"
#include "support/session_start.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"
#include "window/screen_watch.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QString kData = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&1)");

// What a hot-plug was handed, for the test to tell.
struct Told {
    Hotplug::Listener change;
    Hotplug::WakeUpListener wakeUp;
    quintptr window = 0;
    bool isOver = false;
};

// Does what the test says.
class ScriptedHotplug final : public Hotplug {
public:
    ScriptedHotplug(bool accepts, Told& told) : m_accepts(accepts), m_told(told) {}
    ~ScriptedHotplug() override { m_told.isOver = true; }
    bool Register(const std::function<quintptr()>& nativeWindow, Listener listener,
                  WakeUpListener onWakeUp) override {
        m_told.window = nativeWindow();
        m_told.change = std::move(listener);
        m_told.wakeUp = std::move(onWakeUp);
        return m_accepts;
    }
    ArrivalPath PathOfArrival() const override { return ArrivalPath::Name; }

private:
    const bool m_accepts;
    Told& m_told;
};

// A session with its screen, and a watch over it.
struct Watched {
    explicit Watched(bool accepts = true) {
        session.OpenScreen();
        watch->Register(std::make_unique<ScriptedHotplug>(accepts, told), [] { return quintptr(4711); });
    }

    // Whether the session has handled what the test does.
    template <typename Does>
    bool Handles(const Does& does) {
        QSignalSpy handled(&session, &LiveSession::screenChanged);
        does();
        return handled.wait(kPatienceMs);
    }

    VirtualHidApi panel;
    LiveSession session{panel, InterfaceLanguage::English, kShortPauses};
    quint8 suspended = 0;
    quint8 attached = 1;
    std::chrono::nanoseconds timeAsleep{0};
    Told told;
    std::unique_ptr<ScreenWatch> watch =
        std::make_unique<ScreenWatch>(session, suspended, attached, [this] { return timeAsleep; });
};

struct HotplugLog {
    HotplugLog() {
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\nkivo.hotplug.debug=true"));
    }
    ~HotplugLog() { QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false")); }
    const LogCatcher log;
};

}  // namespace

// What is told of screens and of a sleep, and what the session makes of it.
class TestScreenWatch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        InitResources();
        InstallFontSubstitutes();
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    }
    void init() {
        QVERIFY(QDir(SettingsFolder()).removeRecursively());
        QVERIFY(QDir(WorkingFolder()).removeRecursively());
    }

    void RefusedRegistrationIsLogged() {
        const HotplugLog hotplug;
        const Watched desk(false);
        QCOMPARE(hotplug.log.lines(), QStringList{QStringLiteral("注册失败")});
        QCOMPARE(desk.told.window, quintptr(4711));
    }

    void NotificationsAreLogged() {
        Watched desk;
        const HotplugLog hotplug;
        QVERIFY(desk.Handles([&desk] { desk.told.change({kData, true}); }));
        // Here the name is the path.
        QCOMPARE(TextOf(desk.session.Screen().Entry(0).dataPath), kData.toLatin1());
        desk.panel.Unplug();
        QVERIFY(desk.Handles([&desk] { desk.told.change({kData, false}); }));
        QCOMPARE(desk.session.Screen().Entry(0).dataFound, 0U);
        desk.told.change({QString(), true});
        desk.told.change({QString(), false});
        QCOMPARE(hotplug.log.lines(), (QStringList{QStringLiteral("DBT_DEVICEARRIVAL\n"), kData,
                                                   QStringLiteral("DBT_DEVICEREMOVECOMPLETE\n"),
                                                   QStringLiteral("DBT_DEVICEARRIVAL\n"),
                                                   QStringLiteral("DBT_DEVICEREMOVECOMPLETE\n")}));
    }

    void GoneScreenIsNotAttached() {
        Watched desk;
        QVERIFY(desk.Handles([&desk] { desk.watch->HandleScreenChange(kData, true); }));
        QCOMPARE(int(desk.attached), 1);
        QVERIFY(desk.Handles([&desk] { desk.watch->HandleScreenChange(kData, false); }));
        QCOMPARE(int(desk.attached), 0);
    }

    // Looked at with each change, not once.
    void NothingIsClosedWhileItIsSuspended() {
        Watched desk;
        desk.suspended = 1;
        QVERIFY(desk.Handles([&desk] { desk.told.change({kData, true}); }));
        desk.panel.Unplug();
        QVERIFY(desk.Handles([&desk] { desk.told.change({kData, false}); }));
        QCOMPARE(desk.session.Screen().Entry(0).dataFound, 0U);
        QCOMPARE(int(desk.attached), 1);
    }

    void WakeUpIsAnArrival_data() {
        QTest::addColumn<bool>("isTold");
        QTest::addColumn<int>("secondsAsleep");
        QTest::addColumn<bool>("isArrival");
        QTest::newRow("told by the system") << true << 0 << true;
        QTest::newRow("found out by the clocks") << false << 8 << true;
        QTest::newRow("neither") << false << 0 << false;
    }

    void WakeUpIsAnArrival() {
        QFETCH(bool, isTold);
        QFETCH(int, secondsAsleep);
        QFETCH(bool, isArrival);
        Watched desk;
        StartWithFrame(desk.session, LoadState(ProgramFolder(), InterfaceLanguage::English));
        QTRY_VERIFY_WITH_TIMEOUT(!desk.session.ShownTexts()[Time].isEmpty(), kPatienceMs);
        QVERIFY(desk.session.Stop());
        desk.watch->LookForWakeUp();
        QVERIFY(!desk.session.ShownTexts()[Time].isEmpty());
        if (isTold) {
            desk.told.wakeUp();
        }
        desk.timeAsleep += std::chrono::seconds(secondsAsleep);
        desk.watch->LookForWakeUp();
        QCOMPARE(desk.session.ShownTexts()[Time].isEmpty(), isArrival);
    }

    void HotplugEndsWithTheWatch() {
        Watched desk;
        QVERIFY(!desk.told.isOver);
        desk.watch.reset();
        QVERIFY(desk.told.isOver);
    }
};

KIVO_TEST(TestScreenWatch)
#include "tst_screen_watch.moc"
