#include <QTest>
#include <QTransform>

#include "compose/rgb565.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

// Every pixel says where it stands.
QImage NumberedCanvas(QSize size) {
    QImage image(size, QImage::Format_RGB16);
    for (int y = 0; y < size.height(); ++y) {
        auto* row = reinterpret_cast<quint16*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            row[x] = quint16((y * 331 + x * 7 + 1) & 0xFFFF);
        }
    }
    return image;
}

// High byte first, row by row, written down the plainest way.
QByteArray PlainBytes(const QImage& image) {
    QByteArray bytes;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const quint16*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            bytes.append(char(row[x] >> 8));
            bytes.append(char(row[x] & 0xFF));
        }
    }
    return bytes;
}

QByteArray PlainPortraitBytes(const QImage& image, const QRect& rect) {
    const QImage turned = image.copy(rect).transformed(QTransform().rotate(270));
    return PlainBytes(turned.convertToFormat(QImage::Format_RGB16));
}

}  // namespace

class TestRgb565 : public QObject {
    Q_OBJECT

private slots:
    void DimmedPixelsKeepTheirColour_data() {
        QTest::addColumn<QByteArray>("pixels");
        QTest::addColumn<QByteArray>("dimmed");
        const auto bytes = [](const char* hex) { return QByteArray::fromHex(hex); };
        // Red 31, green 63, blue 31 become 12, 24, 12.
        QTest::newRow("white") << bytes("FFFF") << bytes("630C");
        QTest::newRow("black") << bytes("0000") << bytes("0000");
        QTest::newRow("red") << bytes("F800") << bytes("6000");
        QTest::newRow("green") << bytes("07E0") << bytes("0300");
        QTest::newRow("blue") << bytes("001F") << bytes("000C");
        QTest::newRow("several") << bytes("FFFF0000001F") << bytes("630C0000000C");
        QTest::newRow("none") << QByteArray() << QByteArray();
    }
    void DimmedPixelsKeepTheirColour() {
        QFETCH(QByteArray, pixels);
        DimWirePixels(pixels);
        QTEST(pixels, "dimmed");
    }

    void HighByteComesFirst_data() {
        QTest::addColumn<QRgb>("color");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("red") << qRgb(255, 0, 0) << QByteArray("\xF8\x00", 2);
        QTest::newRow("green") << qRgb(0, 255, 0) << QByteArray("\x07\xE0", 2);
        QTest::newRow("blue") << qRgb(0, 0, 255) << QByteArray("\x00\x1F", 2);
        QTest::newRow("white") << qRgb(255, 255, 255) << QByteArray("\xFF\xFF", 2);
        QTest::newRow("black") << qRgb(0, 0, 0) << QByteArray("\x00\x00", 2);
        QTest::newRow("low bits fall away") << qRgb(0x17, 0x2B, 0x37) << QByteArray("\x11\x46", 2);
    }
    void HighByteComesFirst() {
        QFETCH(QRgb, color);
        QFETCH(QByteArray, bytes);
        QImage image(3, 2, QImage::Format_RGB16);
        image.fill(QColor(color));
        QCOMPARE(WirePixels(image, QRect(1, 1, 1, 1), Orientation::Landscape), bytes);
        QCOMPARE(WirePixels(image, QRect(1, 1, 1, 1), Orientation::Portrait), bytes);
        QCOMPARE(WirePixels(image, image.rect(), Orientation::Landscape), bytes.repeated(6));
    }

    void PortraitIsTurnedBy270Degrees() {
        // 2 x 3 canvas        on the wire
        //   1 2                 2 4 6
        //   3 4                 1 3 5
        //   5 6
        QImage image(2, 3, QImage::Format_RGB16);
        for (int k = 0; k < 6; ++k) {
            reinterpret_cast<quint16*>(image.scanLine(k / 2))[k % 2] = quint16(k + 1);
        }
        const QByteArray wire("\0\2\0\4\0\6\0\1\0\3\0\5", 12);
        QCOMPARE(WirePixels(image, image.rect(), Orientation::Portrait), wire);
    }

