#include <QPainter>
#include <QTest>
#include <cmath>

#include "compose/frost.h"
#include "runs.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr QSize kPanel(320, 170);
constexpr QRect kGlass(90, 50, 120, 70);

QImage Filled(QRgb color, QSize size = kPanel) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QImage Made(QSize size, const std::function<QRgb(int, int)>& colorAt) {
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            image.setPixel(x, y, colorAt(x, y));
        }
    }
    return image;
}

// Every pixel another one.
QImage Noisy(QSize size = kPanel) {
    return Made(size, [](int x, int y) {
        return qRgb((x * 71 + y * 29) % 256, (x * 13 + y * 97) % 256, (x * 151 + y * 7) % 256);
    });
}

QImage Mask(const QRect& glass, QSize size = kPanel) {
    QImage mask(size, QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::transparent);
    QPainter(&mask).fillRect(glass, Qt::black);
    return mask;
}

QImage Frosted(QImage picture, const QImage& mask, QSize canvas = kPanel) {
    const QImage blurred = BlurredPicture(picture, canvas);
    Frost(picture, mask, blurred);
    return picture;
}

bool IsNear(QRgb a, QRgb b, int most) {
    return qAbs(qRed(a) - qRed(b)) <= most && qAbs(qGreen(a) - qGreen(b)) <= most &&
           qAbs(qBlue(a) - qBlue(b)) <= most;
}

}  // namespace

