#include <algorithm>

#include "../config/log_catcher.h"
#include "support/test_program.h"
#include "support/window_test_support.h"

using namespace kivo;
using namespace kivo::test;

// Screens that are pulled out and plugged in under a running window, and machines that sleep.
class TestWindowHotplug : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void ReplugGoesOnByItself_data();
    void ReplugGoesOnByItself();
    void ScreenThatComesLaterGetsTheOwedFrame();
    void ScreenThatComesLaterIsKeptLive();
    void WhatWasAppliedWithoutAScreenArrivesWithIt();
    void FrameThatWasCutOffIsSentAgain_data();
    void FrameThatWasCutOffIsSentAgain();
    void ReplugInTheMiddleOfAnUpload();
    void ControlInterfaceComesLongBefore();
    void RemovalTwice();
    void SuspendedOpensAndClosesNothing();
    void OtherDevicesChangeNothing();
    void NativeEventsAreNeverTakenAway_data();
    void NativeEventsAreNeverTakenAway();
    void DeniedScreenIsToldOnceAndTakenWhenAllowed();
    void SystemThatSleptRedrawsTheValues();
    void SystemThatSleptSendsTheOwedFrame();
    void PluggingWhileTheWindowEnds();
    void ScreenThatHangsWhileItIsClosedHoldsNothingUp();
};

namespace {

constexpr int kPatienceMs = 20000;
const QString kData = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&1)");
const QString kControl = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_00#7&1)");

// A desk whose window learns of what happens to the screen; a temperature and a power that stand still.
struct PluggedDesk : Desk {
    PluggedDesk() : Desk(QLocale(QStringLiteral("en_US")), true, Plugging::Told) { Measure(); }

    void StartAgain() {
        startWindow();
        Measure();
    }
    void Measure() const { window->slotCpuPowClock(83, 61, 0, 0); }

    ScreenSession& Screen() const { return window->Session().Screen(); }
    bool IsFound() const { return Screen().Entry(0).dataFound == 1; }
    QByteArray DataPath() const { return TextOf(Screen().Entry(0).dataPath); }
    quint64 Frames() const { return panel.State().counts.frames; }
    bool IsRunning() const { return window->Session().ShownTexts()[CpuTemperature] == QStringLiteral("61℃"); }

    // How often the temperature was sent since that many reports.
    int TemperaturesSince(int reports) const {
        const ScreenState state = window->Session().Applied();
        const QPoint point = state.layout.textRect[CpuTemperature].center();
        const QVector<PanelReport> all = wire.Reports();
        return int(std::count_if(all.begin() + reports, all.end(), [&point](const PanelReport& report) {
            return report.kind == PanelReportKind::Area && report.area.contains(point);
        }));
    }
};

// A screen whose data interface the system has not found yet.
class HalfThereHidApi final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;
    std::vector<HidDeviceInfo> Enumerate(quint16 vendor, quint16 product) override {
        std::vector<HidDeviceInfo> devices = ForwardingHidApi::Enumerate(vendor, product);
        if (!isWhole && !devices.empty()) {
            devices.pop_back();
        }
        return devices;
    }

    std::atomic<bool> isWhole{false};
};

class OpenCountingHidApi final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;
    HidHandle* OpenPath(const QByteArray& path) override {
        ++count;
        return ForwardingHidApi::OpenPath(path);
    }

    std::atomic<int> count{0};
};

class OpenWindow : public MainWindow {
public:
    using MainWindow::MainWindow;
    using MainWindow::nativeEvent;
};

MainWindow::Parts PartsFor(HidApi& hid) {
    MainWindow::Parts parts{hid, nullptr, kBin};
    parts.locale = QLocale(QStringLiteral("en_US"));
    parts.hasTray = [] { return true; };
    parts.makeSensors = MakeNoSensors;
    return parts;
}

// Has the window handle a change, and waits until it has.
bool Handles(MainWindow& window, const QString& name, bool arrived) {
    QSignalSpy handled(&window.Session(), &LiveSession::screenChanged);
    return window.HandleScreenChange(name, arrived) && handled.wait(kPatienceMs);
}

// Hangs in closing a handle, once that is asked for.
class HangingCloseHidApi final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;
    void Close(HidHandle* handle) override {
        if (hang.exchange(false)) {
            entered.release();
            letGo.acquire();
        }
        ForwardingHidApi::Close(handle);
    }

    std::atomic<bool> hang{false};
    QSemaphore entered;
    QSemaphore letGo;
};

// Debug lines of the window's own, and every warning.
struct HotplugLog {
    HotplugLog() {
        QLoggingCategory::setFilterRules(
            QStringLiteral("*.debug=false\n*.info=false\nkivo.hotplug.debug=true"));
    }
    ~HotplugLog() { QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=true")); }
    const LogCatcher log;
};

}  // namespace