    void CutsAreTheirPartOfThePicture_data() {
        QTest::addColumn<QRect>("rect");
        QTest::newRow("slot 0 of portrait") << QRect(1, 18, 67, 24);
        QTest::newRow("its left half, odd width") << QRect(1, 18, 33, 24);
        QTest::newRow("one pixel") << QRect(5, 6, 1, 1);
        QTest::newRow("one row") << QRect(3, 100, 77, 1);
        QTest::newRow("one column") << QRect(100, 3, 1, 77);
        QTest::newRow("eight columns") << QRect(9, 11, 8, 13);
        QTest::newRow("nine columns, seven rows") << QRect(9, 11, 9, 7);
        QTest::newRow("upper left corner") << QRect(0, 0, 17, 19);
        QTest::newRow("lower right corner") << QRect(153, 151, 17, 19);
    }
    void CutsAreTheirPartOfThePicture() {
        QFETCH(QRect, rect);
        // 170 x 170 is part of both canvases; an odd width gives the rows padding of their own.
        for (const QSize size : {QSize(320, 170), QSize(170, 320), QSize(171, 170)}) {
            const QImage image = NumberedCanvas(size);
            const QByteArray landscape = WirePixels(image, rect, Orientation::Landscape);
            QCOMPARE(landscape.size(), CutBytes(rect));
            QCOMPARE(landscape, PlainBytes(image.copy(rect)));
            const QByteArray portrait = WirePixels(image, rect, Orientation::Portrait);
            QCOMPARE(portrait.size(), CutBytes(rect));
            QCOMPARE(portrait, PlainPortraitBytes(image, rect));
        }
    }

    void WholeFrameIsTheSameSizeInBothOrientations() {
        for (const Orientation orientation : {Orientation::Landscape, Orientation::Portrait}) {
            const QImage frame = NumberedCanvas(CanvasSize(orientation));
            const QByteArray bytes = WirePixels(frame, frame.rect(), orientation);
            QCOMPARE(bytes.size(), 108800);
            QCOMPARE(bytes, orientation == Orientation::Landscape ? PlainBytes(frame)
                                                                  : PlainPortraitBytes(frame, frame.rect()));
        }
    }

    // A cut must land on the very pixels that the whole frame put there.
    void CutAndWholeFrameAgreeAboutThePlace() {
        for (const Orientation orientation : {Orientation::Landscape, Orientation::Portrait}) {
            const QImage frame = NumberedCanvas(CanvasSize(orientation));
            const QByteArray whole = WirePixels(frame, frame.rect(), orientation);
            const QRect cut(1, 18, 67, 24);
            const QByteArray part = WirePixels(frame, cut, orientation);
            const QRect wire = WireRect(cut, orientation);
            for (int y = 0; y < wire.height(); ++y) {
                const int inWhole = ((wire.top() + y) * kPanelWidth + wire.left()) * 2;
                QCOMPARE(part.mid(y * wire.width() * 2, wire.width() * 2),
                         whole.mid(inWhole, wire.width() * 2));
            }
        }
    }

    void NothingIsWrittenBeyondTheCut() {
        const QImage image = NumberedCanvas(QSize(170, 320));
        const QRect rect(3, 5, 11, 13);
        for (const Orientation orientation : {Orientation::Landscape, Orientation::Portrait}) {
            QByteArray buffer(CutBytes(rect) + 16, '\x5A');
            WriteWirePixels(image, rect, orientation, reinterpret_cast<quint8*>(buffer.data()) + 8);
            QCOMPARE(buffer.left(8), QByteArray(8, '\x5A'));
            QCOMPARE(buffer.right(8), QByteArray(8, '\x5A'));
            QCOMPARE(buffer.mid(8, CutBytes(rect)), WirePixels(image, rect, orientation));
        }
    }
};

KIVO_APPLESS_TEST(TestRgb565)
#include "tst_rgb565.moc"
