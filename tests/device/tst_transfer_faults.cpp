#include <QtTest>
#include <memory>

#include "device/transfers.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

constexpr std::array<quint8, 4> kRawMessage{0x55, 0xA1, 0xF1, 0x02};

std::vector<quint8> FrameOf(quint8 high, quint8 low) {
    std::vector<quint8> frame(static_cast<std::size_t>(kFrameBytes));
    for (std::size_t i = 0; i < frame.size(); i += 2) {
        frame[i] = high;
        frame[i + 1] = low;
    }
    return frame;
}

QImage PictureOf(quint16 pixel) {
    QImage image(kPanelWidth, kPanelHeight, QImage::Format_RGB16);
    image.fill(pixel);
    return image;
}

}  // namespace

// What goes wrong with a real screen, made to happen at every report.
class TestTransferFaults : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_screen = std::make_unique<VirtualHidApi>();
        m_session = std::make_unique<ScreenSession>(*m_screen);
        m_session->InitDeviceTable();
        QCOMPARE(m_session->EnumerateScreens(), 0);
        m_session->OpenScreenByName("Kivo Screen");
        m_transfers = std::make_unique<Transfers>(*m_session);
        QCOMPARE(m_transfers->SendWholeImage(m_old.data(), 0).result, TransferResult::Taken);
    }

    void cleanup() {
        QCOMPARE(m_screen->State().counts.errors, quint64{0});
        m_transfers.reset();
        m_session.reset();
        QCOMPARE(m_screen->OpenHandles(), 0);
    }

    void openFails() {
        m_screen->FailOpens();
        QCOMPARE(m_transfers->SendWholeImage(m_new.data(), 0).result, TransferResult::NotThere);
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::NotThere);
        QCOMPARE(m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10), TransferResult::NotThere);
        QCOMPARE(m_transfers->wholeFrameBusy(), quint8{0});
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));
        m_screen->ClearFaults();
        QCOMPARE(m_transfers->SendWholeImage(m_new.data(), 0).result, TransferResult::Taken);
        QCOMPARE(m_screen->State().image, PictureOf(kNewPixel));
    }

    void writeFailsAtChunk_data() { AddChunkRows(); }

    void writeFailsAtChunk() {
        QFETCH(quint64, chunk);
        const quint64 before = m_screen->State().counts.reports;
        m_screen->FailWritesFrom(chunk);
        const WholeImageResult sent = m_transfers->SendWholeImage(m_new.data(), 0);
        QCOMPARE(sent.result, TransferResult::Refused);
        QCOMPARE(quint64(sent.chunksTaken), chunk - 1);
        QCOMPARE(m_transfers->wholeFrameBusy(), quint8{0});
        QCOMPARE(m_screen->State().counts.reports, before + chunk - 1);
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));
        // The control handle of the session alone.
        QCOMPARE(m_screen->OpenHandles(), 1);
        m_screen->ClearFaults();

        // An area right after the frame that was given up is welcome.
        QCOMPARE(m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10), TransferResult::Taken);
        QCOMPARE(m_transfers->SendWholeImage(m_new.data(), 0).result, TransferResult::Taken);
        QCOMPARE(m_screen->State().image, PictureOf(kNewPixel));
    }

    void vanishesAtChunk_data() { AddChunkRows(); }

    void vanishesAtChunk() {
        QFETCH(quint64, chunk);
        m_screen->VanishAtReport(chunk);
        const WholeImageResult sent = m_transfers->SendWholeImage(m_new.data(), 0);
        QCOMPARE(sent.result, TransferResult::Refused);
        QCOMPARE(quint64(sent.chunksTaken), chunk - 1);
        QVERIFY(!m_screen->IsPlugged());
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::NotThere);
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));

        m_screen->Plug();
        QCOMPARE(m_transfers->SendWholeImage(m_new.data(), 0).result, TransferResult::Taken);
        QCOMPARE(m_screen->State().image, PictureOf(kNewPixel));
        QCOMPARE(m_screen->State().counts.frames, quint64{2});
    }

    void comesBackUnderNewPaths() {
        m_screen->Unplug();
        m_screen->Plug(VirtualHidApi::NodeNumbers::New);
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::NotThere);
        QCOMPARE(m_session->EnumerateScreens(), 0);
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Taken);
    }

    void everyTransferTellsWhatBecameOfIt() {
        m_screen->FailOpens();
        QCOMPARE(AllResults(), Results(kCommands, TransferResult::NotThere));
        m_screen->ClearFaults();
        m_screen->FailWritesFrom(1);
        QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImageWithPos.\n");
        QCOMPARE(AllResults(), Results(kCommands, TransferResult::Refused));
        m_screen->ClearFaults();
        QCOMPARE(AllResults(), Results(kCommands, TransferResult::Taken));
        m_transfers->StopTransfers();
        QCOMPARE(AllResults(), Results(kCommands, TransferResult::Dropped));
    }

    void areaVanishesWhileWritten() {
        m_screen->VanishAtReport(1);
        QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImageWithPos.\n");
        QCOMPARE(m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10), TransferResult::Refused);
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));
    }

    void theLibraryFailsAtStart() {
        m_screen->FailInit();
        QCOMPARE(m_session->EnumerateScreens(), -1);
        m_session->OpenScreenByName("Kivo Screen");
        QVERIFY(!m_session->dataHandle());
    }

private:
    static constexpr quint16 kOldPixel = 0x1234;
    static constexpr quint16 kNewPixel = 0xF81F;

    // Of an area and each short command.
    using Results = QVector<TransferResult>;
    static constexpr int kCommands = 5;
    Results AllResults() {
        return {m_transfers->SendTimeSync(), m_transfers->SendTimeShow(), m_transfers->SendOrientation(1),
                m_transfers->SendRawReport(kRawMessage.data(), int(kRawMessage.size())),
                m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10)};
    }

    static void AddChunkRows() {
        QTest::addColumn<quint64>("chunk");
        for (quint64 chunk = 1; chunk <= 27; ++chunk) {
            QTest::addRow("chunk %d", static_cast<int>(chunk)) << chunk;
        }
    }

    const std::vector<quint8> m_old = FrameOf(0x12, 0x34);
    const std::vector<quint8> m_new = FrameOf(0xF8, 0x1F);
    std::unique_ptr<VirtualHidApi> m_screen;
    std::unique_ptr<ScreenSession> m_session;
    std::unique_ptr<Transfers> m_transfers;
};

KIVO_APPLESS_TEST(TestTransferFaults)
#include "tst_transfer_faults.moc"