void TestWindowHotplug::initTestCase() {
    PrepareApplication();
}

void TestWindowHotplug::init() {
    SetUpProfile();
}

void TestWindowHotplug::ReplugGoesOnByItself_data() {
    QTest::addColumn<bool>("newNumbers");
    QTest::newRow("same node numbers") << false;
    QTest::newRow("new node numbers") << true;
}

void TestWindowHotplug::ReplugGoesOnByItself() {
    QFETCH(bool, newNumbers);
    PluggedDesk desk;
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    for (int round = 0; round < 3; ++round) {
        desk.window->screenAttached = 1;
        desk.panel.Unplug();
        QVERIFY(desk.IsFound());
        QTRY_VERIFY(!desk.IsFound());
        QTRY_VERIFY(desk.Screen().dataHandle() == nullptr);
        QTRY_COMPARE(int(desk.window->screenAttached), 0);
        QTRY_COMPARE(desk.DataPath(), QByteArray());

        const int reports = desk.wire.Reports().size();
        desk.panel.Plug(newNumbers ? VirtualHidApi::NodeNumbers::New : VirtualHidApi::NodeNumbers::Same);
        QTRY_VERIFY(desk.IsFound());
        QTRY_COMPARE(desk.DataPath(), desk.panel.DataPath());
        // A value that stands still comes back in full.
        QTRY_VERIFY_WITH_TIMEOUT(desk.TemperaturesSince(reports) > 0, kPatienceMs);
    }
    // The panel keeps its picture without power.
    QCOMPARE(desk.Frames(), quint64(0));
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
    QTRY_COMPARE(desk.panel.OpenHandles(), 1);  // the control handle
}

void TestWindowHotplug::ScreenThatComesLaterGetsTheOwedFrame() {
    PluggedDesk desk;
    desk.Close();
    PanelMemory().Forget();
    desk.panel.Unplug();
    desk.StartAgain();
    QVERIFY(!desk.IsFound());
    QTRY_VERIFY(desk.window->Session().Status().isFrameOwed);

    desk.panel.Plug(VirtualHidApi::NodeNumbers::New);
    QTRY_COMPARE_WITH_TIMEOUT(desk.Frames(), quint64(1), kPatienceMs);
    QTRY_VERIFY(!desk.window->Session().Status().isFrameOwed);
    const quint64 areas = desk.panel.State().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > areas + 2, kPatienceMs);
    QCOMPARE(desk.Frames(), quint64(1));
    QVERIFY(!desk.window->isVisible());
}

void TestWindowHotplug::ScreenThatComesLaterIsKeptLive() {
    PluggedDesk desk;
    desk.Close();
    desk.panel.Unplug();
    desk.StartAgain();
    // Every value has been handed over before there was a screen.
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(WorkingFolder() + QStringLiteral("/whole.png")), kPatienceMs);
    const int reports = desk.wire.Reports().size();
    desk.panel.Plug();
    QTRY_VERIFY_WITH_TIMEOUT(desk.TemperaturesSince(reports) > 0, kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    QCOMPARE(desk.Frames(), quint64(0));
}

void TestWindowHotplug::WhatWasAppliedWithoutAScreenArrivesWithIt() {
    PluggedDesk desk;
    desk.Show();
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    desk.panel.Unplug();
    desk.ClickRow("themeList", int(Theme::Tdp));
    const ScreenState chosen = desk.Editor()->Shown();
    desk.Apply();
    QVERIFY(desk.window->Session().Status().isFrameOwed);
    QVERIFY(desk.window->Session().Applied() != chosen);
    desk.ClickRow("themeList", int(Theme::Time));  // edited only

    desk.panel.Plug(VirtualHidApi::NodeNumbers::New);
    QTRY_COMPARE_WITH_TIMEOUT(desk.Frames(), quint64(1), kPatienceMs);
    QTRY_VERIFY(desk.window->Session().Applied() == chosen);
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > 5, kPatienceMs);
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

void TestWindowHotplug::FrameThatWasCutOffIsSentAgain_data() {
    QTest::addColumn<int>("chunk");
    QTest::newRow("first chunk") << 1;
    QTest::newRow("a chunk in the middle") << 14;
    QTest::newRow("last chunk") << 27;
}

