#include <QDeadlineTimer>
#include <QSysInfo>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>
#include <optional>

#include "device/transfers.h"
#include "support/test_program.h"
#include "virtualscreen/panel_image_writer.h"

using namespace kivo;

namespace {

// Longer than any picture takes, on a machine with much else to do.
constexpr int kPatienceMs = 60000;

std::atomic<int> g_warnings{0};

void CountWarnings(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtWarningMsg && text.startsWith(QLatin1String("The panel's picture cannot be written to "))) {
        ++g_warnings;
    }
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
        QTRY_VERIFY_WITH_TIMEOUT(FilePicture().has_value(), kPatienceMs);
        QCOMPARE(FilePicture()->size(), QSize(320, 170));
        QCOMPARE(FilePixel(), qRgb(0, 0, 0));
    }

    void followsThePicture() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        SendPixel(0xF8, 0x00);
        QTRY_COMPARE_WITH_TIMEOUT(FilePixel(), qRgb(255, 0, 0), kPatienceMs);
        SendPixel(0x00, 0x1F);
        QTRY_COMPARE_WITH_TIMEOUT(FilePixel(), qRgb(0, 0, 255), kPatienceMs);
    }

    void writesTheLastPictureAtTheEnd() {
        {
            const PanelImageWriter writer(*m_screen, m_fileName);
            for (int i = 0; i < 50; ++i) {
                SendPixel(0xF8, static_cast<quint8>(i));
            }
            SendPixel(0x07, 0xE0);
        }
        QCOMPARE(FilePixel(), qRgb(0, 255, 0));
        QVERIFY(QImage(m_fileName).convertToFormat(QImage::Format_RGB16) == m_screen->State().image);
    }

    void isNeverHalfWritten() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_fileName), kPatienceMs);
        // Read again and again while two more pictures take the first one's place.
        QSet<QRgb> seen;
        const QDeadlineTimer patience(kPatienceMs);
        for (int i = 0; seen.size() < 3; ++i) {
            QVERIFY(!patience.hasExpired());
            SendNumber(i);
            const std::optional<QImage> picture = FilePicture();
            QVERIFY(picture.has_value() || MayBeLockedWhileReplaced());
            if (picture) {
                QCOMPARE(picture->size(), QSize(320, 170));
                seen.insert(picture->pixel(0, 0));
            }
            LetTheWriterIn();
        }
    }

    void writesNoMoreOftenThanTwiceASecond() {
        const PanelImageWriter writer(*m_screen, m_fileName);
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_fileName), kPatienceMs);
        QSet<QRgb> seen;
        QElapsedTimer timer;
        timer.start();
        qint64 firstStoodMs = 0;  // the last time that the first picture was surely still there
        const QDeadlineTimer patience(kPatienceMs);
        for (int i = 0; seen.size() < 4; ++i) {
            QVERIFY(!patience.hasExpired());
            SendNumber(i);
            const qint64 beforeMs = timer.elapsed();
            if (const std::optional<QImage> picture = FilePicture()) {
                seen.insert(picture->pixel(0, 0));
            }
            if (seen.size() < 2) {
                firstStoodMs = beforeMs;
            }
            LetTheWriterIn();
        }
        // Three pictures after that: two whole waits lie between them, however late they are seen.
        QVERIFY(timer.elapsed() - firstStoodMs >= 1000);
    }

    void leavesTheFileAloneWhenNothingChanges() {
        {
            const PanelImageWriter writer(*m_screen, m_fileName);
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_fileName), kPatienceMs);
            SendPixel(0xF8, 0x00);
            QTRY_COMPARE_WITH_TIMEOUT(FilePixel(), qRgb(255, 0, 0), kPatienceMs);
            QVERIFY(QFile::remove(m_fileName));
            QCOMPARE(m_transfers->SendTimeSync(), TransferResult::Taken);
            QCOMPARE(m_transfers->SendOrientation(1), TransferResult::Taken);
        }
        // A change would have been written by now, for the end waits for nothing.
        QVERIFY(!QFile::exists(m_fileName));
    }

    void complainsOnce() {
        g_warnings = 0;
        const QtMessageHandler former = qInstallMessageHandler(CountWarnings);
        {
            const PanelImageWriter writer(*m_screen, m_folder->filePath(QStringLiteral("none/panel.png")));
            QTRY_COMPARE_WITH_TIMEOUT(g_warnings.load(), 1, kPatienceMs);
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
            QTRY_COMPARE_WITH_TIMEOUT(g_warnings.load(), 1, kPatienceMs);
            QVERIFY(QDir().mkdir(folder));
            SendPixel(0x00, 0x1F);
        }
        qInstallMessageHandler(former);
        QCOMPARE(QImage(folder + QLatin1String("/panel.png")).pixel(0, 0), qRgb(0, 0, 255));
    }

private:
    void SendPixel(quint8 high, quint8 low) {
        const std::array<quint8, 2> pixel{high, low};
        QCOMPARE(m_transfers->SendAreaImageWithPos(pixel.data(), 0, 0, 1, 1), TransferResult::Taken);
    }

    // Another colour for each number up to 65535.
    void SendNumber(int number) {
        SendPixel(static_cast<quint8>(number >> 8), static_cast<quint8>(number & 0xFF));
    }

    // Windows lets nobody open a file that is just being replaced, and nobody replace one that is open.
    static bool MayBeLockedWhileReplaced() { return QSysInfo::kernelType() == QLatin1String("winnt"); }

    // The writer tries twice a second. Where an open file stops it, the file is left alone far longer than it
    // is read.
    static void LetTheWriterIn() {
        if (MayBeLockedWhileReplaced()) {
            QTest::qSleep(20);
        }
    }

    // None where the file cannot be opened. It is open for as short a time as can be.
    std::optional<QImage> FilePicture() const {
        QFile file(m_fileName);
        if (!file.open(QIODevice::ReadOnly)) {
            return {};
        }
        const QByteArray bytes = file.readAll();
        file.close();
        return QImage::fromData(bytes, "PNG");
    }

    QRgb FilePixel() const {
        const std::optional<QImage> picture = FilePicture();
        return picture && !picture->isNull() ? picture->pixel(0, 0) : 0;
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_fileName;
    std::unique_ptr<VirtualHidApi> m_screen;
    std::unique_ptr<ScreenSession> m_session;
    std::unique_ptr<Transfers> m_transfers;
};

KIVO_GUILESS_TEST(TestPanelImageWriter)
#include "tst_panel_image_writer.moc"
