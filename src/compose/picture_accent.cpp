#include "compose/picture_accent.h"

#include <QColor>
#include <QVector>
#include <algorithm>
#include <array>
#include <cmath>

#include "compose/contrast.h"
#include "compose/pixels.h"

namespace kivo {

namespace {

constexpr QSize kLookedAt(64, 36);  // details are no hue of the picture
constexpr int kHues = 36;
constexpr double kGrey = 0.07;  // less colour than that, of what is bright, is a cast and no hue

// What an accent is at least and at most before it is lifted, as the themes' own are.
constexpr double kLeastSaturation = 0.6;
constexpr double kLeastLightness = 0.6;
constexpr double kMostLightness = 0.75;
constexpr double kAimedContrast = kSeenContrast + 0.1;  // grain and the light under a ring take some of it
constexpr double kDarkestGround =
    0.075;  // to stand out from less would leave blue darker than its neighbours

struct ColorSum {
    double weight = 0;
    double red = 0;
    double green = 0;
    double blue = 0;

    void Add(const ColorSum& other) {
        weight += other.weight;
        red += other.red;
        green += other.green;
        blue += other.blue;
    }
};

int Brightest(QRgb pixel) {
    return qMax(qRed(pixel), qMax(qGreen(pixel), qBlue(pixel)));
}

int Chroma(QRgb pixel) {
    return Brightest(pixel) - qMin(qRed(pixel), qMin(qGreen(pixel), qBlue(pixel)));
}

// 0 to kHues - 1, from red by way of green and blue.
int HueOf(QRgb pixel) {
    const double chroma = Chroma(pixel);
    double sixth = 0;
    if (Brightest(pixel) == qRed(pixel)) {
        sixth = (qGreen(pixel) - qBlue(pixel)) / chroma;
    } else if (Brightest(pixel) == qGreen(pixel)) {
        sixth = 2 + (qBlue(pixel) - qRed(pixel)) / chroma;
    } else {
        sixth = 4 + (qRed(pixel) - qGreen(pixel)) / chroma;
    }
    return (int(sixth * kHues / 6 + kHues) + kHues) % kHues;
}

// A hue with its neighbours on both sides: no hue is split by where it is counted.
ColorSum Around(const std::array<ColorSum, kHues>& hues, int hue) {
    ColorSum sum;
    for (const int beside : {hue + kHues - 1, hue, hue + 1}) {
        sum.Add(hues[size_t(beside % kHues)]);
    }
    return sum;
}

QRgb Clear(const ColorSum& sum) {
    const QColor color =
        QColor(qRound(sum.red / sum.weight), qRound(sum.green / sum.weight), qRound(sum.blue / sum.weight))
            .toHsl();
    return QColor::fromHslF(qMax(0.0, color.hslHueF()), qMax(kLeastSaturation, color.hslSaturationF()),
                            qBound(kLeastLightness, color.lightnessF(), kMostLightness))
        .rgb();
}

// What the panel makes of a channel at least; its steps are rounded down.
int DarkestOnPanel(int byte, int levels) {
    return byte * levels / 255 * 255 / levels;
}

bool StandsOut(QRgb color, double luminance) {
    const QRgb onPanel = qRgb(DarkestOnPanel(qRed(color), 31), DarkestOnPanel(qGreen(color), 63),
                              DarkestOnPanel(qBlue(color), 31));
    const double light = Luminance(onPanel);
    return light > luminance && Contrast(light, luminance) >= kAimedContrast;
}

int WeakestChannel(QRgb color) {
    if (qRed(color) <= qGreen(color) && qRed(color) <= qBlue(color)) {
        return 16;
    }
    return qGreen(color) <= qBlue(color) ? 8 : 0;
}

}  // namespace

std::optional<QRgb> StrongestHue(const QImage& picture) {
    const QImage small = picture.scaled(kLookedAt, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_RGB32);
    std::array<ColorSum, kHues> hues{};
    double chroma = 0;
    double brightness = 0;
    for (const QRgb pixel : PixelsOf(small)) {
        const double own = Chroma(pixel);
        chroma += own;
        brightness += Brightest(pixel);
        if (own > 0) {
            // Much dull colour is seen less than a little that is bright.
            const double weight = own * std::sqrt(own);
            hues[size_t(HueOf(pixel))].Add(
                {weight, weight * qRed(pixel), weight * qGreen(pixel), weight * qBlue(pixel)});
        }
    }
    if (chroma <= 0 || chroma < kGrey * brightness) {
        return std::nullopt;
    }
    ColorSum strongest;
    for (int hue = 0; hue < kHues; ++hue) {
        const ColorSum sum = Around(hues, hue);
        if (sum.weight > strongest.weight) {
            strongest = sum;
        }
    }
    return Clear(strongest);
}

double LightThrough(const QImage& glass, const QImage& picture) {
    constexpr int kHalf = 128;
    constexpr int kOneIn = 20;
    QVector<double> lights;
    const QRgb* under = PixelsOf(picture).begin();
    for (const QRgb over : PixelsOf(glass)) {
        const QRgb below = *under++;
        const int alpha = qAlpha(over);
        if (alpha < kHalf) {
            continue;
        }
        const auto through = [alpha](int above, int behind) { return above + behind * (255 - alpha) / 255; };
        lights.append(
            BrightestOnPanel(qRgb(through(qRed(over), qRed(below)), through(qGreen(over), qGreen(below)),
                                  through(qBlue(over), qBlue(below)))));
    }
    if (lights.isEmpty()) {
        return 0;
    }
    const auto above = lights.end() - 1 - lights.size() / kOneIn;
    std::nth_element(lights.begin(), above, lights.end());
    return *above;
}

QRgb LiftedAccent(QRgb color, double luminance) {
    const QColor hsl = QColor(color).toHsl();
    for (int lift = 0; lift <= 100; ++lift) {
        const double lightness = qMin(1.0, qreal(hsl.lightnessF()) + lift / 100.0);
        const QRgb lifted = QColor::fromHslF(qMax(0.0, hsl.hslHueF()), hsl.hslSaturationF(), lightness).rgb();
        if (StandsOut(lifted, qMax(luminance, kDarkestGround))) {
            return lifted;
        }
    }
    return QColor(Qt::white).rgb();
}

// A pixel is a part of white and a part of the accent, and its opacity is both together. In the channel in
// which the accent has least it falls behind that opacity by what the accent lacks, which tells its part.
void Recolor(QImage& drawing, QRgb from, QRgb to) {
    const int shift = WeakestChannel(from);
    const int lack = 255 - int(from >> shift & 0xFF);
    if (lack == 0) {
        return;  // white has no part of its own
    }
    for (QRgb& pixel : PixelsOf(drawing)) {
        const int alpha = qAlpha(pixel);
        const int behind = alpha - int(pixel >> shift & 0xFF);
        const int part = qBound(0, (behind * 255 + lack / 2) / lack, alpha);
        const auto channel = [alpha, part](int of) { return alpha - (part * (255 - of) + 127) / 255; };
        pixel = qRgba(channel(qRed(to)), channel(qGreen(to)), channel(qBlue(to)), alpha);
    }
}

}  // namespace kivo
