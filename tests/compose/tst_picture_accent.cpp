#include <QTest>

#include "compose/contrast.h"
#include "compose/picture_accent.h"
#include "compose/skin_cache.h"
#include "compose_test_support.h"
#include "light.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

QImage Filled(QRgb color, QSize size = QSize(320, 170)) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

// A share of the picture in another colour, from the left.
QImage Parted(QRgb left, double share, QRgb right) {
    QImage image = Filled(right);
    QPainter(&image).fillRect(QRectF(0, 0, image.width() * share, image.height()), QColor(left));
    return image;
}

int HueOf(QRgb color) {
    return QColor(color).hslHue();
}

// The lesser way round the circle.
int HueDistance(int a, int b) {
    const int way = qAbs(a - b) % 360;
    return qMin(way, 360 - way);
}

// A pixel of that much white and that much accent, premultiplied as a painter leaves it.
QRgb Mixed(int white, int part, QRgb accent) {
    const auto channel = [&](int of) { return white + qRound(part * of / 255.0); };
    return qRgba(channel(qRed(accent)), channel(qGreen(accent)), channel(qBlue(accent)), white + part);
}

// As it is stored.
QRgb RawPixel(const QImage& image, int x, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y))[x];
}

int FarthestChannel(QRgb a, QRgb b) {
    return qMax(qMax(qAbs(qRed(a) - qRed(b)), qAbs(qGreen(a) - qGreen(b))),
                qMax(qAbs(qBlue(a) - qBlue(b)), qAbs(qAlpha(a) - qAlpha(b))));
}

}  // namespace

