#include <QTest>
#include <cmath>

#include "compose/background_picture.h"
#include "compose_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

QImage Filled(QSize size, const QColor& color) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// Red left third, green middle, blue right (or top, middle, bottom).
QImage Striped(QSize size, bool upright) {
    QImage image = Filled(size, Qt::green);
    QPainter painter(&image);
    const int side = (upright ? size.height() : size.width()) / 3;
    if (upright) {
        painter.fillRect(0, 0, size.width(), side, Qt::red);
        painter.fillRect(0, size.height() - side, size.width(), side, Qt::blue);
    } else {
        painter.fillRect(0, 0, side, size.height(), Qt::red);
        painter.fillRect(size.width() - side, 0, side, size.height(), Qt::blue);
    }
    return image;
}

bool IsColor(const QImage& image, QPoint at, const QColor& color) {
    const QColor pixel = image.pixelColor(at);
    constexpr int kNearly = 24;  // JPEG and smooth scaling change colours a little
    return qAbs(pixel.red() - color.red()) <= kNearly && qAbs(pixel.green() - color.green()) <= kNearly &&
           qAbs(pixel.blue() - color.blue()) <= kNearly;
}

LayoutRecord Trimmed(int x, int y, int inset) {
    LayoutRecord layout;
    layout.xPt = x;
    layout.yPt = y;
    layout.xZoom = inset;
    layout.yZoom = inset;
    return layout;
}

LayoutRecord Blurred(int percent) {
    LayoutRecord layout;
    layout.blur = percent;
    return layout;
}

LayoutRecord Dimmed(int percent) {
    LayoutRecord layout;
    layout.dim = percent;
    return layout;
}

// Black and white, with an upright edge in the middle.
QImage Halved(QSize size) {
    QImage image = Filled(size, Qt::black);
    QPainter(&image).fillRect(size.width() / 2, 0, size.width(), size.height(), Qt::white);
    return image;
}

// The deviation of the Gaussian that makes such an edge, in panel pixels.
double BlurOf(const QImage& edge) {
    double sum = 0;
    double square = 0;
    const double middle = edge.width() / 2.0;
    for (int x = 1; x < edge.width(); ++x) {
        const double slope = qRed(edge.pixel(x, 50)) - qRed(edge.pixel(x - 1, 50));
        sum += slope;
        square += slope * (x - middle) * (x - middle);
    }
    return std::sqrt(square / sum) * 320 / edge.width();
}

}  // namespace

class TestBackgroundPicture : public QObject {
    Q_OBJECT

private slots:
    // A custom layout has one trim frame for both orientations: what is a quarter of the picture's detail
    // lying is a quarter standing.
    void ATrimFrameIsTheSameShareTurned() {
        LayoutRecord layout;
        layout.xZoom = 160;
        layout.yZoom = 85;
        const QSize picture(2000, 2000);
        const QRectF lying = ShownPart(picture, Orientation::Landscape, layout);
        const QRectF standing = ShownPart(picture, Orientation::Portrait, layout);
        QCOMPARE(lying.width(), 1000.0);
        QCOMPARE(standing.height(), 1000.0);
        QCOMPARE(lying.width() / lying.height(), 320.0 / 170);
        QCOMPARE(standing.height() / standing.width(), 320.0 / 170);
        // As the portrait records store it.
        layout.xZoom = 85;
        layout.yZoom = 160;
        QCOMPARE(ShownPart(picture, Orientation::Portrait, layout).height(), 1000.0);
    }

    void AsMuchAsCoversThePanel_data() {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QRectF>("part");
        QTest::newRow("panel's own size") << QSize(320, 170) << kLying << QRectF(0, 0, 320, 170);
        QTest::newRow("built-in") << QSize(1280, 680) << kLying << QRectF(0, 0, 1280, 680);
        QTest::newRow("wide loses its sides") << QSize(1000, 170) << kLying << QRectF(340, 0, 320, 170);
        QTest::newRow("tall loses top and foot") << QSize(320, 1000) << kLying << QRectF(0, 415, 320, 170);
        QTest::newRow("small is enlarged") << QSize(32, 17) << kLying << QRectF(0, 0, 32, 17);
        QTest::newRow("built-in on end: the middle 28 %")
            << QSize(1280, 680) << kStanding << QRectF(459.375, 0, 361.25, 680);
        QTest::newRow("tall on end") << QSize(170, 1000) << kStanding << QRectF(0, 340, 170, 320);
    }
    void AsMuchAsCoversThePanel() {
        QFETCH(QSize, picture);
        QFETCH(Orientation, orientation);
        QFETCH(QRectF, part);
        const QRectF shown = ShownPart(picture, orientation, LayoutRecord());
        QVERIFY(qAbs(shown.left() - part.left()) < 0.01 && qAbs(shown.top() - part.top()) < 0.01);
        QVERIFY(qAbs(shown.width() - part.width()) < 0.01 && qAbs(shown.height() - part.height()) < 0.01);
    }

