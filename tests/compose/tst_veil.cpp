#include <QTest>

#include <cmath>

#include "compose/veil.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr QSize kPanel(320, 170);
constexpr QRect kText(10, 16, 80, 30);  // 2,400 pixels, 5 % are 120

QImage Filled(const QColor& color) {
    QImage image(kPanel, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QImage Grey(int value) {
    return Filled(QColor(value, value, value));
}

// The first count pixels of the text rectangle in white, the picture else black.
QImage WithWhitePixels(int count) {
    QImage image = Filled(Qt::black);
    for (int k = 0; k < count; ++k) {
        image.setPixelColor(kText.left() + k % kText.width(), kText.top() + k / kText.width(), Qt::white);
    }
    return image;
}

// Relative luminance of a colour under ink #071326 of that strength, by the formula for contrast.
double LuminanceUnderInk(const QColor& color, double strength) {
    const auto linear = [](double value) {
        const double s = value / 255;
        return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    };
    const auto mixed = [strength](int value, int ink) { return value * (1 - strength) + ink * strength; };
    return 0.2126 * linear(mixed(color.red(), 0x07)) + 0.7152 * linear(mixed(color.green(), 0x13)) +
           0.0722 * linear(mixed(color.blue(), 0x26));
}

constexpr double kStep = kStrongestVeil / 256;  // eight halvings

}  // namespace

class TestVeil : public QObject {
    Q_OBJECT

private slots:
    void NoneOverADarkPicture() {
        QCOMPARE(VeilStrength(Filled(Qt::black), {kText}), 0.0);
        QCOMPARE(VeilStrength(Filled(QColor(0x07, 0x13, 0x26)), {kText}), 0.0);
        QCOMPARE(VeilStrength(Grey(110), {kText}), 0.0);  // luminance .156
    }

    void TheStrongestOverWhite() {
        QCOMPARE(kStrongestVeil, 0.59);
        QVERIFY(qAbs(VeilStrength(Filled(Qt::white), {kText}) - kStrongestVeil) <= kStep);
    }

    void JustEnoughForWhiteText_data() {
        QTest::addColumn<QColor>("color");
        QTest::newRow("light grey") << QColor(200, 200, 200);
        QTest::newRow("grey a little too bright") << QColor(122, 122, 122);
        QTest::newRow("yellow") << QColor(255, 220, 60);
        QTest::newRow("green") << QColor(90, 230, 120);
        QTest::newRow("sky") << QColor(120, 170, 250);
        QTest::newRow("sand") << QColor(0xF4, 0xE8, 0xD0);
    }
    void JustEnoughForWhiteText() {
        QFETCH(QColor, color);
        const double strength = VeilStrength(Filled(color), {kText});
        QVERIFY(strength > 0 && strength <= kStrongestVeil);
        // Bytes are rounded when they are mixed, hence the room on both sides.
        QVERIFY(LuminanceUnderInk(color, strength) <= 0.172 + 0.002);
        QVERIFY(LuminanceUnderInk(color, strength - 2 * kStep) > 0.172 - 0.002);
        const double contrast = 1.05 / (LuminanceUnderInk(color, strength) + 0.05);
        QVERIFY(contrast >= 4.5);
    }

    void BrighterPicturesNeedMore() {
        double former = 0;
        for (int value = 0; value <= 255; value += 5) {
            const double strength = VeilStrength(Grey(value), {kText});
            QVERIFY(strength >= former);
            QVERIFY(strength <= kStrongestVeil);
            former = strength;
        }
        QVERIFY(former > 0.5);
    }

    void OnePixelInTwentyMayStayBright() {
        QCOMPARE(VeilStrength(WithWhitePixels(1), {kText}), 0.0);
        QCOMPARE(VeilStrength(WithWhitePixels(120), {kText}), 0.0);
        QVERIFY(VeilStrength(WithWhitePixels(121), {kText}) > 0.5);
    }

    void TheWorstRectangleHolds() {
        QImage image = Filled(Qt::black);
        const QRect bright(200, 100, 60, 20);
        for (int y = bright.top(); y <= bright.bottom(); ++y) {
            for (int x = bright.left(); x <= bright.right(); ++x) {
                image.setPixelColor(x, y, QColor(210, 210, 210));
            }
        }
        const double alone = VeilStrength(image, {bright});
        QVERIFY(alone > 0);
        QCOMPARE(VeilStrength(image, {kText}), 0.0);
        QCOMPARE(VeilStrength(image, {kText, bright}), alone);
        QCOMPARE(VeilStrength(image, {bright, kText}), alone);
        // Each for itself: the dark rectangle does not thin out the bright one's share.
        QCOMPARE(VeilStrength(image, {kText, bright, QRect(0, 50, 300, 40)}), alone);
    }

    void BrightPlacesWithoutTextDoNotMatter() {
        QImage image = Filled(Qt::white);
        for (int y = kText.top(); y <= kText.bottom(); ++y) {
            for (int x = kText.left(); x <= kText.right(); ++x) {
                image.setPixelColor(x, y, Qt::black);
            }
        }
        QCOMPARE(VeilStrength(image, {kText}), 0.0);
        QVERIFY(VeilStrength(image, {kText.adjusted(-10, -10, 10, 10)}) > 0.5);
    }

    void RectanglesCountAsFarAsThePictureGoes() {
        const QImage white = Filled(Qt::white);
        QCOMPARE(VeilStrength(white, {}), 0.0);
        QCOMPARE(VeilStrength(white, {QRect()}), 0.0);
        QCOMPARE(VeilStrength(white, {QRect(320, 0, 50, 50), QRect(-50, -50, 50, 50)}), 0.0);
        QVERIFY(VeilStrength(white, {QRect(300, 160, 500, 500)}) > 0.5);
        QVERIFY(VeilStrength(white, {QRect(-100, -100, 101, 101)}) > 0.5);
    }

    void AnyPixelFormatIsTaken() {
        for (const QImage::Format format :
             {QImage::Format_RGB16, QImage::Format_RGB888, QImage::Format_ARGB32}) {
            QVERIFY(VeilStrength(Filled(Qt::white).convertToFormat(format), {kText}) > 0.5);
        }
        QCOMPARE(VeilStrength(QImage(), {kText}), 0.0);
    }
};

KIVO_APPLESS_TEST(TestVeil)
#include "tst_veil.moc"
