#include <QSemaphore>
#include <QtTest>
#include <thread>

#include "device/screen_change.h"
#include "device/transfers.h"
#include "recording_hid_api.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr int kPatienceMs = 10000;

// Opening the data interface waits until it is let go.
struct HangingScreen {
    HangingScreen() {
        hid.devices = {ControlCollection("control"), DataCollection("data")};
        session.InitDeviceTable();
        session.EnumerateScreens();
        hid.beforeOpen = [this] {
            entered.release();
            letGo.acquire();
        };
    }

    RecordingHidApi hid;
    QSemaphore entered;
    QSemaphore letGo;
    ScreenSession session{hid};
    Transfers transfers{session};
};

}  // namespace

// An opening that hangs in a transfer holds nobody up who only wants to know what the table says.
class TestHangingOpen : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void OtherDevicesComeAndGo_data();
    void OtherDevicesComeAndGo();
    void TheTableCanBeRead();
    void DoubtDoesNotWaitForALook();
};

void TestHangingOpen::OtherDevicesComeAndGo_data() {
    QTest::addColumn<bool>("byName");
    QTest::newRow("as Windows tells it") << true;
    QTest::newRow("listed afresh") << false;
}

void TestHangingOpen::OtherDevicesComeAndGo() {
    QFETCH(bool, byName);
    HangingScreen screen;
    std::thread hanging([&screen] { screen.transfers.SendTimeSync(); });
    QVERIFY(screen.entered.tryAcquire(1, kPatienceMs));
    // All of these return while the opening still hangs, or this test would not get further.
    const ArrivalPath pathFrom = byName ? ArrivalPath::Name : ArrivalPath::Enumeration;
    for (const char* name :
         {R"(\\?\HID#VID_046D&PID_C31C&MI_01#8)", R"(\\?\HID#VID_046D&PID_C31C&MI_00#8)", ""}) {
        for (const bool arrived : {true, false}) {
            const ScreenChangeOutcome outcome =
                ApplyScreenChange(screen.session, {QString::fromLatin1(name), arrived}, false, pathFrom);
            QVERIFY(!outcome.dataArrived && !outcome.closed);
        }
    }
    screen.letGo.release();
    hanging.join();
    QCOMPARE(int(screen.hid.writes.size()), 1);
    QCOMPARE(screen.hid.misuses, 0);
}

void TestHangingOpen::TheTableCanBeRead() {
    HangingScreen screen;
    std::thread hanging([&screen] { screen.session.OpenScreenByName(kScreenName); });
    QVERIFY(screen.entered.tryAcquire(1, kPatienceMs));
    QCOMPARE(screen.session.EntryCount(), 1U);
    QCOMPARE(TextOf(screen.session.Entry(0).dataPath), QByteArray("data"));
    screen.letGo.release(2);
    hanging.join();
    QVERIFY(screen.session.dataHandle() != nullptr);
    QCOMPARE(screen.hid.misuses, 0);
}

void TestHangingOpen::DoubtDoesNotWaitForALook() {
    HangingScreen screen;
    std::thread hanging([&screen] { screen.session.LookAtPanel(); });
    QVERIFY(screen.entered.tryAcquire(1, kPatienceMs));
    screen.session.DoubtNode();
    QCOMPARE(TextOf(screen.session.Entry(0).dataPath), QByteArray("data"));
    screen.letGo.release();
    hanging.join();
    QCOMPARE(screen.hid.OpenCount(), 0);
    // The doubt came while the node was asked.
    screen.letGo.release();
    QCOMPARE(screen.session.LookAtPanel().presence, ScreenPresence::Present);
    QCOMPARE(screen.hid.identified, 2);
    QCOMPARE(screen.hid.misuses, 0);
}

KIVO_GUILESS_TEST(TestHangingOpen)
#include "tst_hanging_open.moc"