class TestFrost : public QObject {
    Q_OBJECT

private slots:
    void OutsideGlassNoPixelChanges() {
        const QImage picture = Noisy();
        const QImage frosted = Frosted(picture, Mask(kGlass));
        int changed = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const bool isOther = frosted.pixel(x, y) != picture.pixel(x, y);
                QVERIFY2(!isOther || kGlass.contains(x, y),
                         qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
                changed += isOther ? 1 : 0;
            }
        }
        QVERIFY(changed > kGlass.width() * kGlass.height() * 9 / 10);
    }

    void NoGlassNoChange() {
        const QImage picture = Noisy();
        QCOMPARE(Frosted(picture, Mask(QRect())), picture);
    }

    // The edge of black and white becomes a Gaussian's integral: its slope has the deviation of 5 pixels.
    void TheBlurIsFivePixelsWide_data() {
        QTest::addColumn<bool>("upright");
        QTest::newRow("along rows") << true;
        QTest::newRow("along columns") << false;
    }
    void TheBlurIsFivePixelsWide() {
        QFETCH(bool, upright);
        const QImage edge = Made(kPanel, [upright](int x, int y) {
            return (upright ? x >= 160 : y >= 85) ? qRgb(255, 255, 255) : qRgb(0, 0, 0);
        });
        const QImage frosted = Frosted(edge, Mask(QRect(QPoint(0, 0), kPanel)));
        const auto light = [&](int k) {
            return qRed(upright ? frosted.pixel(160 + k, 85) : frosted.pixel(160, 85 + k));
        };
        double sum = 0;
        double square = 0;
        for (int k = -40; k < 40; ++k) {
            const double slope = light(k + 1) - light(k);
            QVERIFY(slope >= 0);
            sum += slope;
            square += slope * (k + 1) * (k + 1);
        }
        QCOMPARE(sum, 255.0);
        const double deviation = std::sqrt(square / sum);
        QVERIFY2(qAbs(deviation - 5) < 0.3, QByteArray::number(deviation));
    }

    // What it is blurred with reaches beyond the glass and over the panel's edge: a plain picture stays
    // plain, and a slope goes on to the glass's edge without a seam.
    void ThereIsNoSeam() {
        const QRgb plain = qRgb(201, 97, 43);
        const QImage whole = Mask(QRect(QPoint(0, 0), kPanel));
        QCOMPARE(Frosted(Filled(plain), whole), Filled(plain));
        const auto slope = [](int x, int y) { return qRgb(x / 2 + 20, y + 10, 200 - x / 2); };
        const QImage picture = Made(kPanel, slope);
        const QImage frosted = Frosted(picture, Mask(kGlass));
        for (int y = kGlass.top(); y <= kGlass.bottom(); ++y) {
            for (int x = kGlass.left(); x <= kGlass.right(); ++x) {
                QVERIFY(IsNear(frosted.pixel(x, y), picture.pixel(x, y), 1));
            }
        }
    }

    void HalfCoveredPixelsAreHalfBlurred() {
        QImage mask(kPanel, QImage::Format_ARGB32_Premultiplied);
        mask.fill(qRgba(0, 0, 0, 128));
        const QImage picture = Noisy();
        const QImage half = Frosted(picture, mask);
        const QImage whole = Frosted(picture, Mask(QRect(QPoint(0, 0), kPanel)));
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb a = picture.pixel(x, 90);
            const QRgb b = whole.pixel(x, 90);
            const QRgb between =
                qRgb((qRed(a) + qRed(b)) / 2, (qGreen(a) + qGreen(b)) / 2, (qBlue(a) + qBlue(b)) / 2);
            QVERIFY(IsNear(half.pixel(x, 90), between, 3));
        }
    }

    // A picture of another size lies blurred as on the panel.
    void TheFrostIsThePanelsInAnySize() {
        const QImage large =
            Noisy(QSize(16, 9)).scaled(870, 462, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const QImage small = large.scaled(kPanel, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const QImage onPanel = Frosted(small, Mask(QRect(QPoint(0, 0), kPanel)));
        const QImage inWindow = Frosted(large, Mask(large.rect(), large.size()));
        const QImage reduced = inWindow.scaled(kPanel, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        for (int y = 2; y < kPanel.height() - 2; ++y) {
            for (int x = 2; x < kPanel.width() - 2; ++x) {
                QVERIFY(IsNear(reduced.pixel(x, y), onPanel.pixel(x, y), 4));
            }
        }
    }

    void BareColorsAreRoundedDown() {
        const QImage picture = Noisy();
        QCOMPARE(PanelPixels(picture, QImage()), picture.convertToFormat(QImage::Format_RGB16));
        QCOMPARE(PanelPixels(picture, Mask(QRect())), picture.convertToFormat(QImage::Format_RGB16));
        const QImage part = PanelPixels(picture, Mask(kGlass));
        const QImage bare = picture.convertToFormat(QImage::Format_RGB16);
        QVERIFY(part != bare);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                QVERIFY(kGlass.contains(x, y) || part.pixel(x, y) == bare.pixel(x, y));
            }
        }
    }

    // By two levels at most from the colour, on the whole by less than one, and never brighter than its
    // nearest.
    void GlassKeepsTheColor() {
        for (int grey = 0; grey <= 255; grey += 3) {
            const QImage panel = PanelPixels(Filled(qRgb(grey, grey, grey)), Mask(kGlass));
            double sum = 0;
            for (int y = kGlass.top(); y <= kGlass.bottom(); ++y) {
                for (int x = kGlass.left(); x <= kGlass.right(); ++x) {
                    const QRgb pixel = panel.pixel(x, y);
                    QVERIFY(IsNear(pixel, qRgb(grey, grey, grey), 13));
                    QVERIFY(qGreen(pixel) <= grey + 3);
                    sum += qGreen(pixel);
                }
            }
            const double mean = sum / (kGlass.width() * kGlass.height());
            QVERIFY2(grey - mean > -1 && grey - mean < 4, QByteArray::number(mean));
        }
        QCOMPARE(PanelPixels(Filled(qRgb(0, 0, 0)), Mask(kGlass)).pixel(100, 60), qRgb(0, 0, 0));
    }

    // Eight bytes of a slope are one level, 80 pixels wide: without anything done about it they would be
    // bands.
    void SlopesHaveNoBands() {
        const QImage slope = Made(kPanel, [](int x, int y) {
            const int light = 20 + (x + y) / 10;
            return qRgb(light, light + 7, light + 30);
        });
        const QRect glass(0, 0, 320, 170);
        const QImage panel = PanelPixels(slope, Mask(glass));
        const int median = test::MedianRun(panel, 0, panel.height());
        QVERIFY2(median <= 12, QByteArray::number(median));
    }
};

KIVO_APPLESS_TEST(TestFrost)
#include "tst_frost.moc"
