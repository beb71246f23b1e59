#include <QSemaphore>
#include <QtTest>
#include <thread>

#include "device/transfers.h"
#include "recording_hid_api.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

// Writes wait until they are let go, as on a screen that hangs.
struct HangingScreen {
    RecordingHidApi hid;
    QSemaphore entered;
    QSemaphore letGo;
    ScreenSession session{hid};
    Transfers transfers{session};

    HangingScreen() {
        HidDeviceInfo info;
        info.vendorId = 0x04D9;
        info.productId = 0xFD01;
        info.usage = 1;
        info.usagePage = 0x000C;
        info.path = "control";
        hid.devices.push_back(info);
        info.usagePage = 0xFFA0;
        info.path = "data";
        hid.devices.push_back(info);
        session.InitDeviceTable();
        session.EnumerateScreens();
        hid.beforeWrite = [this] {
            entered.release();
            letGo.acquire();
        };
    }
};

constexpr int kPatienceMs = 10000;

}  // namespace

// A write that hangs holds up nobody but its own thread.
class TestHangingWrite : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void OpeningAndClosingGoOn();
    void AnotherTransferGoesOn();
    void AFrameIsLeftAtItsNextChunk();
    void NoTransferBeginsAfterStop();
};

void TestHangingWrite::OpeningAndClosingGoOn() {
    HangingScreen screen;
    std::thread hanging([&screen] { screen.transfers.SendTimeSync(); });
    QVERIFY(screen.entered.tryAcquire(1, kPatienceMs));
    // All of these return while the write still hangs, or this test would not get further.
    screen.session.OpenScreenByName("Kivo Screen");
    QVERIFY(screen.session.dataHandle() != nullptr);
    screen.session.CloseScreen();
    QVERIFY(screen.session.dataHandle() == nullptr);
    QCOMPARE(screen.session.EnumerateScreens(), 0);
    screen.letGo.release();
    hanging.join();
    QCOMPARE(screen.hid.misuses, 0);
}

void TestHangingWrite::AnotherTransferGoesOn() {
    HangingScreen screen;
    std::thread first([&screen] { screen.transfers.SendTimeSync(); });
    QVERIFY(screen.entered.tryAcquire(1, kPatienceMs));
    std::thread second([&screen] { screen.transfers.SendOrientation(0); });
    // The second is in its write while the first has not left its own.
    QVERIFY(screen.entered.tryAcquire(1, kPatienceMs));
    screen.letGo.release(2);
    first.join();
    second.join();
    QCOMPARE(int(screen.hid.writes.size()), 2);
    QCOMPARE(screen.hid.misuses, 0);
}

void TestHangingWrite::AFrameIsLeftAtItsNextChunk() {
    HangingScreen screen;
    const std::vector<quint8> frame(static_cast<std::size_t>(kFrameBytes));
    WholeImageResult sent;
    std::thread uploading([&] { sent = screen.transfers.SendWholeImage(frame.data(), 0); });
    QVERIFY(screen.entered.tryAcquire(1, kPatienceMs));
    screen.transfers.StopTransfers();
    screen.letGo.release(kChunkCount);
    uploading.join();
    QCOMPARE(sent.result, TransferResult::Dropped);
    QCOMPARE(sent.chunksTaken, 1);
    QCOMPARE(int(screen.hid.writes.size()), 1);
    QCOMPARE(int(screen.transfers.wholeFrameBusy()), 0);
}

void TestHangingWrite::NoTransferBeginsAfterStop() {
    HangingScreen screen;
    screen.transfers.StopTransfers();
    const std::vector<quint8> frame(static_cast<std::size_t>(kFrameBytes));
    QCOMPARE(screen.transfers.SendTimeSync(), TransferResult::Dropped);
    QCOMPARE(screen.transfers.SendWholeImage(frame.data(), 0).result, TransferResult::Dropped);
    QCOMPARE(screen.transfers.SendAreaImageWithPos(frame.data(), 0, 0, 10, 10), TransferResult::Dropped);
    QVERIFY(screen.hid.writes.empty());
}

KIVO_GUILESS_TEST(TestHangingWrite)
#include "tst_hanging_write.moc"
