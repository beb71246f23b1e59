#include "picture.h"
#include "scenes.h"

#include <algorithm>
#include <cmath>

namespace kivo::artwork {

QImage DrawSilk() {
    const Noise warpNoise(91);
    const Noise hueNoise(92);
    const Ramp blue({{0, 0xFF070B2C},
                     {0.18, 0xFF0A0F3A},
                     {0.42, 0xFF1B2F8F},
                     {0.66, 0xFF3466D8},
                     {0.86, 0xFF6FB4F2},
                     {1, 0xFFD4ECFF}});
    const Ramp violet({{0, 0xFF1A0A3A},
                       {0.22, 0xFF34146A},
                       {0.45, 0xFF5A1F8A},
                       {0.66, 0xFFA944B4},
                       {0.88, 0xFFEE8FB0},
                       {1, 0xFFFFDCE6}});
    const auto height = [&](double x, double y) {
        const double lengthwise = x * 0.80 - y * 0.60;
        const double crosswise = x * 0.60 + y * 0.80;
        const double warp = 0.75 * (warpNoise.Streaks(lengthwise * 1.5 + 4, crosswise * 1.9 + 8, 3) - 0.5);
        const double along = crosswise + warp;
        const double across = lengthwise + 0.4 * warp;
        return std::sin(along * 12 + 1.1 * std::sin(across * 2.4)) +
               0.38 * std::sin(along * 25.0 + across * 3.1 + 1.0) +
               0.12 * std::sin(along * 47.0 - across * 5.4);
    };
    Picture picture;
    picture.Fill([&](Spot at) {
        constexpr double kStep = 0.004;
        const double here = height(at.x, at.v);
        const double slope = (height(at.x + kStep * 0.6, at.v + kStep * 0.8) - here) / kStep;
        const double shade = Clamp01(0.42 + 0.0165 * slope + 0.09 * here);
        const double gloss = std::pow(SmoothStep(0.60, 1.0, shade), 2.0);
        const double hue = SmoothStep(0.50, 0.64, hueNoise.Fractal(at.x * 0.85 + 2.3, at.v * 0.85 + 0.3, 2));
        return Mix(blue.At(shade), violet.At(shade), hue) + Light{1, 1, 1} * (0.10 * gloss);
    });
    return picture.Finish(1009);
}

QImage DrawContours() {
    const Noise heights(104);
    constexpr int kLevels = 26;
    const Ramp ground({{0, 0xFF071318}, {1, 0xFF12343A}});
    const Ramp ink({{0, 0xFF1F7D86}, {0.55, 0xFF4FD6B8}, {0.80, 0xFFFFE0A3}});
    const auto field = [&](double x, double y) {
        // The hill in the upper middle is the subject.
        const double dx = x - 0.98;
        const double dy = y - 0.36;
        return 0.72 * heights.Fractal(x * 2.1 + 3, y * 2.1 + 5, 4) +
               0.34 * std::exp(-(dx * dx + 1.6 * dy * dy) / (2 * 0.24 * 0.24));
    };
    Picture picture;
    picture.Fill([&](Spot at) {
        constexpr double kStep = 1.0 / Picture::kHeight;
        const double value = field(at.x, at.v);
        const double gx = field(at.x + kStep, at.v) - value;
        const double gy = field(at.x, at.v + kStep) - value;
        const double perPixel = std::max(std::hypot(gx, gy), 1e-5) * kLevels;
        const double level = value * kLevels;
        const double nearest = std::round(level);
        const bool fifth = std::fmod(nearest, 5.0) == 0;
        const double distance = std::abs(level - nearest) / perPixel;
        const double half = (fifth ? 2.6 : 1.5) / 2;
        // Where the ground is almost flat a line would spread into a stain.
        const double steep = SmoothStep(0.006, 0.02, perPixel);
        const double cover = Clamp01(half + 0.5 - distance) * steep;
        const double rise = Clamp01((value - 0.24) / 0.62);
        const double glow = 0.10 * std::exp(-distance / 5) * (fifth ? 1 : 0.4);
        const Light line = ink.At(rise) * (fifth ? 1.0 : 0.80);
        const double ex = (at.u - 0.5) * 1.25;
        const double ey = (at.v - 0.45) * 1.2;
        const double vignette = 1 - 0.75 * SmoothStep(0.25, 0.85, std::hypot(ex, ey));
        return (Mix(ground.At(rise), line, cover) + line * glow) * vignette;
    });
    return picture.Finish(1010);
}

}  // namespace kivo::artwork
