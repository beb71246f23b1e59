#include "picture.h"
#include "scenes.h"

#include <QtMath>

#include <cmath>

namespace kivo::artwork {

QImage DrawNebula() {
    const Noise warpNoise(71);
    const Noise cloudNoise(72);
    const Noise dustNoise(73);
    const Ramp heat({{0, 0xFF03040D},
                     {0.22, 0xFF12092C},
                     {0.40, 0xFF341A6B},
                     {0.56, 0xFF8A2A7E},
                     {0.72, 0xFFE0567A},
                     {0.86, 0xFFFFA46E},
                     {1, 0xFFFFE9C4}});
    const Light blue = FromRgb(0xFF2468D8);
    Picture picture;
    picture.Fill([&](Spot at) {
        const double x = at.x * 1.7;
        const double y = at.v * 1.7;
        const double firstX = warpNoise.Fractal(x + 1.7, y + 9.2, 5) - 0.5;
        const double firstY = warpNoise.Fractal(x + 8.3, y + 2.8, 5) - 0.5;
        const double secondX = warpNoise.Fractal(x + 2.4 * firstX + 4.1, y + 2.4 * firstY + 6.6, 5) - 0.5;
        const double secondY = warpNoise.Fractal(x + 2.4 * firstX + 7.9, y + 2.4 * firstY + 3.3, 5) - 0.5;
        const double cloud = cloudNoise.Fractal(x + 2.0 * secondX, y + 2.0 * secondY, 6);
        const double dx = at.x - 0.53 * Picture::kAspect;
        const double dy = at.v - 0.44;
        const double away = dx * dx * 0.62 + dy * dy + 0.16 * firstX * dx;
        const double core = std::exp(-away / (2 * 0.125 * 0.125));
        const double halo = std::exp(-away / (2 * 0.36 * 0.36));
        const double value = Clamp01(1.05 * (cloud - 0.38) * (0.75 + 0.9 * halo) + 0.10 * halo +
                                     0.44 * core * (0.30 + 1.3 * cloud));
        Light light = heat.At(value);
        const double wisp = SmoothStep(
            0.46, 0.72, cloudNoise.Fractal(x * 0.8 + 2.6 * secondY + 30, y * 0.8 + 2.2 * secondX, 5));
        light = light + blue * (0.42 * wisp * (1 - 0.9 * halo) * (0.25 + cloud));
        const double lane =
            SmoothStep(0.50, 0.64, dustNoise.Fractal(x * 1.2 + 1.8 * secondX, y * 1.2 + 1.8 * firstY, 5));
        return light * Lerp(1, 0.2, lane * (1 - 0.55 * core));
    });
    picture.AddStars(74, 420, [](const Spot&) { return 0.85; });
    return picture.Finish(1007);
}

QImage DrawPlanet() {
    const Noise cloudNoise(111);
    const Noise cityNoise(112);
    constexpr double kCentreV = 2.02;
    constexpr double kRadius = 1.38;
    const double centreX = 0.5 * Picture::kAspect;
    // The sun rises 9 degrees right of the top.
    const double sunAngle = qDegreesToRadians(9.0);
    const double sunX = centreX + kRadius * std::sin(sunAngle);
    const double sunV = kCentreV - kRadius * std::cos(sunAngle);
    const Light air = FromRgb(0xFF4AA3FF);
    const Light brightAir = FromRgb(0xFFD9EFFF);
    const Light sun = FromRgb(0xFFFFF0D6);
    const Ramp space({{0, 0xFF01030A}, {1, 0xFF050A16}});
    const auto altitude = [&](const Spot& at) {
        return std::hypot(at.x - centreX, at.v - kCentreV) - kRadius;
    };
    // 1 towards the sun, falling along the limb.
    const auto lit = [&](const Spot& at) {
        const double angle = std::atan2(at.x - centreX, kCentreV - at.v) - sunAngle;
        return std::exp(-angle * angle / (2 * 0.30 * 0.30));
    };

    Picture picture;
    picture.Fill([&](Spot at) { return space.At(at.v); });
    picture.AddStars(113, 420, [&](const Spot& at) {
        const double height = altitude(at);
        const double glare = std::exp(-std::hypot(at.x - sunX, at.v - sunV) / 0.16);
        return SmoothStep(0.02, 0.12, height) * (1 - Clamp01(1.3 * glare));
    });
    picture.Over([&](Spot at) {
        const double height = std::max(altitude(at), 0.0);
        const double towards = lit(at);
        const double fromSun = std::hypot(at.x - sunX, at.v - sunV);
        const double wide = 0.75 * std::exp(-height / 0.035) * (0.16 + 0.84 * towards);
        const double thin = 1.0 * std::exp(-height / 0.010) * (0.22 + 0.9 * towards);
        const double glare = 0.12 * std::exp(-fromSun / 0.20);
        const double core = 0.95 * std::exp(-fromSun * fromSun / (2 * 0.028 * 0.028));
        const int px = static_cast<int>(at.u * Picture::kWidth);
        const int py = static_cast<int>(at.v * Picture::kHeight);
        return std::make_pair(picture.At(px, py) + air * wide + brightAir * (thin * 0.8) +
                                  Mix(air, sun, 0.55) * glare + sun * core,
                              1.0);
    });
    picture.Over([&](Spot at) {
        const double depth = -altitude(at);
        const double towards = lit(at);
        // Unrolled to the sphere, so that clouds and lights crowd towards the rim.
        const double rim = std::exp(-std::max(depth, 0.0) / 0.05);
        const double bend = std::sqrt(std::max(depth, 0.0) + 0.02);
        const double angle = std::atan2(at.x - centreX, kCentreV - at.v);
        const double cloud = cloudNoise.Fractal(angle * 7.0, bend * 9, 6);
        const double veil = SmoothStep(0.50, 0.74, cloud) * std::exp(-depth / 0.22);
        Light light = Mix(FromRgb(0xFF02060F), FromRgb(0xFF0A2747), rim * (0.25 + 0.75 * towards));
        light = light + air * (0.62 * std::exp(-std::max(depth, 0.0) / 0.012) * (0.2 + 0.9 * towards));
        light = light + FromRgb(0xFF9CC4E8) * (0.34 * veil * (0.20 + 0.8 * towards));
        const double land = SmoothStep(0.50, 0.60, cityNoise.Fractal(angle * 5 + 20, bend * 6, 3));
        const double sparks = SmoothStep(0.66, 0.86, cityNoise.Fractal(angle * 95, bend * 100, 2));
        const double dark = SmoothStep(0.05, 0.14, depth) * (1 - 0.8 * veil);
        light = light + FromRgb(0xFFFFB766) * (1.5 * land * sparks * dark);
        return std::make_pair(light, Clamp01(depth * Picture::kHeight + 0.5));
    });
    return picture.Finish(1011);
}

}  // namespace kivo::artwork
