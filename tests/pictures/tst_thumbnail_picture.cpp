#include <QImageReader>
#include <QTest>

#include "../config/log_catcher.h"
#include "compose/theme_catalogue.h"
#include "picture_files.h"
#include "pictures/picture_work.h"
#include "pictures/thumbnail_picture.h"
#include "resources/resources.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr QSize kPixels = kThumbnailSize;

QImage Thumbnail(const QString& path, QSize pixels = kPixels) {
    const std::atomic<bool> stop{false};
    return MakeThumbnail(path, pixels, PictureWork(stop)).image;
}

}  // namespace

class TestThumbnailPicture : public QObject {
    Q_OBJECT

private:
    PictureFolder m_folder;

private slots:
    void initTestCase() { InitResources(); }

    void EveryFormatOfTheFileDialogOpens_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        const QImage image = Striped(QSize(320, 200));
        if (QImageReader::supportedImageFormats().contains("webp")) {
            QTest::newRow("webp") << QStringLiteral("a.webp") << Encoded(image, "WEBP");
        }
        QTest::newRow("jfif") << QStringLiteral("a.jfif") << Encoded(image, "JPEG");
        QTest::newRow("bmp") << QStringLiteral("a.bmp") << Encoded(image, "BMP");
        QTest::newRow("jpg") << QStringLiteral("a.jpg") << Encoded(image, "JPEG");
        QTest::newRow("jpeg") << QStringLiteral("a.jpeg") << Encoded(image, "JPEG");
        QTest::newRow("png") << QStringLiteral("a.png") << Encoded(image, "PNG");
        QTest::newRow("capitals") << QStringLiteral("A.JPG") << Encoded(image, "JPEG");
        QTest::newRow("PNG named as JPEG") << QStringLiteral("b.jpg") << Encoded(image, "PNG");
        QTest::newRow("no suffix") << QStringLiteral("c") << Encoded(image, "PNG");
        QTest::newRow("Chinese name") << QStringLiteral("图片 1.png") << Encoded(image, "PNG");
    }
    void EveryFormatOfTheFileDialogOpens() {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        const QImage thumbnail = Thumbnail(m_folder.Write(name, content));
        QCOMPARE(thumbnail.size(), kPixels);
        QVERIFY(IsNearly(thumbnail.pixelColor(12, 27), Qt::red));
        QVERIFY(IsNearly(thumbnail.pixelColor(38, 27), Qt::green));
        QVERIFY(IsNearly(thumbnail.pixelColor(64, 27), Qt::blue));
    }

    void GifOpens() {
        const QByteArray gif = QByteArray::fromBase64(
            "R0lGODlhAQABAIAAAP8AAAAAACH5BAAAAAAALAAAAAABAAEAAAICRAEAOw==");  // one red pixel
        const QImage thumbnail = Thumbnail(m_folder.Write(QStringLiteral("a.gif"), gif));
        QCOMPARE(thumbnail.size(), kPixels);
        QVERIFY(IsNearly(thumbnail.pixelColor(38, 27), Qt::red));
    }

    void TheAspectRatioIsIgnored_data() {
        QTest::addColumn<QSize>("picture");
        for (const QSize size : {QSize(1000, 10), QSize(10, 1000), QSize(1, 1), QSize(3, 2), QSize(77, 54),
                                 QSize(1280, 680), QSize(4001, 2999)}) {
            QTest::addRow("%d x %d", size.width(), size.height()) << size;
        }
    }
    void TheAspectRatioIsIgnored() {
        QFETCH(QSize, picture);
        for (const char* format : {"PNG", "JPEG"}) {
            const QString path = m_folder.Write(QStringLiteral("aspect"),
                                                Encoded(Filled(picture, QColor(200, 100, 50)), format));
            const QImage thumbnail = Thumbnail(path);
            QCOMPARE(thumbnail.size(), kPixels);
            // All of it is the picture, up to each side.
            for (const QPoint at : {QPoint(0, 27), QPoint(76, 27), QPoint(38, 0), QPoint(38, 53)}) {
                QVERIFY(IsNearly(thumbnail.pixelColor(at), QColor(200, 100, 50)));
            }
        }
    }

    void SharpOnScaledScreens_data() {
        QTest::addColumn<QSize>("pixels");
        QTest::newRow("100 %") << QSize(77, 54);
        QTest::newRow("125 %") << QSize(96, 68);
        QTest::newRow("150 %") << QSize(116, 81);
        QTest::newRow("200 %") << QSize(154, 108);
        QTest::newRow("300 %") << QSize(231, 162);
    }
    // Lines one device pixel wide are still lines: nothing was made larger afterwards.
    void SharpOnScaledScreens() {
        QFETCH(QSize, pixels);
        QImage lines(pixels, QImage::Format_RGB32);
        for (int y = 0; y < lines.height(); ++y) {
            for (int x = 0; x < lines.width(); ++x) {
                lines.setPixelColor(x, y, x % 2 == 0 ? Qt::white : Qt::black);
            }
        }
        const QImage thumbnail =
            Thumbnail(m_folder.Write(QStringLiteral("lines.png"), Encoded(lines, "PNG")), pixels);
        QCOMPARE(thumbnail.size(), pixels);
        QCOMPARE(thumbnail.pixelColor(40, 30), QColor(Qt::white));
        QCOMPARE(thumbnail.pixelColor(41, 30), QColor(Qt::black));
    }

    void ACamerasMarkTurnsThePictureUpright_data() {
        QTest::addColumn<int>("mark");
        QTest::addColumn<QPoint>("red");
        QTest::addColumn<QPoint>("blue");
        QTest::newRow("upright") << 1 << QPoint(8, 27) << QPoint(68, 27);
        QTest::newRow("upside down") << 3 << QPoint(68, 27) << QPoint(8, 27);
        QTest::newRow("on its left side") << 6 << QPoint(38, 6) << QPoint(38, 48);
        QTest::newRow("on its right side") << 8 << QPoint(38, 48) << QPoint(38, 6);
    }
    void ACamerasMarkTurnsThePictureUpright() {
        QFETCH(int, mark);
        QFETCH(QPoint, red);
        QFETCH(QPoint, blue);
        const QImage thumbnail = Thumbnail(m_folder.Write(
            QStringLiteral("marked.jpg"), MarkedJpeg(Striped(QSize(1200, 600)), quint8(mark))));
        QCOMPARE(thumbnail.size(), kPixels);
        QVERIFY(IsNearly(thumbnail.pixelColor(red), Qt::red));
        QVERIFY(IsNearly(thumbnail.pixelColor(blue), Qt::blue));
    }

    void TransparentPartsStayTransparent() {
        QImage image(200, 100, QImage::Format_ARGB32);
        image.fill(QColor(255, 0, 0, 128));
        const QImage thumbnail =
            Thumbnail(m_folder.Write(QStringLiteral("glass.png"), Encoded(image, "PNG")));
        QVERIFY(qAbs(thumbnail.pixelColor(38, 27).alpha() - 128) <= 2);
    }

    void WhatCannotBeShownIsNull_data() {
        QTest::addColumn<QString>("path");
        const QByteArray jpeg = Encoded(Striped(QSize(400, 300)), "JPEG");
        QTest::newRow("missing") << m_folder.Path(QStringLiteral("missing.png"));
        QTest::newRow("no path") << QString();
        QTest::newRow("missing resource") << QStringLiteral("://background/99.jpg");
        QTest::newRow("folder") << m_folder.Path();
        QTest::newRow("device without an end") << QStringLiteral("/dev/zero");
        QTest::newRow("empty") << m_folder.Write(QStringLiteral("empty.png"), QByteArray());
        QTest::newRow("text") << m_folder.Write(QStringLiteral("text.png"), "This is no picture.\n");
        QTest::newRow("ends in its header") << m_folder.Write(QStringLiteral("header.jpg"), jpeg.left(100));
        QTest::newRow("bitmap of 30,000 x 30,000")
            << m_folder.Write(QStringLiteral("huge.bmp"), BitmapThatClaims(30000, 30000));
        QTest::newRow("bitmap of a size beyond all")
            << m_folder.Write(QStringLiteral("most.bmp"), BitmapThatClaims(0x7FFFFFFF, 0x7FFFFFFF));
        QTest::newRow("JPEG of 65,000 x 65,000")
            << m_folder.Write(QStringLiteral("huge.jpg"), JpegThatClaims(65000, 65000));
        QTest::newRow("progressive JPEG of 16,000 x 16,000")
            << m_folder.Write(QStringLiteral("progressive.jpg"), JpegThatClaims(16000, 16000, true));
    }
    void WhatCannotBeShownIsNull() {
        QFETCH(QString, path);
        QVERIFY(Thumbnail(path).isNull());
    }

    void NothingIsBegunAfterTheEnd() {
        const QString path =
            m_folder.Write(QStringLiteral("stop.png"), Encoded(Striped(QSize(400, 300)), "PNG"));
        const std::atomic<bool> stop{true};
        int accesses = 0;
        const PictureWork work(stop, [&accesses](bool) { ++accesses; });
        QVERIFY(MakeThumbnail(path, kPixels, work).image.isNull());
        QCOMPARE(accesses, 0);
    }

    // A decoder whose file ends too early calls it damaged, and it is not.
    void AnEndInTheMiddleLeavesTheFileWhole_data() {
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("JPEG") << QByteArray("JPEG");
        QTest::newRow("PNG") << QByteArray("PNG");
        QTest::newRow("BMP") << QByteArray("BMP");
    }
    void AnEndInTheMiddleLeavesTheFileWhole() {
        QFETCH(QByteArray, format);
        QImage noise(700, 500, QImage::Format_RGB32);
        for (int y = 0; y < noise.height(); ++y) {
            for (int x = 0; x < noise.width(); ++x) {
                noise.setPixel(x, y, qRgb(x * y, x + 3 * y, x ^ y));
            }
        }
        const QString path = m_folder.Write(QStringLiteral("large"), Encoded(noise, format.constData()));
        std::atomic<bool> stop{false};
        int accesses = 0;
        // After the file's look-up and its first piece.
        const PictureWork work(stop, [&](bool inFile) { stop = inFile ? ++accesses > 2 : stop.load(); });
        const LogCatcher log;
        QVERIFY(MakeThumbnail(path, kPixels, work).image.isNull());
        QVERIFY(accesses > 3);
        QCOMPARE(log.lines(), QStringList());
    }

    void WhatIsInAFileIsTold() {
        const QString path =
            m_folder.Write(QStringLiteral("told.png"), Encoded(Striped(QSize(400, 300)), "PNG"));
        const std::atomic<bool> stop{false};
        int depth = 0;
        int deepest = 0;
        int accesses = 0;
        const PictureWork work(stop, [&](bool inFile) {
            depth += inFile ? 1 : -1;
            deepest = qMax(deepest, depth);
            accesses += inFile ? 1 : 0;
        });
        QVERIFY(!MakeThumbnail(path, kPixels, work).image.isNull());
        QVERIFY(accesses >= 2);
        QCOMPARE(depth, 0);
        QCOMPARE(deepest, 1);
    }

    void BuiltInBackgroundsHaveThumbnails() {
        for (const QString& path : BuiltInBackgrounds()) {
            QCOMPARE(Thumbnail(path).size(), kPixels);
        }
    }
};

KIVO_GUILESS_TEST(TestThumbnailPicture)
#include "tst_thumbnail_picture.moc"
