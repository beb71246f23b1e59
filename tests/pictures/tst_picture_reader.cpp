#include <QDateTime>
#include <QFileInfo>
#include <QTest>

#include <atomic>

#include "../config/log_catcher.h"
#include "compose/theme_catalogue.h"
#include "picture_files.h"
#include "pictures/picture_path.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_work.h"
#include "resources/resources.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

quint32 PngChecksum(const QByteArray& bytes) {
    quint32 crc = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0);
        }
    }
    return ~crc;
}

// The four bytes of a number, highest first, as PNG has them.
QByteArray BigEndianBytes(quint32 number) {
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.append(static_cast<char>((number >> shift) & 0xFF));
    }
    return bytes;
}

// A PNG whose header claims another size than its pixels have.
QByteArray PngThatClaims(quint32 width, quint32 height) {
    QByteArray png = Encoded(Filled(QSize(1, 1), Qt::red), "PNG");
    constexpr int kHeader = 12;  // "IHDR", width, height, depth and four more bytes, checksum
    png.replace(kHeader + 4, 8, BigEndianBytes(width) + BigEndianBytes(height));
    return png.replace(kHeader + 17, 4, BigEndianBytes(PngChecksum(png.mid(kHeader, 17))));
}

Picture Read(const QString& path, const Picture* former = nullptr) {
    const std::atomic<bool> stop{false};
    return ReadPicture(path, former, PictureWork(stop));
}

}  // namespace

class TestPictureReader : public QObject {
    Q_OBJECT

private:
    PictureFolder m_folder;

private slots:
    void initTestCase() { InitResources(); }

    void WhatIsNoPictureIsNullAndLoggedOnce_data() {
        QTest::addColumn<QString>("path");
        const QByteArray jpeg = Encoded(Striped(QSize(400, 300)), "JPEG");
        QTest::newRow("missing") << m_folder.Path(QStringLiteral("missing.png"));
        QTest::newRow("no path") << QString();
        QTest::newRow("missing resource") << QStringLiteral("://background/99.jpg");
        QTest::newRow("folder") << m_folder.Path();
        QTest::newRow("empty file") << m_folder.Write(QStringLiteral("empty.png"), QByteArray());
        QTest::newRow("text named like a picture")
            << m_folder.Write(QStringLiteral("text.png"), "This is no picture.\n");
        QTest::newRow("JPEG that ends in its header")
            << m_folder.Write(QStringLiteral("header.jpg"), jpeg.left(100));
        QTest::newRow("PNG of 30,000 x 30,000")
            << m_folder.Write(QStringLiteral("huge.png"), PngThatClaims(30000, 30000));
        QTest::newRow("PNG longer than any picture")
            << m_folder.Write(QStringLiteral("long.png"), PngThatClaims(2000000, 1));
        QTest::newRow("PNG of the largest size there is")
            << m_folder.Write(QStringLiteral("max.png"), PngThatClaims(0x7FFFFFFF, 0x7FFFFFFF));
    }
    void WhatIsNoPictureIsNullAndLoggedOnce() {
        QFETCH(QString, path);
        const LogCatcher log;
        QVERIFY(LoadPicture(path).isNull());
        QStringList ours = log.lines().filter(QStringLiteral("The picture"));
        QCOMPARE(ours.size(), 1);
        QVERIFY(ours.first().contains(path));
        // What is shown instead is not known here.
        QVERIFY(!ours.first().contains(QStringLiteral("black")));
    }

    void ATruncatedPictureDoesNoHarm_data() {
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("JPEG") << QByteArray("JPEG");
        QTest::newRow("PNG") << QByteArray("PNG");
        QTest::newRow("BMP") << QByteArray("BMP");
    }
    void ATruncatedPictureDoesNoHarm() {
        QFETCH(QByteArray, format);
        const QByteArray whole = Encoded(Striped(QSize(300, 200)), format.constData());
        for (int percent = 5; percent < 100; percent += 5) {
            const LogCatcher log;
            const QImage picture = LoadPicture(
                m_folder.Write(QStringLiteral("part.bin"), whole.left(whole.size() * percent / 100)));
            // Nothing, or what the file still holds in its place.
            QVERIFY(picture.isNull() || picture.size() == QSize(300, 200));
            const bool said = !log.lines().isEmpty();
            QVERIFY(said || !picture.isNull());
        }
    }

