#include <QtTest>
#include <memory>
#include <thread>

#include "device/transfers.h"
#include "found_screen.h"
#include "recording_hid_api.h"
#include "support/report_bytes.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// The session's found screen has the paths "c" and "d".
class TestTransfers : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_api = std::make_unique<RecordingHidApi>();
        m_session = std::make_unique<ScreenSession>(*m_api);
        MarkScreenFound(*m_session);
        m_transfers = std::make_unique<Transfers>(*m_session, [] { return QTime(18, 46, 5); });
        m_pixels.assign(static_cast<std::size_t>(kFrameBytes), 0x11);
    }

    void cleanup() {
        m_transfers.reset();
        m_session.reset();
        QCOMPARE(m_api->OpenCount(), 0);
        QCOMPARE(m_api->misuses, 0);
    }

    void areaIsOneOpenOneWriteOneClose() {
        QCOMPARE(m_transfers->SendAreaImageWithPos(m_pixels.data(), 158, 38, 47, 24), TransferResult::Taken);
        QCOMPARE(m_api->opened, (std::vector<QByteArray>{"d"}));
        QCOMPARE(m_api->closed, (std::vector<QByteArray>{"d"}));
        QCOMPARE(m_api->writes.size(), std::size_t{1});
        const QByteArray expected =
            QByteArray::fromHex("0055a29e0026002f18") + QByteArray(47 * 24 * 2, '\x11');
        QCOMPARE(Report(0), Padded(expected, 4096));
    }

    void areaLosesTheLastByteOfTheBuffer() {
        QCOMPARE(m_transfers->SendAreaImageWithPos(m_pixels.data(), 0, 0, 4, 511), TransferResult::Taken);
        QCOMPARE(Report(0).size(), 4096);
        QCOMPARE(Report(0).back(), '\x11');
    }

    void failedAreaIsLoggedAndClosed() {
        m_api->writeResult = -1;
        QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImageWithPos.\n");
        QCOMPARE(m_transfers->SendAreaImageWithPos(m_pixels.data(), 0, 0, 1, 1), TransferResult::Refused);
        QCOMPARE(m_api->OpenCount(), 0);
    }

    void areaDuringAFrameIsDroppedBeforeOpening() {
        m_api->beforeWrite = [this] {
            const std::size_t openings = m_api->opened.size();
            QCOMPARE(m_transfers->wholeFrameBusy(), quint8{1});
            QCOMPARE(m_transfers->SendAreaImageWithPos(m_pixels.data(), 0, 0, 1, 1), TransferResult::Dropped);
            QCOMPARE(m_api->opened.size(), openings);
        };
        QCOMPARE(m_transfers->SendWholeImage(m_pixels.data(), 0).result, TransferResult::Taken);
        QCOMPARE(m_api->writes.size(), std::size_t{27});
    }

    void areaOvertakenByAFrameIsDroppedAndItsHandleClosed() {
        // The frame begins when the area has been let in and is about to open; it is held up in its first
        // chunk.
        std::thread uploader;
        std::atomic<bool> areaDone{false};
        std::atomic<int> openings{0};
        m_api->beforeWrite = [&] {
            while (!areaDone) {
                std::this_thread::yield();
            }
        };
        m_api->beforeOpen = [&] {
            if (openings++ != 0) {
                return;
            }
            uploader = std::thread([this] { m_transfers->SendWholeImage(m_pixels.data(), 0); });
            while (m_transfers->wholeFrameBusy() == 0) {
                std::this_thread::yield();
            }
        };
        const TransferResult sent = m_transfers->SendAreaImageWithPos(m_pixels.data(), 0, 0, 1, 1);
        areaDone = true;
        uploader.join();
        QCOMPARE(sent, TransferResult::Dropped);
        QCOMPARE(m_api->writes.size(), std::size_t{27});
        QCOMPARE(m_api->OpenCount(), 0);
    }

    void frameIsTwentySevenReports() {
        const WholeImageResult sent = m_transfers->SendWholeImage(m_pixels.data(), 0);
        QCOMPARE(sent.result, TransferResult::Taken);
        QCOMPARE(sent.chunksTaken, 27);
        QCOMPARE(m_api->writes.size(), std::size_t{27});
        for (std::size_t i = 0; i < 27; ++i) {
            QCOMPARE(Report(i).size(), 4105);
            QCOMPARE(static_cast<int>(Report(i).at(4)), static_cast<int>(i) + 1);
        }
        QCOMPARE(Report(16).left(9), QByteArray::fromHex("0055a3f11100000010"));
        QCOMPARE(Report(26).left(9), QByteArray::fromHex("0055a3f21b00a00009"));
        QCOMPARE(m_api->opened.size(), std::size_t{1});
        QCOMPARE(m_transfers->wholeFrameBusy(), quint8{0});
    }

    void frameHasNoPauses() {
        QCOMPARE(m_transfers->SendWholeImage(m_pixels.data(), 0).result, TransferResult::Taken);
    }

    void frameCarriesTheReportIdGiven() {
        QCOMPARE(m_transfers->SendWholeImage(m_pixels.data(), 3).result, TransferResult::Taken);
        for (std::size_t i = 0; i < 27; ++i) {
            QCOMPARE(Report(i).at(0), '\3');
        }
    }

    void frameWithoutAScreenIsNotThere() {
        m_api->refusesOpen = [](const QByteArray& /*path*/) { return true; };
        const WholeImageResult sent = m_transfers->SendWholeImage(m_pixels.data(), 0);
        QCOMPARE(sent.result, TransferResult::NotThere);
        QCOMPARE(sent.chunksTaken, 0);
        QCOMPARE(m_transfers->wholeFrameBusy(), quint8{0});
    }

    void shortCommands_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("landscape") << 0 << QByteArray::fromHex("0055a1f101");
        QTest::newRow("portrait") << 1 << QByteArray::fromHex("0055a1f102");
        QTest::newRow("time sync") << 2 << QByteArray::fromHex("0055a1f2122e05");
        QTest::newRow("time show") << 3 << QByteArray::fromHex("0055a1f3122e05");
    }

    void shortCommands() {
        QFETCH(int, which);
        QFETCH(QByteArray, start);
        if (which < 2) {
            QCOMPARE(m_transfers->SendOrientation(which), TransferResult::Taken);
        } else if (which == 2) {
            QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Taken);
        } else {
            QCOMPARE(m_transfers->SendTimeShow(), TransferResult::Taken);
        }
        QCOMPARE(m_api->writes.size(), std::size_t{1});
        QCOMPARE(Report(0), Padded(start, 4097));
        QCOMPARE(m_api->writes.at(0).path, QByteArray("d"));
    }

    void shortCommandsGoOutDuringAFrame() {
        bool once = true;
        m_api->beforeWrite = [this, &once] {
            if (std::exchange(once, false)) {
                QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Taken);
            }
        };
        QCOMPARE(m_transfers->SendWholeImage(m_pixels.data(), 0).result, TransferResult::Taken);
        QCOMPARE(m_api->writes.size(), std::size_t{28});
        // The command's end closed nothing of the frame's.
        QCOMPARE(Report(27).left(9), QByteArray::fromHex("0055a3f21b00a00009"));
    }

    void rawReportTellsAFailedWrite() {
        m_api->writeResult = -1;
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Refused);
        QCOMPARE(m_transfers->SendOrientation(0), TransferResult::Refused);
        QCOMPARE(m_transfers->SendTimeShow(), TransferResult::Refused);
    }

    void aTransferClosesTheSessionsDataHandle() {
        m_session->OpenScreenByName("Kivo Screen");
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Taken);
        QVERIFY(!m_session->dataHandle());
        QVERIFY(m_session->controlHandle());
        QCOMPARE(m_api->OpenPaths(), (std::vector<QByteArray>{"c"}));
    }

    void withNoScreenNothingHappens() {
        m_api->refusesOpen = [](const QByteArray& /*path*/) { return true; };
        QtMessageHandler former =
            qInstallMessageHandler([](QtMsgType /*type*/, const QMessageLogContext& /*context*/,
                                      const QString& /*text*/) { ++s_messages; });
        s_messages = 0;
        QCOMPARE(m_transfers->SendAreaImageWithPos(m_pixels.data(), 0, 0, 1, 1), TransferResult::NotThere);
        QCOMPARE(m_transfers->SendWholeImage(m_pixels.data(), 0).result, TransferResult::NotThere);
        QCOMPARE(m_transfers->SendRawReport(m_pixels.data(), 4), TransferResult::NotThere);
        QCOMPARE(m_transfers->SendOrientation(1), TransferResult::NotThere);
        QCOMPARE(m_transfers->SendTimeSync(), TransferResult::NotThere);
        QCOMPARE(m_transfers->SendTimeShow(), TransferResult::NotThere);
        qInstallMessageHandler(former);
        QCOMPARE(s_messages, 0);
        QVERIFY(m_api->writes.empty());
    }

    void theDefaultClockIsTheLocalTime() {
        Transfers transfers(*m_session);
        const QTime before = QTime::currentTime();
        QCOMPARE(transfers.SendTimeSync(), TransferResult::Taken);
        const QTime after = QTime::currentTime();
        const QByteArray report = Report(0);
        const QTime sent(report.at(4), report.at(5), report.at(6));
        QVERIFY(sent.isValid());
        // Around midnight the span turns over; whole seconds are sent.
        const int sinceBefore =
            (QTime(before.hour(), before.minute(), before.second()).secsTo(sent) + 86400) % 86400;
        QVERIFY(sinceBefore <= (before.secsTo(after) + 86400) % 86400 + 1);
    }

private:
    QByteArray Report(std::size_t index) const { return m_api->writes.at(index).report; }

    inline static int s_messages = 0;

    std::unique_ptr<RecordingHidApi> m_api;
    std::unique_ptr<ScreenSession> m_session;
    std::unique_ptr<Transfers> m_transfers;
    std::vector<quint8> m_pixels;
};

KIVO_GUILESS_TEST(TestTransfers)
#include "tst_transfers.moc"
