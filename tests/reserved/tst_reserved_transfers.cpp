#include <QImage>
#include <QtTest>
#include <memory>
#include <thread>

#include "../device/found_screen.h"
#include "../device/recording_hid_api.h"
#include "device/reports.h"
#include "reserved/reserved_transfers.h"
#include "support/report_bytes.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;
using namespace kivo::test;

// The session's found screen has the paths "c" and "d".
class TestReservedTransfers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_api = std::make_unique<RecordingHidApi>();
        m_session = std::make_unique<ScreenSession>(*m_api);
        MarkScreenFound(*m_session);
        m_pauses.clear();
        m_transfers = std::make_unique<ReservedTransfers>(
            *m_session, [this](std::chrono::milliseconds duration) { m_pauses.push_back(duration.count()); });
        m_pixels.assign(static_cast<std::size_t>(kFrameBytes), 0x11);
    }

    void cleanup() {
        m_transfers.reset();
        m_session.reset();
        QCOMPARE(m_api->OpenCount(), 0);
        QCOMPARE(m_api->misuses, 0);
    }

    void withoutAHandleNothingHappens() {
        m_transfers->SendAreaImage(m_pixels.data(), 1, 1);
        m_transfers->SendFillRect(0, 0, 1, 1, 0, 0, 0);
        m_transfers->SendProbe(16, 0);
        m_transfers->SendImageChunked(QImage(10, 10, QImage::Format_RGB32), 0, 0);
        QCOMPARE(ReservedTransfers::SendFeature(nullptr, m_pixels.data(), 8), -1);
        QVERIFY(m_api->writes.empty());
        QVERIFY(m_pauses.empty());
    }

    void areaOnTheOpenHandle() {
        m_session->OpenScreenByName("Kivo Screen");
        m_transfers->SendAreaImage(m_pixels.data(), 2, 1);
        QCOMPARE(Report(0), Padded(QByteArray::fromHex("0055a20000000002011111 1111"), 4096));
        QVERIFY(m_session->dataHandle());
        m_api->writeResult = -1;
        QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImage.\n");
        m_transfers->SendAreaImage(m_pixels.data(), 2, 1);
    }

    void fillOnTheOpenHandle() {
        m_session->OpenScreenByName("Kivo Screen");
        m_transfers->SendFillRect(1, 2, 1, 2, 0xAA, 0xBB, 5);
        QCOMPARE(Report(0), Padded(QByteArray::fromHex("0555a2010002000102aabbaabb"), 4105));
        m_api->writeResult = -1;
        QTest::ignoreMessage(QtDebugMsg, "Unable to send a feature report.\n");
        m_transfers->SendFillRect(1, 2, 1, 2, 0xAA, 0xBB, 5);
    }

    void probe_data() {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("written");
        QTest::newRow("nine bytes") << 9 << 9;
        QTest::newRow("all") << 4096 << 4096;
        QTest::newRow("more than there are") << 5000 << 4096;
        QTest::newRow("negative") << -7 << 0;
    }

    void probe() {
        QFETCH(int, length);
        QFETCH(int, written);
        m_session->OpenScreenByName("Kivo Screen");
        m_transfers->SendProbe(length, 2);
        QCOMPARE(Report(0), Padded(QByteArray::fromHex("0255a2010203040506"), 4096).left(written));
    }

    void failedProbeIsLogged() {
        m_session->OpenScreenByName("Kivo Screen");
        m_api->writeResult = -1;
        QTest::ignoreMessage(QtDebugMsg, "Unable to send a feature report.\n");
        m_transfers->SendProbe(9, 0);
    }

    void chunkedImageGoesOutInParts() {
        m_session->OpenScreenByName("Kivo Screen");
        QImage image(100, 50, QImage::Format_RGB32);
        image.fill(QColor(255, 0, 0));
        m_transfers->SendImageChunked(image, 7, 20);
        QCOMPARE(m_api->writes.size(), std::size_t{3});
        QCOMPARE(m_pauses, (std::vector<qint64>{100, 100}));
        const QList<QByteArray> headers{QByteArray::fromHex("0055a2070014006410"),
                                        QByteArray::fromHex("0055a2070024006410"),
                                        QByteArray::fromHex("0055a2070034006412")};
        const QByteArray red = QByteArray::fromHex("f800");
        for (int i = 0; i < 3; ++i) {
            const QByteArray expected = headers.at(i) + red.repeated(100 * (i == 2 ? 18 : 16));
            QCOMPARE(Report(static_cast<std::size_t>(i)), Padded(expected, 4097));
        }
    }

    void chunkedImageKeepsThePixelOrder() {
        m_session->OpenScreenByName("Kivo Screen");
        // Three pixels a row: the rows of the image in memory are padded, those on the wire are not.
        QImage image(3, 2, QImage::Format_RGB16);
        for (int i = 0; i < 6; ++i) {
            reinterpret_cast<quint16*>(image.scanLine(i / 3))[i % 3] =
                static_cast<quint16>(0x0102 + i * 0x0202);
        }
        m_transfers->SendImageChunked(image, 0, 0);
        QCOMPARE(Report(0).mid(9, 12), QByteArray::fromHex("0102030405060708090a0b0c"));
    }

    void chunkedImageStopsWhenTheScreenIsClosed() {
        m_session->OpenScreenByName("Kivo Screen");
        ReservedTransfers transfers(
            *m_session, [this](std::chrono::milliseconds /*duration*/) { m_session->CloseScreen(); });
        transfers.SendImageChunked(QImage(100, 50, QImage::Format_RGB16), 0, 0);
        QCOMPARE(m_api->writes.size(), std::size_t{1});
    }

    void chunkedImageGoesOnAfterAFailedPart() {
        m_session->OpenScreenByName("Kivo Screen");
        m_api->writeResult = -1;
        for (int i = 0; i < 3; ++i) {
            QTest::ignoreMessage(QtDebugMsg, "Unable to send a feature report.\n");
        }
        m_transfers->SendImageChunked(QImage(100, 50, QImage::Format_RGB16), 0, 0);
        QCOMPARE(m_api->writes.size(), std::size_t{3});
    }

    void chunkedImagesOfAnySizeAreSafe_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("reports");
        QTest::newRow("null image") << QSize(0, 0) << 0;
        QTest::newRow("one pixel") << QSize(1, 1) << 1;
        QTest::newRow("a rest larger than a report") << QSize(200, 39) << 5;
        QTest::newRow("a row wider than a report") << QSize(2100, 3) << 3;
        QTest::newRow("a very wide row") << QSize(9000, 1) << 1;
        QTest::newRow("a whole panel") << QSize(320, 170) << 29;
    }

    void chunkedImagesOfAnySizeAreSafe() {
        QFETCH(QSize, size);
        QFETCH(int, reports);
        m_session->OpenScreenByName("Kivo Screen");
        QImage image(size, QImage::Format_ARGB32);
        if (!image.isNull()) {
            image.fill(Qt::green);
        }
        m_transfers->SendImageChunked(image, 0, 0);
        QCOMPARE(static_cast<int>(m_api->writes.size()), reports);
    }

    void feature() {
        m_session->OpenScreenByName("Kivo Screen");
        QCOMPARE(ReservedTransfers::SendFeature(m_session->dataHandle(), m_pixels.data(), 8), 0);
        QCOMPARE(m_api->features.at(0).report, QByteArray(8, '\x11'));
        m_api->writeResult = -1;
        QTest::ignoreMessage(QtDebugMsg, "Unable to send a feature report.\n");
        QCOMPARE(ReservedTransfers::SendFeature(m_session->dataHandle(), m_pixels.data(), 8), -1);
    }

    void theDefaultPauseSleeps() {
        m_session->OpenScreenByName("Kivo Screen");
        ReservedTransfers transfers(*m_session);
        QElapsedTimer timer;
        timer.start();
        transfers.SendImageChunked(QImage(40, 102, QImage::Format_RGB16), 0, 0);
        QVERIFY(timer.elapsed() >= 100);
        QCOMPARE(m_api->writes.size(), std::size_t{2});
    }

    void theSessionsHandleOfAVanishedScreenFails() {
        VirtualHidApi screen;
        {
            ScreenSession session(screen);
            session.InitDeviceTable();
            QCOMPARE(session.EnumerateScreens(), 0);
            ReservedTransfers transfers(session);
            session.OpenScreenByName("Kivo Screen");
            screen.Unplug();
            screen.Plug();
            QTest::ignoreMessage(QtDebugMsg, "Unable to SendAreaImage.\n");
            transfers.SendAreaImage(m_pixels.data(), 10, 10);
            session.OpenScreenByName("Kivo Screen");
            transfers.SendAreaImage(m_pixels.data(), 10, 10);
        }
        QCOMPARE(screen.State().counts.areas, quint64{1});
        QCOMPARE(screen.OpenHandles(), 0);
    }

    void imagesInPartsWhileTheScreenIsReopened() {
        constexpr int rounds = 500;
        VirtualHidApi screen;
        {
            ScreenSession session(screen);
            session.InitDeviceTable();
            session.EnumerateScreens();
            ReservedTransfers transfers(session, [](std::chrono::milliseconds /*pause*/) {});
            QImage image(100, 50, QImage::Format_RGB16);
            image.fill(Qt::red);
            std::thread writer([&] {
                for (int i = 0; i < rounds; ++i) {
                    transfers.SendImageChunked(image, 0, 0);
                }
            });
            for (int i = 0; i < rounds; ++i) {
                session.OpenScreenByName("Kivo Screen");
                session.OpenForTransfer();
            }
            writer.join();
        }
        QCOMPARE(screen.State().counts.errors, quint64{0});
        QCOMPARE(screen.OpenHandles(), 0);
    }

private:
    QByteArray Report(std::size_t index) const { return m_api->writes.at(index).report; }

    std::unique_ptr<RecordingHidApi> m_api;
    std::unique_ptr<ScreenSession> m_session;
    std::unique_ptr<ReservedTransfers> m_transfers;
    std::vector<qint64> m_pauses;
    std::vector<quint8> m_pixels;
};

KIVO_GUILESS_TEST(TestReservedTransfers)
#include "tst_reserved_transfers.moc"