    void PicturesThatOpen_data() {
        QTest::addColumn<QString>("path");
        const QImage image = Striped(QSize(640, 340));
        QTest::newRow("PNG") << m_folder.Write(QStringLiteral("a.png"), Encoded(image, "PNG"));
        QTest::newRow("JPEG") << m_folder.Write(QStringLiteral("a.jpg"), Encoded(image, "JPEG"));
        QTest::newRow("BMP") << m_folder.Write(QStringLiteral("a.bmp"), Encoded(image, "BMP"));
        QTest::newRow("JPEG named as PNG") << m_folder.Write(QStringLiteral("b.png"), Encoded(image, "JPEG"));
        QTest::newRow("without a suffix") << m_folder.Write(QStringLiteral("c"), Encoded(image, "PNG"));
        QTest::newRow("Chinese name") << m_folder.Write(QStringLiteral("图片 1.png"), Encoded(image, "PNG"));
    }
    void PicturesThatOpen() {
        QFETCH(QString, path);
        const LogCatcher log;
        const QImage picture = LoadPicture(path);
        QCOMPARE(picture.size(), QSize(640, 340));
        QVERIFY(IsNearly(picture.pixelColor(QPoint(20, 170)), Qt::red));
        QVERIFY(IsNearly(picture.pixelColor(QPoint(620, 170)), Qt::blue));
        QVERIFY(log.lines().isEmpty());
    }

    void BuiltInPicturesOpen() {
        for (const QString& path : BuiltInBackgrounds()) {
            QCOMPARE(LoadPicture(path).size(), QSize(1280, 680));
        }
    }

    void ACamerasMarkTurnsThePictureUpright() {
        const QImage image = Striped(QSize(300, 120));  // red at the left
        struct Row {
            quint8 mark;
            QSize size;
            QPoint red;
        };
        for (const Row& row :
             {Row{1, QSize(300, 120), QPoint(20, 60)}, Row{3, QSize(300, 120), QPoint(280, 60)},
              Row{6, QSize(120, 300), QPoint(60, 20)}, Row{8, QSize(120, 300), QPoint(60, 280)}}) {
            const QImage picture =
                LoadPicture(m_folder.Write(QStringLiteral("marked.jpg"), MarkedJpeg(image, row.mark)));
            QCOMPARE(picture.size(), row.size);
            QVERIFY2(IsNearly(picture.pixelColor(row.red), Qt::red), QByteArray::number(row.mark));
        }
    }

    void ALargePictureIsDecodedSmaller() {
        const QImage picture = LoadPicture(
            m_folder.Write(QStringLiteral("large.jpg"), Encoded(Striped(QSize(6000, 3000)), "JPEG")));
        QVERIFY(picture.height() >= 320 && picture.height() < 3000);
        QCOMPARE(picture.width(), picture.height() * 2);
        QVERIFY(IsNearly(picture.pixelColor(QPoint(20, picture.height() / 2)), Qt::red));
    }

    // Whatever format it has: the window keeps it, and composes with it at every step of a trim.
    void ALargePictureIsMadeSmaller() {
        for (const char* format : {"PNG", "BMP"}) {
            const QImage picture = LoadPicture(
                m_folder.Write(QStringLiteral("large.bin"), Encoded(Striped(QSize(3000, 1500)), format)));
            QCOMPARE(picture.size(), QSize(2160, 1080));
            QVERIFY(IsNearly(picture.pixelColor(QPoint(20, 540)), Qt::red));
            QVERIFY(IsNearly(picture.pixelColor(QPoint(2140, 540)), Qt::blue));
        }
        QCOMPARE(
            LoadPicture(m_folder.Write(QStringLiteral("thin.png"), Encoded(Striped(QSize(5000, 40)), "PNG")))
                .size(),
            QSize(5000, 40));
    }

    // However long its other side: what is kept of pictures has a bound.
    void APanoramaIsMadeSmaller() {
        const QImage picture = LoadPicture(
            m_folder.Write(QStringLiteral("wide.png"), Encoded(Filled(QSize(12000, 1080), Qt::red), "PNG")));
        QVERIFY(qint64(picture.width()) * picture.height() <= kMostPicturePixels);
        QVERIFY(qint64(picture.width()) * picture.height() > kMostPicturePixels * 9 / 10);
        QVERIFY(qAbs(double(picture.width()) / picture.height() - 12000.0 / 1080) < 0.05);
    }