class TestPictureAccent : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void TheHueOfAPlainPictureIsItsOwn_data() {
        QTest::addColumn<QRgb>("color");
        QTest::newRow("red") << qRgb(200, 0, 0);
        QTest::newRow("a red beyond the end of the circle") << qRgb(200, 0, 20);
        QTest::newRow("orange") << qRgb(255, 140, 30);
        QTest::newRow("green") << qRgb(30, 180, 60);
        QTest::newRow("sea") << qRgb(20, 90, 120);
        QTest::newRow("night blue") << qRgb(5, 8, 40);
        QTest::newRow("violet") << qRgb(120, 60, 200);
        QTest::newRow("rose, pale") << qRgb(255, 225, 235);
    }
    void TheHueOfAPlainPictureIsItsOwn() {
        QFETCH(QRgb, color);
        const std::optional<QRgb> found = StrongestHue(Filled(color));
        QVERIFY(found);
        QVERIFY2(HueDistance(HueOf(*found), HueOf(color)) <= 3, QColor(*found).name().toLatin1());
        // As clear as the themes' own.
        const QColor hsl = QColor(*found).toHsl();
        const auto lightness = qreal(hsl.lightnessF());
        QVERIFY(qreal(hsl.hslSaturationF()) > 0.58 && lightness > 0.58 && lightness < 0.77);
    }

    void GreyPicturesHaveNone() {
        for (const QRgb grey : {qRgb(0, 0, 0), qRgb(255, 255, 255), qRgb(128, 128, 128), qRgb(130, 128, 126),
                                qRgb(250, 248, 240), qRgb(2, 2, 2)}) {
            QVERIFY2(!StrongestHue(Filled(grey)), QColor(grey).name().toLatin1());
        }
    }

    // A small bright sign over much that is dull; but a spot is no hue of the picture.
    void TheStrongestIsTheOneWithMostColor() {
        const QRgb dull = qRgb(70, 90, 110);
        const QRgb orange = qRgb(255, 120, 0);
        QVERIFY(HueDistance(HueOf(*StrongestHue(Parted(orange, 0.3, dull))), HueOf(orange)) <= 3);
        QVERIFY(HueDistance(HueOf(*StrongestHue(Parted(orange, 0.03, dull))), HueOf(dull)) <= 3);
        // Which side it lies on plays no part.
        QVERIFY(HueDistance(HueOf(*StrongestHue(Parted(dull, 0.7, orange))), HueOf(orange)) <= 3);
    }

    void AHueOnTheEdgeOfTwoCountsAsOne() {
        // Half of it is counted as one hue, half as the next one; together they are stronger than the green.
        const QImage picture = Parted(qRgb(255, 40, 0), 0.35, qRgb(255, 46, 0));
        QImage both = picture;
        QPainter(&both).fillRect(200, 0, 120, 170, QColor(0, 255, 0));
        QVERIFY(HueDistance(HueOf(*StrongestHue(both)), 10) <= 4);
    }

    // Together they would have more of the picture than the third, which has most.
    void HuesOnBothSidesOfAPrimaryAreTwo_data() {
        QTest::addColumn<int>("primary");
        QTest::newRow("red") << 0;
        QTest::newRow("green") << 120;
        QTest::newRow("blue") << 240;
    }
    void HuesOnBothSidesOfAPrimaryAreTwo() {
        QFETCH(int, primary);
        const auto pure = [](int hue) { return QColor::fromHsv((hue + 360) % 360, 255, 200).rgb(); };
        QImage picture = Parted(pure(primary - 15), 0.3, pure(primary + 15));
        QPainter(&picture).fillRect(QRectF(96, 0, 128, 170), QColor(pure(primary + 180)));
        QVERIFY(HueDistance(HueOf(*StrongestHue(picture)), primary + 180) <= 3);
    }

    void ADarkerPictureHasTheSameHue() {
        const QImage bright = Parted(qRgb(250, 180, 60), 0.4, qRgb(90, 120, 160));
        QImage dark = Parted(qRgb(50, 36, 12), 0.4, qRgb(18, 24, 32));
        QVERIFY(HueDistance(HueOf(*StrongestHue(dark)), HueOf(*StrongestHue(bright))) <= 3);
    }

    void LiftedUntilItIsSeen_data() {
        QTest::addColumn<QRgb>("color");
        for (const QRgb color : {qRgb(90, 90, 250), qRgb(230, 80, 80), qRgb(92, 230, 200), qRgb(255, 180, 90),
                                 qRgb(160, 80, 230)}) {
            QTest::newRow(QColor(color).name().toLatin1()) << color;
        }
    }
    void LiftedUntilItIsSeen() {
        QFETCH(QRgb, color);
        for (int grey = 0; grey <= 118; grey += 2) {
            const double ground = Light(qRgb(grey, grey, grey));
            const QRgb lifted = LiftedAccent(color, ground);
            QVERIFY2(ContrastOf(Light(lifted), ground) >= 3, QByteArray::number(grey));
            QVERIFY(Light(lifted) >= Light(color) - 0.01);
            // No lighter than it takes, and the same hue as far as so light a colour tells.
            QVERIFY(Light(lifted) > 0.3);  // clear on black too
            if (lifted != LiftedAccent(color, 0)) {
                QVERIFY2(ContrastOf(Light(lifted), ground) < 3.6, QByteArray::number(grey));
            }
            if (Light(lifted) < 0.7) {
                QVERIFY(HueDistance(HueOf(lifted), HueOf(color)) <= 4);
            }
        }
        QCOMPARE(LiftedAccent(color, 0.9), qRgb(255, 255, 255));
    }

    void OnlyOneInTwentyIsBrighterThroughGlass() {
        const QSize size(10, 10);
        QImage glass(size, QImage::Format_ARGB32_Premultiplied);
        glass.fill(qRgba(0, 0, 0, 127));  // less than half is an edge
        QImage picture = Filled(qRgb(40, 40, 40), size);
        QCOMPARE(LightThrough(glass, picture), 0.0);
        glass.fill(qRgba(20, 20, 20, 204));
        const double plain = LightThrough(glass, picture);
        // A fifth of the picture and the glass's own, and what the panel's steps add to that.
        QVERIFY(plain >= Light(qRgb(28, 28, 28)) && plain <= Light(qRgb(36, 34, 36)));
        for (int x = 0; x < 5; ++x) {
            picture.setPixel(x, 0, qRgb(255, 255, 255));
        }
        QCOMPARE(LightThrough(glass, picture), plain);
        picture.setPixel(5, 0, qRgb(255, 255, 255));
        QVERIFY(LightThrough(glass, picture) >= Light(qRgb(71, 71, 71)));
        // What lies beside the glass is none of it.
        for (int x = 0; x < 6; ++x) {
            glass.setPixel(x, 0, 0);
        }
        QCOMPARE(LightThrough(glass, picture), plain);
    }

    void EveryMixtureIsRecolored_data() {
        QTest::addColumn<QRgb>("from");
        for (const Theme theme : kAccentThemes) {
            QTest::newRow(NameOf(theme)) << FactsOf(theme).accent;
        }
    }
    void EveryMixtureIsRecolored() {
        QFETCH(QRgb, from);
        const QRgb to = qRgb(190, 40, 250);
        for (int white = 0; white <= 255; white += 15) {
            for (int part = 0; white + part <= 255; part += 15) {
                QImage drawing(1, 1, QImage::Format_ARGB32_Premultiplied);
                drawing.fill(0);
                reinterpret_cast<QRgb*>(drawing.scanLine(0))[0] = Mixed(white, part, from);
                Recolor(drawing, from, to);
                const QRgb got = RawPixel(drawing, 0, 0);
                QVERIFY2(FarthestChannel(got, Mixed(white, part, to)) <= 2,
                         QByteArray::number(white) + " and " + QByteArray::number(part));
            }
        }
    }

    // Or a recoloured skin would have a wrong colour somewhere: over its glass lie nothing but white and the
    // accent, whose mixtures come back as they were.
    void SkinsHoldNothingElse_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        for (const Theme theme : kAccentThemes) {
            for (const Orientation orientation : kOrientations) {
                QTest::newRow(NameOf(theme) + ", " + NameOf(orientation)) << theme << orientation;
            }
        }
    }
    void SkinsHoldNothingElse() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        const QRgb accent = FactsOf(theme).accent;
        const QVector<SkinLayer> layers = SkinLayers(theme, orientation);
        for (int k = 1; k < layers.size(); ++k) {
            for (const QString& ending : {QStringLiteral(".png"), QStringLiteral("@2x.png")}) {
                const QString path = QString(layers[k].path).replace(QStringLiteral(".png"), ending);
                const QImage before = QImage(path).convertToFormat(QImage::Format_ARGB32_Premultiplied);
                QVERIFY2(!before.isNull(), qPrintable(path));
                QImage drawing = before;
                Recolor(drawing, accent, accent);
                for (int y = 0; y < drawing.height(); ++y) {
                    for (int x = 0; x < drawing.width(); ++x) {
                        QVERIFY2(FarthestChannel(RawPixel(drawing, x, y), RawPixel(before, x, y)) <= 3,
                                 qPrintable(QStringLiteral("%1: %2,%3").arg(path).arg(x).arg(y)));
                    }
                }
            }
        }
    }

    // Whatever accent and theme the cache had before.
    void ASkinThatIsKeptIsTheSameInEveryAccent() {
        constexpr QRgb kRose = qRgb(240, 120, 160);
        constexpr QRgb kSea = qRgb(90, 190, 230);
        SkinCache kept;
        const QVector<std::optional<QRgb>> accents{std::nullopt, kRose, kSea, kRose, std::nullopt, kSea};
        for (const Theme theme : {Theme::Default, Theme::Scene, Theme::Time, Theme::Default}) {
            const ScreenState state = ThemeScreen(theme, Orientation::Landscape);
            const QSize size = AreaFrameSize(Orientation::Landscape);
            for (const std::optional<QRgb>& accent : accents) {
                SkinCache fresh;
                const Skin& expected = fresh.SkinOf(state, size, accent);
                const Skin& skin = kept.SkinOf(state, size, accent);
                QVERIFY(skin.drawing == expected.drawing);
                QVERIFY(skin.glass == expected.glass && skin.glassOnPanel == expected.glassOnPanel);
                QCOMPARE(kept.HeldBytes(), fresh.HeldBytes());
            }
        }
    }
};

KIVO_TEST(TestPictureAccent)
#include "tst_picture_accent.moc"