    void TheTrimFrameKeepsThePanelsShapeAndStaysInside() {
        for (const QSize picture :
             {QSize(1280, 680), QSize(1000, 200), QSize(200, 1000), QSize(33, 21), QSize(1, 1)}) {
            for (const Orientation orientation : kOrientations) {
                const QSizeF panel = CanvasSize(orientation);
                for (const int inset : {0, 1, 40, 160, 169, 319, 320, 65535, -5, -65535}) {
                    for (const int offset : {0, 7, 50, 400, 65535, -7, -400, -65535}) {
                        const QRectF part = ShownPart(picture, orientation, Trimmed(offset, -offset, inset));
                        QVERIFY(part.width() > 0 && part.height() > 0);
                        QVERIFY(qAbs(part.width() / part.height() - panel.width() / panel.height()) < 0.001);
                        constexpr double kRounding = 1e-6;
                        QVERIFY(part.left() >= -kRounding && part.right() <= picture.width() + kRounding);
                        QVERIFY(part.top() >= -kRounding && part.bottom() <= picture.height() + kRounding);
                    }
                }
            }
        }
    }

    void TheTrimFrameIsPlacedFromTheUntrimmedView() {
        // The picture is four times the panel, so a panel pixel is four of its own.
        const QRectF part = ShownPart(QSize(1280, 680), kLying, Trimmed(40, 20, 160));
        QCOMPARE(part, QRectF(160, 80, 640, 340));
        // A wide picture can be moved beyond the untrimmed view, which is its middle.
        const QRectF moved = ShownPart(QSize(1000, 170), kLying, Trimmed(-100, 0, 0));
        QCOMPARE(moved, QRectF(240, 0, 320, 170));
    }

    void NoPictureHasNoPart() {
        QVERIFY(ShownPart(QSize(), kLying, LayoutRecord()).isEmpty());
        QVERIFY(ShownPart(QSize(0, 100), kStanding, LayoutRecord()).isEmpty());
    }

    void PlacedInTheMiddle() {
        const QImage wide =
            PlacedPicture(Striped(QSize(3000, 170), false), QSize(320, 170), kLying, LayoutRecord());
        QCOMPARE(wide.size(), QSize(320, 170));
        QVERIFY(IsColor(wide, QPoint(0, 80), Qt::green) && IsColor(wide, QPoint(319, 80), Qt::green));
        const QImage whole =
            PlacedPicture(Striped(QSize(640, 340), false), QSize(433, 230), kLying, LayoutRecord());
        QCOMPARE(whole.size(), QSize(433, 230));
        QVERIFY(IsColor(whole, QPoint(5, 5), Qt::red) && IsColor(whole, QPoint(216, 115), Qt::green) &&
                IsColor(whole, QPoint(428, 225), Qt::blue));
        const QImage tall =
            PlacedPicture(Striped(QSize(170, 3000), true), QSize(170, 320), kStanding, LayoutRecord());
        QVERIFY(IsColor(tall, QPoint(80, 0), Qt::green) && IsColor(tall, QPoint(80, 319), Qt::green));
        // Turned by 90 degrees the same striped picture shows its middle only.
        const QImage onEnd =
            PlacedPicture(Striped(QSize(1280, 680), false), QSize(170, 320), kStanding, LayoutRecord());
        QVERIFY(IsColor(onEnd, QPoint(2, 160), Qt::green) && IsColor(onEnd, QPoint(167, 160), Qt::green));
    }

    void TheSmallestPicturesStillFillThePanel_data() {
        QTest::addColumn<QSize>("size");
        for (const QSize size :
             {QSize(1, 1), QSize(2, 1), QSize(1, 2), QSize(1, 5000), QSize(5000, 1), QSize(3, 7)}) {
            QTest::addRow("%d x %d", size.width(), size.height()) << size;
        }
    }
    void TheSmallestPicturesStillFillThePanel() {
        QFETCH(QSize, size);
        const QColor color(200, 100, 50);
        for (const Orientation orientation : kOrientations) {
            for (const LayoutRecord& layout : {LayoutRecord(), Trimmed(0, 0, 160), Trimmed(300, -300, 319)}) {
                const QImage placed =
                    PlacedPicture(Filled(size, color), CanvasSize(orientation), orientation, layout);
                QCOMPARE(placed.size(), CanvasSize(orientation));
                for (const QPoint at : {QPoint(0, 0), placed.rect().center(), placed.rect().bottomRight()}) {
                    QVERIFY(IsColor(placed, at, color));
                }
            }
        }
    }

