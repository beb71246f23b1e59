#include "compose/veil.h"

#include <QtMath>
#include <array>
#include <cmath>

namespace kivo {

namespace {

constexpr QRgb kInk = qRgb(0x07, 0x13, 0x26);
// Relative luminance that white stands 4.73 to 1 against: grain and RGB565 may take some of it down to 4.5.
constexpr double kDarkEnough = 0.172;
constexpr double kBrightShare = 0.05;  // of a rectangle's pixels may stay brighter
constexpr int kHalvings = 8;

using Linear = std::array<double, 256>;

Linear MakeLinear() {
    Linear table{};
    for (size_t value = 0; value < table.size(); ++value) {
        const double s = double(value) / 255;
        table[value] = s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    }
    return table;
}

// Each channel's byte mixed with the ink at one strength, as its share of the relative luminance.
struct MixedLuminance {
    Linear red;
    Linear green;
    Linear blue;

    explicit MixedLuminance(double strength) {
        static const Linear linear = MakeLinear();
        const auto mixed = [strength](size_t value, int ink) {
            return size_t(qRound(double(value) * (1 - strength) + ink * strength));
        };
        for (size_t value = 0; value < 256; ++value) {
            red[value] = 0.2126 * linear[mixed(value, qRed(kInk))];
            green[value] = 0.7152 * linear[mixed(value, qGreen(kInk))];
            blue[value] = 0.0722 * linear[mixed(value, qBlue(kInk))];
        }
    }
    double Of(QRgb pixel) const { return red[qRed(pixel)] + green[qGreen(pixel)] + blue[qBlue(pixel)]; }
};

bool IsDarkEnough(const QImage& picture, const QRect& rect, const MixedLuminance& luminance) {
    int bright = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = rect.left(); x <= rect.right(); ++x) {
            bright += luminance.Of(row[x]) > kDarkEnough ? 1 : 0;
        }
    }
    return bright <= kBrightShare * rect.width() * rect.height();
}

bool AreDarkEnough(const QImage& picture, const QVector<QRect>& rects, double strength) {
    const MixedLuminance luminance(strength);
    for (const QRect& rect : rects) {
        const QRect inside = rect & picture.rect();
        if (!inside.isEmpty() && !IsDarkEnough(picture, inside, luminance)) {
            return false;
        }
    }
    return true;
}

}  // namespace

double VeilStrength(const QImage& picture, const QVector<QRect>& textRects) {
    const QImage pixels = picture.convertToFormat(QImage::Format_RGB32);
    // The rectangle that needs most decides, so all of them can be asked at once.
    if (AreDarkEnough(pixels, textRects, 0)) {
        return 0;
    }
    double low = 0;
    double high = kStrongestVeil;
    for (int k = 0; k < kHalvings; ++k) {
        const double middle = (low + high) / 2;
        (AreDarkEnough(pixels, textRects, middle) ? high : low) = middle;
    }
    return high;
}

}  // namespace kivo
