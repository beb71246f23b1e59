#include <QBuffer>
#include <QImageWriter>
#include <QTest>
#include <QtEndian>

#include "pictures/picture_decoder.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr char kBaseline = '\xC0';
constexpr char kProgressive = '\xC2';

QByteArray Jpeg(QSize size, bool progressive) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "JPEG");
    writer.setProgressiveScanWrite(progressive);
    if (!buffer.open(QIODevice::WriteOnly) || !writer.write(image)) {
        qFatal("A JPEG cannot be written.");
    }
    return bytes;
}

int FrameAt(const QByteArray& jpeg) {
    const int baseline = jpeg.indexOf(QByteArray("\xFF") + kBaseline);
    return baseline >= 0 ? baseline : jpeg.indexOf(QByteArray("\xFF") + kProgressive);
}

QByteArray Claiming(QByteArray jpeg, QSize size) {
    qToBigEndian(quint16(size.height()), jpeg.data() + FrameAt(jpeg) + 5);
    qToBigEndian(quint16(size.width()), jpeg.data() + FrameAt(jpeg) + 7);
    return jpeg;
}

QByteArray WithFrame(QByteArray jpeg, char marker) {
    jpeg[FrameAt(jpeg) + 1] = marker;
    return jpeg;
}

// As cameras write it: far larger than what a reader looks at first.
QByteArray WithLongSegment(const QByteArray& jpeg) {
    constexpr int kAfterStart = 2;
    QByteArray segment("\xFF\xE1\xFF\xFF");
    segment.append(QByteArray(0xFFFF - 2, '\xC2'));
    return QByteArray(jpeg).insert(kAfterStart, segment + segment);
}

}  // namespace

class TestPictureDecoder : public QObject {
    Q_OBJECT

private slots:
    // Decided by the header: nothing of that size is ever asked of the memory.
    void SizesThatAreDecoded_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("whole");
        QTest::addColumn<bool>("lineByLine");
        QTest::newRow("panel") << QSize(320, 170) << true << true;
        QTest::newRow("one pixel") << QSize(1, 1) << true << true;
        QTest::newRow("camera, 50 million") << QSize(8660, 5773) << true << true;
        QTest::newRow("camera, 200 million") << QSize(16320, 12240) << false << true;
        QTest::newRow("900 million") << QSize(30000, 30000) << false << false;
        QTest::newRow("too long") << QSize(40000, 10) << false << false;
        QTest::newRow("overflowing") << QSize(0x7FFFFFFF, 0x7FFFFFFF) << false << false;
        QTest::newRow("empty") << QSize(0, 10) << false << false;
        QTest::newRow("negative") << QSize(-1, -1) << false << false;
    }
    void SizesThatAreDecoded() {
        QFETCH(QSize, size);
        QFETCH(bool, whole);
        QFETCH(bool, lineByLine);
        QCOMPARE(IsReasonablePictureSize(size, false), whole);
        QCOMPARE(IsReasonablePictureSize(size, true), lineByLine);
    }

    void JpegsThatComeLineByLine_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("lineByLine");
        const QByteArray plain = Jpeg(QSize(64, 48), false);
        const QByteArray progressive = Jpeg(QSize(64, 48), true);
        QTest::newRow("baseline") << plain << true;
        QTest::newRow("progressive") << progressive << false;
        QTest::newRow("baseline after long segments") << WithLongSegment(plain) << true;
        QTest::newRow("progressive after long segments") << WithLongSegment(progressive) << false;
        QTest::newRow("extended") << WithFrame(plain, '\xC1') << true;
        QTest::newRow("arithmetic") << WithFrame(plain, '\xC9') << true;
        QTest::newRow("differential progressive") << WithFrame(plain, '\xC6') << false;
        QTest::newRow("arithmetic progressive") << WithFrame(plain, '\xCA') << false;
        QTest::newRow("lossless") << WithFrame(plain, '\xC3') << false;
        QByteArray oneByOne = plain;
        const int scan = oneByOne.indexOf(QByteArray("\xFF\xDA", 2));
        oneByOne[scan + 4] = 1;
        QTest::newRow("one colour after the other") << oneByOne << false;
        QTest::newRow("fill bytes") << QByteArray(plain).insert(2, QByteArray(5, '\xFF')) << true;
        QTest::newRow("cut before its scan") << plain.left(scan) << false;
        QTest::newRow("cut in its frame") << plain.left(FrameAt(plain) + 6) << false;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("no JPEG") << QByteArray("This is no picture.") << false;
        QTest::newRow("start alone") << plain.left(2) << false;
        QTest::newRow("segment without contents") << QByteArray("\xFF\xD8\xFF\xE0\0\0", 6) << false;
        QTest::newRow("ends in fill bytes") << plain.left(2) + QByteArray(9, '\xFF') << false;
    }
    void JpegsThatComeLineByLine() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, lineByLine);
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        const qint64 somewhere = qMin(1, bytes.size());
        buffer.seek(somewhere);
        QCOMPARE(IsLineByLineJpeg(buffer), lineByLine);
        QCOMPARE(buffer.pos(), somewhere);
    }

    // 240 MB of pixels. The file has the last line only; the others stay as the memory was.
    void ALargePictureThatIsNoJpegIsDecoded() {
        const QSize size(10000, 6000);
        QImage image(size.width(), 1, QImage::Format_RGB32);
        image.fill(Qt::red);
        QByteArray bytes;
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "BMP"));
        buffer.close();
        constexpr int kHeightInBmp = 22;
        qToLittleEndian(qint32(size.height()), bytes.data() + kHeightInBmp);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        const DecodedPicture decoded = DecodePicture(buffer, [](QSize whole) { return whole; });
        QCOMPARE(decoded.refusal, QString());
        QCOMPARE(decoded.image.size(), size);
        QCOMPARE(decoded.image.pixelColor(5000, 5999), QColor(Qt::red));
    }

    // All of it would be in the memory, at whatever size it is wanted.
    void ALargeProgressiveJpegIsRefused() {
        QByteArray bytes = Claiming(Jpeg(QSize(64, 48), true), QSize(16000, 16000));
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        const DecodedPicture decoded = DecodePicture(buffer, [](QSize) { return QSize(77, 54); });
        QVERIFY(decoded.image.isNull());
        QVERIFY(decoded.refusal.contains(QStringLiteral("16000 x 16000")));
    }

    void JpegsAreDecodedToTheUsefulSize_data() {
        QTest::addColumn<bool>("progressive");
        QTest::newRow("baseline") << false;
        QTest::newRow("progressive") << true;
    }
    void JpegsAreDecodedToTheUsefulSize() {
        QFETCH(bool, progressive);
        QByteArray bytes = Jpeg(QSize(1600, 900), progressive);
        QBuffer buffer(&bytes);
        QVERIFY(buffer.open(QIODevice::ReadOnly));
        QSize asked;
        const DecodedPicture decoded = DecodePicture(buffer, [&asked](QSize size) {
            asked = size;
            return QSize(77, 54);
        });
        QCOMPARE(asked, QSize(1600, 900));
        QCOMPARE(decoded.image.size(), QSize(77, 54));
        QVERIFY(decoded.refusal.isEmpty());
    }
};

KIVO_GUILESS_TEST(TestPictureDecoder)
#include "tst_picture_decoder.moc"
