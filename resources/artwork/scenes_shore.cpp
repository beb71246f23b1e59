#include "picture.h"
#include "scenes.h"

#include <algorithm>
#include <cmath>

namespace kivo::artwork {

QImage DrawShore() {
    const Noise warpNoise(41);
    const Noise netNoise(42);
    const Noise foamNoise(43);
    const Noise sandNoise(44);
    const Ramp water({{0, 0xFF0B5F86},
                      {0.22, 0xFF0F7BA2},
                      {0.40, 0xFF1597B4},
                      {0.62, 0xFF4FCBD0},
                      {0.80, 0xFFA5EBE2},
                      {0.86, 0xFFC9F1E6}});
    const Ramp sand({{0, 0xFFD9C4A0}, {1, 0xFFF4E8D0}});
    constexpr double kShore = 0.80;
    constexpr double kFoamLines[] = {0.50, 0.645, 0.735, 0.795};
    // Light gathers in lines where the noise passes its middle. Divided by the slope, or the lines would
    // spread into stains wherever the noise is flat.
    const auto netAt = [&](double x, double v) {
        const double bend = 1.6 * (warpNoise.Fractal(x * 0.45 + 20, v * 0.45, 2) - 0.5);
        return netNoise.Fractal(x + bend, v - bend, 3) - 0.5;
    };
    const auto causticAt = [&](double x, double v, double fineness) {
        constexpr double kStep = 0.02;
        const double toX = x * 8 * fineness + 50 * fineness;
        const double toV = v * 10 * fineness;
        const double here = netAt(toX, toV);
        const double slope =
            std::hypot(netAt(toX + kStep, toV) - here, netAt(toX, toV + kStep) - here) / kStep;
        const double distance = std::abs(here) / std::max(slope, 0.25);
        return std::exp(-distance / 0.06) * SmoothStep(0.05, 0.30, slope);
    };
    Picture picture;
    picture.Fill([&](Spot at) {
        const double bay = 0.20 * (warpNoise.Fractal(at.x * 1.5 + 4, at.v * 1.5, 4) - 0.5);
        const double lace = 0.035 * (warpNoise.Fractal(at.x * 7 + 9, at.v * 7 + 3, 3) - 0.5);
        const double field = 0.30 + 0.86 * at.v - 0.34 * (at.x - 0.94) + bay + lace - 0.035;
        const Light foam = FromRgb(0xFFF7F7F7);
        Light light;
        if (field < kShore) {
            const double tone = field - 0.05;
            light = water.At(tone);
            const double net = 0.46 * causticAt(at.x, at.v, 1) + 0.22 * causticAt(at.x, at.v, 1.9);
            const double shown = SmoothStep(0.05, 0.30, field) * SmoothStep(0.78, 0.55, field);
            light = Mix(light, FromRgb(0xFFC9F6F0), net * shown);
        } else {
            const double dry = SmoothStep(kShore, kShore + 0.30, field);
            const double fine = sandNoise.Fractal(at.x * 90, at.v * 90, 3);
            const double broad = sandNoise.Fractal(at.x * 5, at.v * 5, 3);
            light = sand.At(Clamp01(dry + 0.5 * (broad - 0.5))) * (0.94 + 0.12 * fine);
            light = light * Lerp(0.68, 1, SmoothStep(kShore + 0.01, kShore + 0.075, field));
        }
        for (int i = 0; i < 4; ++i) {
            const double width = 0.008 + 0.004 * i;
            const double away =
                field - kFoamLines[i] + 0.02 * (foamNoise.Fractal(at.x * 9 + 30 * i, at.v * 9, 3) - 0.5);
            const double body = std::exp(-away * away / (width * width)) +
                                0.45 * SmoothStep(-0.06, 0, away) * (away < 0 ? 1 : 0) * (i == 3 ? 1 : 0.4);
            const double broken = SmoothStep(0.36, 0.58, foamNoise.Fractal(at.x * 26, at.v * 26 + 11 * i, 3));
            light = Mix(light, foam, Clamp01(body) * Lerp(0.30, 1, broken) * (0.45 + 0.17 * i));
        }
        return light;
    });
    return picture.Finish(1004);
}

}  // namespace kivo::artwork