void TestWindowHotplug::FrameThatWasCutOffIsSentAgain() {
    QFETCH(int, chunk);
    PluggedDesk desk;
    desk.Show();
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    desk.ClickRow("themeList", int(Theme::Tdp));
    desk.wire.BeforeChunk(chunk, [&desk] { desk.panel.VanishAtReport(1); });
    desk.Apply();
    QVERIFY(desk.window->Session().Status().isFrameOwed);
    QCOMPARE(desk.Frames(), quint64(0));
    QTRY_VERIFY(!desk.IsFound());
    desk.panel.ClearFaults();
    desk.panel.Plug(VirtualHidApi::NodeNumbers::New);
    QTRY_COMPARE_WITH_TIMEOUT(desk.Frames(), quint64(1), kPatienceMs);
    QTRY_VERIFY(!desk.window->Session().Status().isFrameOwed);
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

void TestWindowHotplug::ReplugInTheMiddleOfAnUpload() {
    PluggedDesk desk;
    desk.Show();
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    desk.wire.BeforeChunk(14, [&desk] {
        desk.panel.Unplug();
        desk.panel.Plug(VirtualHidApi::NodeNumbers::New);
    });
    desk.Apply();
    QTRY_COMPARE_WITH_TIMEOUT(desk.Frames(), quint64(1), kPatienceMs);
    QTRY_VERIFY(!desk.window->Session().Status().isFrameOwed);
    QCOMPARE(desk.panel.State().counts.errors, quint64(0));
}

void TestWindowHotplug::ControlInterfaceComesLongBefore() {
    VirtualHidApi panel;
    panel.Unplug();
    HalfThereHidApi half(panel);
    MainWindow window(PartsFor(half));
    ScreenSession& screen = window.Session().Screen();
    panel.Plug(VirtualHidApi::NodeNumbers::New);
    QVERIFY(Handles(window, kControl, true));
    QCOMPARE(screen.Entry(0).dataFound, 0U);
    QVERIFY(screen.controlHandle() == nullptr);
    half.isWhole = true;
    QVERIFY(Handles(window, kData, true));
    QCOMPARE(screen.Entry(0).dataFound, 1U);
    QVERIFY(screen.controlHandle() != nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(panel.State().counts.areas > 3, kPatienceMs);
    QVERIFY(window.Stop());
}

void TestWindowHotplug::RemovalTwice() {
    Desk desk;
    ScreenSession& screen = desk.window->Session().Screen();
    QTRY_COMPARE(screen.Entry(0).dataFound, 1U);
    desk.window->screenAttached = 1;
    desk.panel.Unplug();
    QVERIFY(Handles(*desk.window, kData, false));
    QCOMPARE(int(desk.window->screenAttached), 0);
    QCOMPARE(screen.Entry(0).dataFound, 0U);
    desk.window->screenAttached = 1;
    QVERIFY(Handles(*desk.window, kData, false));
    QCOMPARE(int(desk.window->screenAttached), 1);  // nothing was done
    QVERIFY(Handles(*desk.window, kControl, false));
    QCOMPARE(int(desk.window->screenAttached), 0);
}

void TestWindowHotplug::SuspendedOpensAndClosesNothing() {
    PluggedDesk desk;
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    QTRY_VERIFY(desk.Screen().controlHandle() != nullptr);
    desk.window->hotplugSuspended = 1;
    desk.window->screenAttached = 1;
    desk.panel.Unplug();
    QTRY_VERIFY(!desk.IsFound());
    QCOMPARE(int(desk.window->screenAttached), 1);
    const SharedScreenHandle control = desk.Screen().controlHandle();
    desk.panel.Plug(VirtualHidApi::NodeNumbers::New);
    QTRY_VERIFY(desk.IsFound());
    QCOMPARE(desk.DataPath(), desk.panel.DataPath());
    QVERIFY(desk.Screen().controlHandle() == control);
    // What each transfer opens by itself is not held up.
    const quint64 areas = desk.panel.State().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.areas > areas, kPatienceMs);

    desk.window->hotplugSuspended = 0;
    QVERIFY(Handles(*desk.window, kData, true));
    QVERIFY(desk.Screen().controlHandle() != control);
}

void TestWindowHotplug::OtherDevicesChangeNothing() {
    Desk desk;
    const ScreenSession& screen = desk.window->Session().Screen();
    QTRY_VERIFY(screen.controlHandle() != nullptr);
    const SharedScreenHandle control = screen.controlHandle();
    for (const char* name :
         {R"(\\?\HID#VID_046D&PID_C31C&MI_01#8)", R"(\\?\HID#VID_04D9&PID_FD02&MI_01#8)", "HID#", ""}) {
        for (const bool arrived : {true, false}) {
            QVERIFY(Handles(*desk.window, QString::fromLatin1(name), arrived));
            QCOMPARE(screen.Entry(0).dataFound, 1U);
            QVERIFY(screen.controlHandle() == control);
        }
    }
}

void TestWindowHotplug::NativeEventsAreNeverTakenAway_data() {
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("hasMessage");
    QTest::newRow("of X") << QByteArray("xcb_generic_event_t") << true;
    QTest::newRow("of Windows, with nothing in it") << QByteArray("windows_generic_MSG") << false;
    QTest::newRow("of nobody") << QByteArray() << false;
}

void TestWindowHotplug::NativeEventsAreNeverTakenAway() {
    QFETCH(QByteArray, type);
    QFETCH(bool, hasMessage);
    VirtualHidApi panel;
    OpenWindow window(PartsFor(panel));
    std::array<char, 256> message{};
    message.fill('\xff');
    NativeResult result = 4711;
    QVERIFY(!window.nativeEvent(type, hasMessage ? message.data() : nullptr, &result));
    QCOMPARE(result, NativeResult(4711));
    QTRY_COMPARE(window.Session().Screen().Entry(0).dataFound, 1U);
    QVERIFY(window.Stop());
}

void TestWindowHotplug::DeniedScreenIsToldOnceAndTakenWhenAllowed() {
    VirtualHidApi panel;
    panel.DenyOpens();
    OpenCountingHidApi hid(panel);
    const HotplugLog hotplug;
    MainWindow window(PartsFor(hid));
    QTRY_COMPARE(window.Session().Screen().Entry(0).dataFound, 1U);
    // It goes on, round after round, with nothing more to say.
    QTRY_VERIFY_WITH_TIMEOUT(hid.count > 10, kPatienceMs);
    QCOMPARE(hotplug.log.lines().size(), 1);
    const QString& line = hotplug.log.lines().constFirst();
    QVERIFY(line.contains(QString::fromLatin1(panel.DataPath())));
    QVERIFY(line.contains(QLatin1String("60-kivo-screen.rules")));

    panel.ClearFaults();
    QVERIFY(Handles(window, kData, true));
    QTRY_VERIFY_WITH_TIMEOUT(panel.State().counts.areas > 3, kPatienceMs);
    QCOMPARE(hotplug.log.lines().size(), 1);
    QVERIFY(window.Stop());
}

void TestWindowHotplug::SystemThatSleptRedrawsTheValues() {
    PluggedDesk desk;
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    // A value that stands still is sent once.
    const int before = desk.wire.Reports().size();
    const quint64 commands = desk.panel.State().counts.commands;
    QTRY_VERIFY_WITH_TIMEOUT(desk.panel.State().counts.commands >= commands + 4, kPatienceMs);
    QCOMPARE(desk.TemperaturesSince(before), 0);
    desk.timeAsleep += std::chrono::hours(8);
    QTRY_COMPARE_WITH_TIMEOUT(desk.TemperaturesSince(before), 1, kPatienceMs);
    QCOMPARE(desk.Frames(), quint64(0));
}

void TestWindowHotplug::SystemThatSleptSendsTheOwedFrame() {
    PluggedDesk desk;
    desk.Show();
    QTRY_VERIFY_WITH_TIMEOUT(desk.IsRunning(), kPatienceMs);
    desk.wire.BeforeChunk(9, [&desk] { desk.panel.FailWritesFrom(1); });
    desk.Apply();
    QVERIFY(desk.window->Session().Status().isFrameOwed);
    desk.panel.ClearFaults();
    desk.timeAsleep += std::chrono::hours(8);
    QTRY_COMPARE_WITH_TIMEOUT(desk.Frames(), quint64(1), kPatienceMs);
}

void TestWindowHotplug::PluggingWhileTheWindowEnds() {
    PluggedDesk desk;
    desk.panel.Unplug();
    desk.panel.Plug();
    desk.Close();
    desk.panel.Unplug();
    QCoreApplication::processEvents();
    QVERIFY(desk.window == nullptr);
    QCOMPARE(desk.panel.OpenHandles(), 0);
}

void TestWindowHotplug::ScreenThatHangsWhileItIsClosedHoldsNothingUp() {
    VirtualHidApi panel;
    HangingCloseHidApi hid(panel);
    MainWindow window(PartsFor(hid));
    ScreenSession& screen = window.Session().Screen();
    QTRY_VERIFY(screen.controlHandle() != nullptr);
    QTRY_VERIFY_WITH_TIMEOUT(panel.State().counts.areas > 3, kPatienceMs);
    QSignalSpy handled(&window.Session(), &LiveSession::screenChanged);
    hid.hang = true;
    QVERIFY(window.HandleScreenChange(kData, true));
    QVERIFY(hid.entered.tryAcquire(1, kPatienceMs));
    // All of these return while it still hangs, or this test would not get further.
    QVERIFY(window.HandleScreenChange(kData, false));
    QVERIFY(window.HandleScreenChange(kControl, true));
    static_cast<void>(window.Session().Status());
    window.BringToFront();
    QCoreApplication::processEvents();
    hid.letGo.release();
    // They are handled in their order afterwards.
    QTRY_COMPARE(handled.count(), 3);
    QVERIFY(window.Stop());
}

KIVO_TEST(TestWindowHotplug)
#include "tst_window_hotplug.moc"
