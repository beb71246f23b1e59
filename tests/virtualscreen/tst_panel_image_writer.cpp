#include <QTemporaryDir>
#include <QtTest>
#include <memory>

#include "device/transfers.h"
#include "support/test_program.h"
#include "virtualscreen/panel_image_writer.h"

using namespace kivo;

namespace {

std::atomic<int> g_warnings{0};

void CountWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtWarningMsg && text.startsWith(QLatin1String("The panel's picture cannot be written to ")))
        ++g_warnings;
}

}  // namespace

class TestPanelImageWriter : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_fileName = m_folder->filePath(QStringLiteral("panel.png"));
        m_screen = std::make_unique<VirtualHidApi>();
        m_session = std::make_unique<ScreenSession>(*m_screen);
        m_session->InitDeviceTable();
        m_session->EnumerateScreens();
        m_transfers = std::make_unique<Transfers>(*m_session);
    }

    void writesThePresentPicture() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        QTRY_COMPARE(QImage(m_fileName).size(), QSize(320, 170));
        QCOMPARE(QImage(m_fileName).pixel(0, 0), qRgb(0, 0, 0));
    }

    void followsThePicture() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        SendPixel(0xF8, 0x00);
        QTRY_COMPARE(FilePixel(), qRgb(255, 0, 0));
        SendPixel(0x00, 0x1F);
        QTRY_COMPARE(FilePixel(), qRgb(0, 0, 255));
    }

    void writesTheLastPictureAtTheEnd() {
        {
            const PanelImageWriter writer(*m_screen, m_fileName);
            for (int i = 0; i < 50; ++i)
                SendPixel(0xF8, static_cast<quint8>(i));
            SendPixel(0x07, 0xE0);
        }
        QCOMPARE(FilePixel(), qRgb(0, 255, 0));
        QVERIFY(QImage(m_fileName).convertToFormat(QImage::Format_RGB16) == m_screen->State().image);
    }

    void isNeverHalfWritten() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        QTRY_VERIFY(QFile::exists(m_fileName));
        QElapsedTimer timer;
        timer.start();
        // Long enough for two more pictures to take the first one's place while it is read again and again.
        for (int i = 0; timer.elapsed() < 1300; ++i) {
            SendPixel(static_cast<quint8>(i), 0);
            QCOMPARE(QImage(m_fileName).size(), QSize(320, 170));
        }
    }

    void writesNoMoreOftenThanTwiceASecond() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        QTRY_VERIFY(QFile::exists(m_fileName));
        QSet<QRgb> seen;
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; timer.elapsed() < 1200; ++i) {
            SendPixel(static_cast<quint8>(i % 256), 0);
            seen.insert(FilePixel());
        }
        // The one before, one at 0.5 s, one at 1.0 s, and one for a wait that began early.
        QVERIFY2(seen.size() <= 4, qPrintable(QString::number(seen.size())));
    }

    void leavesTheFileAloneWhenNothingChanges() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        QTRY_VERIFY(QFile::exists(m_fileName));
        SendPixel(0xF8, 0x00);
        QTRY_COMPARE(FilePixel(), qRgb(255, 0, 0));
        QVERIFY(QFile::remove(m_fileName));
        QVERIFY(m_transfers->SendTimeSync());
        QVERIFY(m_transfers->SendOrientation(1));
        // That nothing happens can only be waited for; longer than the time between two pictures.
        QTest::qWait(700);
        QVERIFY(!QFile::exists(m_fileName));
    }

    void complainsOnce() {
        g_warnings = 0;
        const QtMessageHandler former = qInstallMessageHandler(CountWarnings);
        {
            const PanelImageWriter writer(*m_screen, m_folder->filePath(QStringLiteral("none/panel.png")));
            QTRY_COMPARE(g_warnings.load(), 1);
            SendPixel(0xF8, 0x00);
        }
        qInstallMessageHandler(former);
        QCOMPARE(g_warnings.load(), 1);
    }

    void recoversWhenTheFileCanBeWrittenAgain() {
        const QString folder = m_folder->filePath(QStringLiteral("later"));
        g_warnings = 0;
        const QtMessageHandler former = qInstallMessageHandler(CountWarnings);
        {
            const PanelImageWriter writer(*m_screen, folder + QLatin1String("/panel.png"));
            QTRY_COMPARE(g_warnings.load(), 1);
            QVERIFY(QDir().mkdir(folder));
            SendPixel(0x00, 0x1F);
        }
        qInstallMessageHandler(former);
        QCOMPARE(QImage(folder + QLatin1String("/panel.png")).pixel(0, 0), qRgb(0, 0, 255));
    }

private:
    void SendPixel(quint8 high, quint8 low) {
        const std::array<quint8, 2> pixel{high, low};
        QVERIFY(m_transfers->SendAreaImageWithPos(pixel.data(), 0, 0, 1, 1));
    }

    QRgb FilePixel() const {
        const QImage image(m_fileName);
        return image.isNull() ? 0 : image.pixel(0, 0);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_fileName;
    std::unique_ptr<VirtualHidApi> m_screen;
    std::unique_ptr<ScreenSession> m_session;
    std::unique_ptr<Transfers> m_transfers;
};

KIVO_GUILESS_TEST(TestPanelImageWriter)
#include "tst_panel_image_writer.moc"
