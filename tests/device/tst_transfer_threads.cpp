#include <QtTest>
#include <atomic>
#include <functional>
#include <thread>

#include "device/transfers.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

constexpr int kRounds = 500;
constexpr quint16 kLastPixel = 0x0BF0;

std::vector<quint8> FrameOf(quint16 pixel) {
    std::vector<quint8> frame(static_cast<std::size_t>(kFrameBytes));
    for (std::size_t i = 0; i < frame.size(); i += 2) {
        frame[i] = static_cast<quint8>(pixel >> 8);
        frame[i + 1] = static_cast<quint8>(pixel & 0xFF);
    }
    return frame;
}

void IgnoreMessages(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/) {}

}  // namespace

// Everything at once. The thread sanitizer looks on; the panel's decoder sees whether anything got mixed up
// on the wire.
class TestTransferThreads : public QObject {
    Q_OBJECT

private slots:
    // Failed writes are part of it; their lines are not.
    void init() { m_former = qInstallMessageHandler(IgnoreMessages); }
    void cleanup() { qInstallMessageHandler(m_former); }

    void allTransfersAtOnce_data() {
        QTest::addColumn<bool>("plugging");
        QTest::newRow("the screen stays") << false;
        QTest::newRow("the screen comes and goes") << true;
    }

    void allTransfersAtOnce() {
        QFETCH(bool, plugging);
        VirtualHidApi screen;
        std::atomic<int> frames{0};
        {
            ScreenSession session(screen);
            session.InitDeviceTable();
            session.EnumerateScreens();
            Transfers transfers(session);
            const std::vector<quint8> frame = FrameOf(0x1234);

            std::vector<std::thread> threads;
            const auto repeat = [&threads](int times, const std::function<void()>& work) {
                threads.emplace_back([times, work] {
                    for (int i = 0; i < times; ++i) {
                        work();
                    }
                });
            };
            const auto upload = [&] {
                const WholeImageResult sent = transfers.SendWholeImage(frame.data(), 0);
                frames += sent.result == TransferResult::Taken ? 1 : 0;
            };
            repeat(kRounds / 10, upload);
            repeat(kRounds / 10, upload);
            repeat(kRounds, [&] { transfers.SendAreaImageWithPos(frame.data(), 10, 10, 40, 51); });
            repeat(kRounds, [&] { transfers.SendTimeSync(); });
            repeat(kRounds, [&] { transfers.SendOrientation(1); });
            repeat(kRounds, [&] {
                session.OpenScreenByName("Kivo Screen");
                session.CloseScreen();
            });
            // A writer on the session's handle, while the others close and replace it. An area of the shared
            // handle may stand between the chunks of a frame, so this one sends the probe.
            repeat(kRounds, [&] {
                if (const SharedScreenHandle handle = session.dataHandle()) {
                    const ProbeReport probe = BuildProbeReport(0);
                    handle->Write(probe.data() + kProbeStart, 64);
                }
            });
            repeat(kRounds / 10, [&] { session.EnumerateScreens(); });
            repeat(kRounds, [&] { Q_UNUSED(screen.State().image.pixel(0, 0)); });
            if (plugging) {
                repeat(kRounds / 5, [&] {
                    screen.Unplug();
                    std::this_thread::yield();
                    screen.Plug();
                });
            }
            for (std::thread& thread : threads) {
                thread.join();
            }

            const std::vector<quint8> last = FrameOf(kLastPixel);
            QCOMPARE(transfers.SendWholeImage(last.data(), 0).result, TransferResult::Taken);
        }
        const PanelState state = screen.State();
        QCOMPARE(state.counts.errors, quint64{0});
        QCOMPARE(state.counts.frames, static_cast<quint64>(frames) + 1);
        if (!plugging) {
            QCOMPARE(static_cast<int>(frames), 2 * (kRounds / 10));
        }
        QImage expected(kPanelWidth, kPanelHeight, QImage::Format_RGB16);
        expected.fill(kLastPixel);
        QCOMPARE(state.image, expected);
        QCOMPARE(screen.OpenHandles(), 0);
    }

private:
    QtMessageHandler m_former = nullptr;
};

KIVO_GUILESS_TEST(TestTransferThreads)
#include "tst_transfer_threads.moc"