    void DeepColoursTakeNoMoreRoom() {
        const QImage deep =
            Filled(QSize(400, 300), QColor(200, 100, 50)).convertToFormat(QImage::Format_RGBA64);
        const QImage picture = LoadPicture(m_folder.Write(QStringLiteral("deep.png"), Encoded(deep, "PNG")));
        QVERIFY(picture.depth() <= 32);
        QCOMPARE(picture.pixelColor(10, 10), QColor(200, 100, 50));
    }

    void AFileThatIsTheSameIsNotDecodedAgain() {
        const QString path =
            m_folder.Write(QStringLiteral("same.png"), Encoded(Filled(QSize(30, 20), Qt::red), "PNG"));
        const Picture first = Read(path);
        QCOMPARE(first.failure, PictureFailure::None);
        QCOMPARE(Read(path, &first).image.cacheKey(), first.image.cacheKey());
    }

    void AFileThatHasChangedIsReadAgain_data() {
        QTest::addColumn<bool>("sameLength");
        QTest::addColumn<int>("laterMs");
        QTest::newRow("other length, same time") << false << 0;
        QTest::newRow("same length, a moment later") << true << 40;
        QTest::newRow("same length, copied with an older time") << true << -100000;
    }
    void AFileThatHasChangedIsReadAgain() {
        QFETCH(bool, sameLength);
        QFETCH(int, laterMs);
        QByteArray red = Encoded(Filled(QSize(30, 20), Qt::red), "BMP");
        const QString path = m_folder.Write(QStringLiteral("changed.bmp"), red);
        const QDateTime before = QFileInfo(path).lastModified();
        const Picture first = Read(path);
        const QByteArray blue = Encoded(Filled(QSize(30, 20), Qt::blue), "BMP");
        m_folder.Write(QStringLiteral("changed.bmp"), sameLength ? blue : blue + "x");
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(before.addMSecs(laterMs), QFileDevice::FileModificationTime));
        file.close();
        QCOMPARE(Read(path, &first).image.pixelColor(3, 3), QColor(Qt::blue));
    }

    void ABrokenFileIsReadAgainWhenItHasChanged() {
        const QString path = m_folder.Write(QStringLiteral("mended.png"), "This is no picture.\n");
        const Picture broken = Read(path);
        QCOMPARE(broken.failure, PictureFailure::Unreadable);
        const Picture again = Read(path, &broken);
        QCOMPARE(again.reason, broken.reason);
        m_folder.Write(QStringLiteral("mended.png"), Encoded(Filled(QSize(30, 20), Qt::red), "PNG"));
        QCOMPARE(Read(path, &broken).failure, PictureFailure::None);
    }

    void AMissingFileIsToldFromABrokenOne() {
        QCOMPARE(Read(m_folder.Path(QStringLiteral("none.png"))).failure, PictureFailure::Missing);
        QCOMPARE(Read(m_folder.Path()).failure, PictureFailure::Missing);
        QCOMPARE(Read(QStringLiteral("://background/99.jpg")).failure, PictureFailure::Missing);
        QCOMPARE(Read(QString()).failure, PictureFailure::Missing);
    }

    void PathsThatNameTheSamePicture_data() {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<bool>("same");
        QTest::newRow("as it is") << "/a/b.png"
                                  << "/a/b.png" << true;
        QTest::newRow("doubled slash") << "/a//b.png"
                                       << "/a/b.png" << true;
        QTest::newRow("by way of a neighbour") << "/a/c/../b.png"
                                               << "/a/./b.png" << true;
        QTest::newRow("another file") << "/a/b.png"
                                      << "/a/c.png" << false;
        QTest::newRow("other capitals") << "/a/b.png"
                                        << "/a/B.png" << false;
        QTest::newRow("part of the program") << "://skins/add.png"
                                             << ":/skins/add.png" << true;
    }
    void PathsThatNameTheSamePicture() {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(bool, same);
        QCOMPARE(IsSamePicture(a, b), same);
        QCOMPARE(IsSamePicture(b, a), same);
    }
};

KIVO_GUILESS_TEST(TestPictureReader)
#include "tst_picture_reader.moc"