    // Eight pixels across the panel: rounded to whole ones, a trim would show up to half of 40 panel pixels
    // beside what is framed.
    void ATrimOfATinyPictureIsExact() {
        QImage picture(8, 17, QImage::Format_RGB32);
        picture.fill(Qt::black);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 4; x < picture.width(); ++x) {
                picture.setPixel(x, y, qRgb(255, 255, 255));
            }
        }
        for (const int left : {40, 50, 60, 70, 80}) {
            const QImage placed = PlacedPicture(picture, QSize(320, 170), kLying, Trimmed(left, 0, 160));
            int edge = 0;
            while (edge < 320 && qGray(placed.pixel(edge, 85)) < 128) {
                ++edge;
            }
            // The picture's middle stands at 160 of the untrimmed view, which is seen at twice its size.
            QVERIFY2(qAbs(edge - (160 - left) * 2) <= 2, QByteArray::number(edge));
        }
    }

    void ABlurIsAsWideAsItIsStrong_data() {
        QTest::addColumn<int>("percent");
        QTest::addColumn<double>("deviation");
        QTest::newRow("the least step") << 10 << 2.45;
        QTest::newRow("less than that is as much") << 1 << 2.45;
        QTest::newRow("half way") << 55 << 2.45 * 3;
        QTest::newRow("all of it") << 100 << 2.45 * 5;
    }
    void ABlurIsAsWideAsItIsStrong() {
        QFETCH(int, percent);
        QFETCH(double, deviation);
        for (const QSize size : {QSize(320, 170), QSize(433, 230), QSize(866, 460)}) {
            const QImage placed = PlacedPicture(Halved(QSize(1280, 680)), size, kLying, Blurred(percent));
            QCOMPARE(placed.size(), size);
            QCOMPARE(placed.format(), QImage::Format_RGB32);
            // Reducing and enlarging add a little.
            QVERIFY2(qAbs(BlurOf(placed) - deviation) < 0.5, QByteArray::number(BlurOf(placed)));
        }
    }

    void APlainPictureStaysPlainWhenItIsBlurred() {
        const QColor color(201, 97, 43);
        for (const Orientation orientation : kOrientations) {
            for (const int percent : {10, 40, 100}) {
                const QSize size = AreaFrameSize(orientation);
                QCOMPARE(PlacedPicture(Filled(QSize(640, 700), color), size, orientation, Blurred(percent)),
                         Filled(size, color));
            }
        }
    }

    // What is trimmed away has no part in the blur: beyond an edge lies that edge.
    void ABlurSeesWhatIsShown() {
        LayoutRecord layout = Trimmed(160, 0, 160);
        layout.blur = 100;
        QCOMPARE(PlacedPicture(Halved(QSize(1280, 680)), QSize(320, 170), kLying, layout),
                 Filled(QSize(320, 170), Qt::white));
    }

    void DimTakesFromTheBrightness_data() {
        QTest::addColumn<int>("percent");
        QTest::addColumn<QColor>("left");
        QTest::newRow("not at all") << 0 << QColor(250, 100, 3);
        QTest::newRow("the least step") << 10 << QColor(230, 92, 3);
        QTest::newRow("half way") << 50 << QColor(150, 60, 2);
        QTest::newRow("all of it leaves a fifth") << 100 << QColor(50, 20, 1);
        QTest::newRow("more than all is all") << 250 << QColor(50, 20, 1);
        QTest::newRow("less than nothing is nothing") << -40 << QColor(250, 100, 3);
    }
    void DimTakesFromTheBrightness() {
        QFETCH(int, percent);
        QFETCH(QColor, left);
        QImage placed = Filled(QSize(320, 170), QColor(250, 100, 3));
        const QImage before = placed;
        Dim(placed, Dimmed(percent));
        QCOMPARE(placed, Filled(QSize(320, 170), left));
        QCOMPARE(before, Filled(QSize(320, 170), QColor(250, 100, 3)));  // a copy is not dimmed with it
    }

    void NoPictureIsBlack() {
        const QImage placed = PlacedPicture(QImage(), QSize(433, 230), kLying, LayoutRecord());
        QCOMPARE(placed, Filled(QSize(433, 230), Qt::black));
    }

    void TransparentPartsAreBlack() {
        QImage image(640, 340, QImage::Format_ARGB32);
        image.fill(QColor(255, 255, 255, 128));
        const QImage half = PlacedPicture(image, QSize(320, 170), kLying, LayoutRecord());
        QVERIFY(!half.hasAlphaChannel());
        QVERIFY(IsColor(half, QPoint(100, 100), QColor(128, 128, 128)));
        image.fill(Qt::transparent);
        QVERIFY(
            IsColor(PlacedPicture(image, QSize(320, 170), kLying, LayoutRecord()), QPoint(9, 9), Qt::black));
    }

    void OddPixelFormatsAreTaken() {
        for (const QImage::Format format :
             {QImage::Format_Mono, QImage::Format_Indexed8, QImage::Format_Grayscale8, QImage::Format_RGB16,
              QImage::Format_RGB888, QImage::Format_RGBA64, QImage::Format_ARGB32_Premultiplied}) {
            const QImage image = Filled(QSize(640, 340), Qt::white).convertToFormat(format);
            const QImage placed = PlacedPicture(image, QSize(320, 170), kLying, LayoutRecord());
            QCOMPARE(placed.format(), QImage::Format_RGB32);
            QVERIFY(IsColor(placed, QPoint(160, 85), Qt::white));
        }
    }
};

KIVO_GUILESS_TEST(TestBackgroundPicture)
#include "tst_background_picture.moc"
