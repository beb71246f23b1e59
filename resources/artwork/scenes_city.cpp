#include "picture.h"
#include "scenes.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace kivo::artwork {

namespace {

constexpr double kHorizon = 0.60;

QImage EmptyLayer() {
    QImage layer(Picture::kWidth, Picture::kHeight, QImage::Format_ARGB32_Premultiplied);
    layer.fill(Qt::transparent);
    return layer;
}

// Lit windows, 5 x 5 pixels on a grid of 10 x 11.
void DrawWindows(QPainter& painter, Random& random, const QRect& block, double lit) {
    constexpr std::array<QRgb, 6> kLights = {0xFFFFC46B, 0xFFFFC46B, 0xFFFFE2AE,
                                             0xFFFFE2AE, 0xFFFF9A55, 0xFF8FD8FF};
    for (int y = block.top() + 8; y + 8 < block.bottom(); y += 11) {
        for (int x = block.left() + 6; x + 8 < block.right(); x += 10) {
            const QColor colour = QColor::fromRgb(kLights[random.Below(6)]);
            const double strength = random.Range(0.55, 1.0);
            if (random.Unit() < lit) {
                painter.setOpacity(strength);
                painter.fillRect(x, y, 5, 5, colour);
            }
        }
    }
    painter.setOpacity(1);
}

struct BlockRow {
    QRgb body;
    int lowest;
    int highest;
    int narrowest;
    int widest;
    double gap;  // chance of a gap after a block
    double lit;
};

void DrawBlocks(QPainter& painter, Random& random, const BlockRow& row) {
    const int horizon = static_cast<int>(kHorizon * Picture::kHeight);
    int x = -random.Below(40);
    while (x < Picture::kWidth) {
        const int width = row.narrowest + random.Below(row.widest - row.narrowest);
        // The skyline rises towards the middle, where portrait looks.
        const double middle =
            std::exp(-std::pow((x + width / 2.0) / Picture::kWidth - 0.5, 2) / (2 * 0.20 * 0.20));
        const double tall = std::pow(random.Unit(), 1.6) * (0.35 + 0.65 * middle);
        const int height = row.lowest + static_cast<int>((row.highest - row.lowest) * tall);
        const QRect block(x, horizon - height, width, height + 2);
        painter.fillRect(block, QColor::fromRgb(row.body));
        const int crown = random.Below(4);
        if (crown == 0 && height > 90) {
            painter.fillRect(QRect(x + width / 2 - 1, horizon - height - 34, 3, 34),
                             QColor::fromRgb(row.body));
        } else if (crown == 1) {
            painter.fillRect(QRect(x + width / 4, horizon - height - 12, width / 2, 12),
                             QColor::fromRgb(row.body));
        }
        DrawWindows(painter, random, block, row.lit);
        x += width + (random.Unit() < row.gap ? 6 + random.Below(36) : 0);
    }
}

QImage DrawCity() {
    QImage city = EmptyLayer();
    QPainter painter(&city);
    Random random(51);
    DrawBlocks(painter, random, {0xFF4A2A55, 60, 190, 34, 80, 0.25, 0.05});
    DrawBlocks(painter, random, {0xFF231A40, 50, 275, 38, 76, 0.45, 0.22});
    DrawBlocks(painter, random, {0xFF0F0E26, 26, 130, 44, 110, 0.55, 0.26});
    return city;
}

// Thin discs of lights out of focus, each with a brighter rim.
QImage DrawBokeh() {
    constexpr std::array<QRgb, 4> kColours = {0xFFFFC46B, 0xFFFF9A55, 0xFF8FD8FF, 0xFFFF7E8A};
    QImage layer = EmptyLayer();
    QPainter painter(&layer);
    painter.setRenderHint(QPainter::Antialiasing);
    Random random(52);
    for (int i = 0; i < 46; ++i) {
        const double radius = 10 + 46 * std::pow(random.Unit(), 2);
        const QPointF centre(random.Range(0, Picture::kWidth), random.Range(0.10, 0.98) * Picture::kHeight);
        QColor colour = QColor::fromRgb(kColours[random.Below(4)]);
        const double strength = random.Range(0.10, 0.20);
        // Few in the middle: the towers are the subject.
        if (std::abs(centre.x() / Picture::kWidth - 0.5) < 0.15 && radius > 14) {
            continue;
        }
        colour.setAlphaF(strength);
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawEllipse(centre, radius, radius);
        colour.setAlphaF(std::min(0.25, strength * 1.25));
        painter.setPen(QPen(colour, 2.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(centre, radius - 1.25, radius - 1.25);
    }
    return layer;
}

// A layer's colour and alpha at a pixel.
std::pair<Light, double> Sample(const QImage& layer, int x, int y) {
    const QRgb pixel =
        layer.pixel(std::clamp(x, 0, Picture::kWidth - 1), std::clamp(y, 0, Picture::kHeight - 1));
    const QRgb straight = qUnpremultiply(pixel);
    return {FromRgb(straight), qAlpha(pixel) / 255.0};
}

}  // namespace

QImage DrawHarbour() {
    const Noise noise(53);
    const Ramp sky({{0, 0xFF0A1030},
                    {0.26, 0xFF2E1F4E},
                    {0.44, 0xFF7A3560},
                    {0.56, 0xFFC75E5E},
                    {kHorizon, 0xFFF0875A}});
    const QImage city = DrawCity();
    const QImage bokeh = DrawBokeh();
    Picture picture;
    const auto skyAt = [&](double x, double v) {
        const double dx = x - 0.5 * Picture::kAspect;
        const double dy = v - kHorizon;
        const double cloud =
            SmoothStep(0.50, 0.75, noise.Fractal(x * 1.6, v * 15, 4)) * SmoothStep(0.10, 0.35, v);
        const Light base = sky.At(v) + FromRgb(0xFFFFB070) *
                                           (0.28 * std::exp(-(dx * dx * 0.4 + dy * dy) / (2 * 0.11 * 0.11)));
        return Mix(base, FromRgb(0xFF5A2A58), 0.45 * cloud);
    };
    for (int y = 0; y < Picture::kHeight; ++y) {
        for (int x = 0; x < Picture::kWidth; ++x) {
            const Spot at = Picture::SpotAt(x, y);
            if (at.v < kHorizon) {
                const auto [light, alpha] = Sample(city, x, y);
                picture.At(x, y) = Mix(skyAt(at.x, at.v), light, alpha);
                continue;
            }
            // Water: the mirrored rows, shifted by waves that grow towards us, smeared downwards, dimmed.
            const double depth = at.v - kHorizon;
            const double wave = std::sin(at.v * 900 / (1 + 9 * depth) + 3 * noise.At(at.x * 6, at.v * 40));
            const double shift = (2 + 26 * depth) * wave + 14 * depth * (noise.At(at.x * 9, at.v * 70) - 0.5);
            Light sum;
            constexpr int kHalf = 4;
            constexpr int kTaps = 2 * kHalf + 1;
            for (int tap = 0; tap < kTaps; ++tap) {
                const double smear = (tap - kHalf) * (1.5 + 22 * depth);
                const double mirrored = (kHorizon - depth) * Picture::kHeight - smear;
                const int row =
                    std::min(static_cast<int>(mirrored), static_cast<int>(kHorizon * Picture::kHeight) - 1);
                const auto [light, alpha] = Sample(city, x + static_cast<int>(shift), row);
                sum = sum + Mix(skyAt(at.x, Clamp01(mirrored / Picture::kHeight)), light, alpha);
            }
            const double glint = 0.92 + 0.16 * noise.Fractal(at.x * 8, at.v * 90, 3);
            picture.At(x, y) =
                Mix(sum * (glint / kTaps * 0.72), FromRgb(0xFF0A1030), SmoothStep(0, 0.42, depth) * 0.62);
        }
    }
    for (int y = 0; y < Picture::kHeight; ++y) {
        for (int x = 0; x < Picture::kWidth; ++x) {
            const auto [light, alpha] = Sample(bokeh, x, y);
            picture.At(x, y) = Mix(picture.At(x, y), light, alpha);
        }
    }
    return picture.Finish(1005);
}

}  // namespace kivo::artwork
