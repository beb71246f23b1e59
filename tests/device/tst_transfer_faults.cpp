#include <QtTest>
#include <memory>

#include "../config/log_catcher.h"
#include "device/transfers.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

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
        QVERIFY(m_transfers->SendWholeImage(m_old.data(), 0));
    }

    void cleanup() {
        QCOMPARE(m_screen->State().counts.errors, quint64{0});
        m_transfers.reset();
        m_session.reset();
        QCOMPARE(m_screen->OpenHandles(), 0);
    }

    void openFails() {
        m_screen->FailOpens();
        QVERIFY(!m_transfers->SendWholeImage(m_new.data(), 0));
        QVERIFY(!m_transfers->SendTimeSync());
        QVERIFY(!m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10));
        QCOMPARE(m_transfers->wholeFrameBusy(), quint8{0});
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));
        m_screen->ClearFaults();
        QVERIFY(m_transfers->SendWholeImage(m_new.data(), 0));
        QCOMPARE(m_screen->State().image, PictureOf(kNewPixel));
    }

    void writeFailsAtChunk_data() { AddChunkRows(); }

    void writeFailsAtChunk() {
        QFETCH(quint64, chunk);
        const quint64 before = m_screen->State().counts.reports;
        m_screen->FailWritesFrom(chunk);
        QVERIFY(!m_transfers->SendWholeImage(m_new.data(), 0));
        QCOMPARE(m_transfers->wholeFrameBusy(), quint8{0});
        QCOMPARE(m_screen->State().counts.reports, before + chunk - 1);
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));
        // The control handle of the session alone.
        QCOMPARE(m_screen->OpenHandles(), 1);
        m_screen->ClearFaults();

        // An area right after the frame that was given up is welcome.
        QVERIFY(m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10));
        QVERIFY(m_transfers->SendWholeImage(m_new.data(), 0));
        QCOMPARE(m_screen->State().image, PictureOf(kNewPixel));
    }

    void vanishesAtChunk_data() { AddChunkRows(); }

    void vanishesAtChunk() {
        QFETCH(quint64, chunk);
        m_screen->VanishAtReport(chunk);
        QVERIFY(!m_transfers->SendWholeImage(m_new.data(), 0));
        QVERIFY(!m_screen->IsPlugged());
        QVERIFY(!m_transfers->SendTimeSync());
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));

        m_screen->Plug();
        QVERIFY(m_transfers->SendWholeImage(m_new.data(), 0));
        QCOMPARE(m_screen->State().image, PictureOf(kNewPixel));
        QCOMPARE(m_screen->State().counts.frames, quint64{2});
    }

    void comesBackUnderNewPaths() {
        m_screen->Unplug();
        m_screen->Plug(VirtualHidApi::NodeNumbers::New);
        QVERIFY(!m_transfers->SendTimeSync());
        QCOMPARE(m_session->EnumerateScreens(), 0);
        QVERIFY(m_transfers->SendTimeSync());
    }

    void aFailureIsToldOnce() {
        QVERIFY(!m_transfers->TakeFailure());
        m_screen->FailOpens();
        m_transfers->SendTimeSync();
        QVERIFY(m_transfers->TakeFailure());
        QVERIFY(!m_transfers->TakeFailure());
        m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10);
        QVERIFY(m_transfers->TakeFailure());
        m_transfers->SendWholeImage(m_new.data(), 0);
        QVERIFY(m_transfers->TakeFailure());
        m_screen->ClearFaults();
        m_screen->FailWritesFrom(1);
        m_transfers->SendOrientation(0);
        QVERIFY(m_transfers->TakeFailure());
        QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImageWithPos.\n");
        m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10);
        QVERIFY(m_transfers->TakeFailure());
        m_screen->ClearFaults();
        m_screen->FailWritesFrom(14);
        m_transfers->SendWholeImage(m_new.data(), 0);
        QVERIFY(!m_transfers->TakeFailure());  // a frame that is cut off stays pending by itself
        m_transfers->StopTransfers();
        m_transfers->SendTimeSync();
        QVERIFY(!m_transfers->TakeFailure());
    }

    void openedButTakingNothingIsToldOnceUntilItTakesSomething() {
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
        const auto restore = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });
        const test::LogCatcher log;
        for (int round = 1; round <= 2; ++round) {
            m_screen->FailWritesFrom(1);
            m_transfers->SendTimeSync();
            m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10);
            QCOMPARE(log.lines().size(), round - 1);
            m_transfers->SendWholeImage(m_new.data(), 0);
            QCOMPARE(log.lines().size(), round);
            QVERIFY(log.lines().constLast().contains(QLatin1String("another program")));
            for (int further = 0; further < 5; ++further) {
                m_transfers->SendTimeSync();
            }
            QCOMPARE(log.lines().size(), round);
            m_screen->ClearFaults();
            QVERIFY(m_transfers->SendTimeSync());
        }
    }

    void aScreenThatIsPulledOutIsNotToldSo() {
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
        const auto restore = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });
        const test::LogCatcher log;
        m_screen->VanishAtReport(1);
        for (int k = 0; k < 5; ++k) {
            m_transfers->SendTimeSync();
        }
        QVERIFY(log.lines().isEmpty());
    }

    void areaVanishesWhileWritten() {
        m_screen->VanishAtReport(1);
        QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImageWithPos.\n");
        QVERIFY(!m_transfers->SendAreaImageWithPos(m_new.data(), 0, 0, 10, 10));
        QCOMPARE(m_screen->State().image, PictureOf(kOldPixel));
    }

    void theSessionsHandleOfAVanishedScreenFails() {
        m_session->OpenScreenByName("Kivo Screen");
        m_screen->Unplug();
        m_screen->Plug();
        QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImage.\n");
        m_transfers->SendAreaImage(m_new.data(), 10, 10);
        m_session->OpenScreenByName("Kivo Screen");
        m_transfers->SendAreaImage(m_new.data(), 10, 10);
        QCOMPARE(m_screen->State().counts.areas, quint64{1});
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

    static void AddChunkRows() {
        QTest::addColumn<quint64>("chunk");
        for (quint64 chunk = 1; chunk <= 27; ++chunk)
            QTest::addRow("chunk %d", static_cast<int>(chunk)) << chunk;
    }

    const std::vector<quint8> m_old = FrameOf(0x12, 0x34);
    const std::vector<quint8> m_new = FrameOf(0xF8, 0x1F);
    std::unique_ptr<VirtualHidApi> m_screen;
    std::unique_ptr<ScreenSession> m_session;
    std::unique_ptr<Transfers> m_transfers;
};

KIVO_APPLESS_TEST(TestTransferFaults)
#include "tst_transfer_faults.moc"
