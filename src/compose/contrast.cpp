#include "compose/contrast.h"

#include <QtGlobal>
#include <array>
#include <cmath>

namespace kivo {

namespace {

using ByteTable = std::array<double, 256>;

const ByteTable& LinearLight() {
    static const ByteTable table = [] {
        ByteTable linear{};
        for (size_t byte = 0; byte < linear.size(); ++byte) {
            const double share = double(byte) / 255;
            linear[byte] = share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
        }
        return linear;
    }();
    return table;
}

constexpr double kRed = 0.2126;
constexpr double kGreen = 0.7152;
constexpr double kBlue = 0.0722;

// The panel's level that is nearest to a byte, as a byte.
size_t NearestLevel(double byte, int levels) {
    return size_t(std::round(std::round(byte * levels / 255) * 255 / levels));
}

// The brightest level that glass makes of a byte: blending may be off by one.
size_t BrightestLevel(double byte, int levels) {
    return NearestLevel(qMin(255.0, byte + 1), levels);
}

double LuminanceOnPanel(QRgb color) {
    const ByteTable& linear = LinearLight();
    return kRed * linear[NearestLevel(qRed(color), 31)] + kGreen * linear[NearestLevel(qGreen(color), 63)] +
           kBlue * linear[NearestLevel(qBlue(color), 31)];
}

// Each byte of a channel under the plate, as its part of the luminance.
ByteTable UnderPlate(int tint, double strength, int levels, double weight) {
    ByteTable table{};
    for (size_t byte = 0; byte < table.size(); ++byte) {
        const double mixed = double(byte) * (1 - strength) + tint * strength;
        table[byte] = weight * LinearLight()[BrightestLevel(mixed, levels)];
    }
    return table;
}

template <typename LuminanceOf>
bool IsReadableOn(QRgb ink, const QVector<QRgb>& ground, const LuminanceOf& luminanceOf) {
    const double light = Luminance(ink);
    int unreadable = 0;
    for (const QRgb pixel : ground) {
        unreadable += Contrast(light, luminanceOf(pixel)) < kReadableContrast ? 1 : 0;
    }
    return unreadable <= kUnreadableShare * ground.size();
}

bool IsReadableOnPlate(QRgb ink, QRgb tint, const QVector<QRgb>& ground, double strength) {
    const ByteTable red = UnderPlate(qRed(tint), strength, 31, kRed);
    const ByteTable green = UnderPlate(qGreen(tint), strength, 63, kGreen);
    const ByteTable blue = UnderPlate(qBlue(tint), strength, 31, kBlue);
    return IsReadableOn(ink, ground, [&](QRgb pixel) {
        return red[size_t(qRed(pixel))] + green[size_t(qGreen(pixel))] + blue[size_t(qBlue(pixel))];
    });
}

}  // namespace

double Luminance(QRgb color) {
    const ByteTable& linear = LinearLight();
    return kRed * linear[size_t(qRed(color))] + kGreen * linear[size_t(qGreen(color))] +
           kBlue * linear[size_t(qBlue(color))];
}

double BrightestOnPanel(QRgb color) {
    const ByteTable& linear = LinearLight();
    return kRed * linear[BrightestLevel(qRed(color), 31)] +
           kGreen * linear[BrightestLevel(qGreen(color), 63)] +
           kBlue * linear[BrightestLevel(qBlue(color), 31)];
}

double Contrast(double luminance, double otherLuminance) {
    return (qMax(luminance, otherLuminance) + 0.05) / (qMin(luminance, otherLuminance) + 0.05);
}

bool IsReadable(QRgb ink, const QVector<QRgb>& ground) {
    return IsReadableOn(ink, ground, LuminanceOnPanel);
}

double LeastStrength(QRgb ink, QRgb tint, const QVector<QRgb>& ground, double least) {
    if (IsReadableOnPlate(ink, tint, ground, least)) {
        return least;
    }
    constexpr int kHalvings = 8;
    double low = least;
    double high = 1;
    for (int k = 0; k < kHalvings; ++k) {
        const double middle = (low + high) / 2;
        (IsReadableOnPlate(ink, tint, ground, middle) ? high : low) = middle;
    }
    return std::ceil(high * 255) / 255;  // as opacities are kept
}

}  // namespace kivo
