#include <QColor>
#include <QImage>
#include <QTest>

#include "compose/contrast.h"
#include "compose/custom_layout.h"
#include "light.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr QRgb kInk = qRgb(0x07, 0x13, 0x26);
constexpr QRgb kWhite = qRgb(255, 255, 255);
constexpr QRgb kBlack = qRgb(0, 0, 0);

QVector<QRgb> Ground(QRgb color, int count = 100) {
    return QVector<QRgb>(count, color);
}

// So many pixels of a hundred are white, the others black.
QVector<QRgb> WhiteShare(int percent) {
    QVector<QRgb> ground(100, kBlack);
    for (int k = 0; k < percent; ++k) {
        ground[k] = kWhite;
    }
    return ground;
}

QRgb Under(QRgb color, QRgb tint, double strength) {
    const auto mixed = [strength](int below, int above) {
        return qRound(below * (1 - strength) + above * strength);
    };
    return qRgb(mixed(qRed(color), qRed(tint)), mixed(qGreen(color), qGreen(tint)),
                mixed(qBlue(color), qBlue(tint)));
}

constexpr double kStep = 1.0 / 256;  // eight halvings
// What a channel of five bits may add to a colour, as strength of the plate.
constexpr double kOneLevel = 0.025;

}  // namespace

class TestContrast : public QObject {
    Q_OBJECT

private slots:
    void LuminanceIsThatOfTheFormula() {
        for (int k = 0; k < 500; ++k) {
            const QRgb color = qRgb(k * 37 % 256, k * 101 % 256, k * 7 % 256);
            QVERIFY(qAbs(Luminance(color) - Light(color)) < 1e-9);
        }
        QVERIFY(qAbs(Contrast(Luminance(kWhite), Luminance(kBlack)) - 21) < 1e-9);
        QCOMPARE(Contrast(0.2, 0.7), Contrast(0.7, 0.2));
    }

    void FivePixelsInAHundredMayBeUnreadable() {
        QVERIFY(IsReadable(kWhite, WhiteShare(0)));
        QVERIFY(IsReadable(kWhite, WhiteShare(5)));
        QVERIFY(!IsReadable(kWhite, WhiteShare(6)));
        QVERIFY(!IsReadable(kBlack, WhiteShare(94)));
        QVERIFY(IsReadable(kBlack, WhiteShare(95)));
        QVERIFY(IsReadable(kWhite, {}));
    }

    // Every colour of the panel, as Qt widens it to bytes. The panel's own steps are a little brighter.
    void FourAndAHalfIsEnoughOnThePanel() {
        const auto wide = [](int level, int most) { return qRound(level * 255.0 / most); };
        const double orange = Light(FreeTextColor(2).rgb());
        QImage pixel(1, 1, QImage::Format_RGB16);
        for (int value = 0; value < 65536; ++value) {
            *reinterpret_cast<quint16*>(pixel.scanLine(0)) = quint16(value);
            const double shown =
                Light(qRgb(wide(value >> 11, 31), wide(value >> 5 & 63, 63), wide(value & 31, 31)));
            QCOMPARE(IsReadable(FreeTextColor(2).rgb(), {pixel.pixel(0, 0)}),
                     ContrastOf(orange, shown) >= 4.5);
        }
    }

    void WhatIsReadableAnywayNeedsTheLeastOnly() {
        QCOMPARE(LeastStrength(kWhite, kInk, Ground(kBlack), 0), 0.0);
        QCOMPARE(LeastStrength(kWhite, kInk, Ground(kBlack), 0.62), 0.62);
        QCOMPARE(LeastStrength(kWhite, kInk, Ground(kWhite), 0.62), 0.62);
        QCOMPARE(LeastStrength(kWhite, kInk, {}, 0.3), 0.3);
    }

    void WhatNoPlateHelpsGetsTheStrongest() {
        QCOMPARE(LeastStrength(qRgb(70, 70, 70), kInk, Ground(qRgb(90, 90, 90)), 0), 1.0);
    }

    void OverWhite_data() {
        QTest::addColumn<QRgb>("ink");
        QTest::addColumn<double>("strength");
        QTest::newRow("white") << kWhite << 0.58;
        QTest::newRow("green") << qRgb(58, 200, 163) << 0.79;
        QTest::newRow("orange") << qRgb(255, 100, 34) << 0.88;
        QTest::newRow("blue") << qRgb(66, 131, 228) << 0.96;
    }
    void OverWhite() {
        QFETCH(QRgb, ink);
        QFETCH(double, strength);
        const double least = LeastStrength(ink, kInk, Ground(kWhite), 0);
        QVERIFY2(qAbs(least - strength) < kOneLevel, QByteArray::number(least));
    }

    void JustEnough_data() {
        QTest::addColumn<QRgb>("ground");
        QTest::newRow("light grey") << qRgb(200, 200, 200);
        QTest::newRow("yellow") << qRgb(255, 220, 60);
        QTest::newRow("green") << qRgb(90, 230, 120);
        QTest::newRow("sky") << qRgb(120, 170, 250);
        QTest::newRow("sand") << qRgb(0xF4, 0xE8, 0xD0);
    }
    void JustEnough() {
        QFETCH(QRgb, ground);
        for (const QRgb ink : {kWhite, qRgb(58, 200, 163), qRgb(255, 100, 34), qRgb(66, 131, 228)}) {
            const double least = LeastStrength(ink, kInk, Ground(ground), 0);
            QVERIFY(least > 0 && least < 1);
            const auto contrast = [&](double strength) {
                return ContrastOf(Light(ink), Light(Under(ground, kInk, strength)));
            };
            // A level of the panel is taken off on the safe side.
            QVERIFY(contrast(least + kOneLevel) >= 4.5);
            QVERIFY(contrast(least - kOneLevel - kStep) < 4.5);
        }
    }

    void BrighterPicturesNeedMore() {
        double former = 0;
        for (int grey = 0; grey <= 255; grey += 5) {
            const double least = LeastStrength(kWhite, kInk, Ground(qRgb(grey, grey, grey)), 0);
            QVERIFY(least >= former - kStep);
            former = least;
        }
        QVERIFY(former > 0.5);
    }

    void TheBrightestTwentiethDoesNotCount() {
        QCOMPARE(LeastStrength(kWhite, kInk, WhiteShare(5), 0), 0.0);
        QVERIFY(LeastStrength(kWhite, kInk, WhiteShare(6), 0) > 0.5);
    }
};

KIVO_APPLESS_TEST(TestContrast)
#include "tst_contrast.moc"
