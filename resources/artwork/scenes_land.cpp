#include "picture.h"
#include "scenes.h"

#include <cmath>

namespace kivo::artwork {

namespace {

// One ridge of the dawn: noise with its hollows rounded off and its tops kept, so that it reads as rock.
double RidgeLine(const Noise& noise, const Spot& at, int index) {
    const double near = index / 5.0;
    const double base = 0.590 + 0.066 * index + 0.014 * index * near;
    const double amplitude = 0.050 + 0.105 * near;
    const double frequency = 1.5 + 1.9 * near;
    const double sharp = noise.Line(at.x * frequency + 31.7 * index, 6);
    const double broad = noise.Line(at.x * 0.9 + 11.3 * index + 60, 2);
    const double peak = 1 - std::min(1.0, 2.4 * std::abs(2 * sharp - 1));
    return base + amplitude * (0.95 - 0.85 * peak * Lerp(0.55, 1.0, near) - 1.1 * broad);
}

// A dune: its skyline, the crest that parts lit from shaded side, and how far away it is (1 = farthest).
struct Dune {
    double base;
    double amplitude;
    double frequency;
    double phase;
    double crestAt;     // x of the crest on the skyline, in heights
    double crestDrift;  // how far it wanders to the right per height going down
    double haze;
};

double Skyline(const Dune& dune, double x) {
    const double wave = std::sin(dune.frequency * x + dune.phase);
    // Sharper tops than hollows, as wind leaves them.
    return dune.base -
           dune.amplitude * (wave + 0.22 * std::sin(2 * dune.frequency * x + 2 * dune.phase + 1.2));
}

constexpr QRgb kSheets[] = {0xFFF7D9B4, 0xFFF6B98A, 0xFFEE8E72, 0xFFD9646B, 0xFFA3456A, 0xFF5C3162};

double SheetEdge(int sheet, double x) {
    constexpr double kBase[] = {0.335, 0.445, 0.565, 0.690, 0.810, 0.925};
    constexpr double kAmplitude[] = {0.045, 0.050, 0.060, 0.060, 0.060, 0.050};
    constexpr double kFrequency[] = {3.6, 3.1, 3.4, 2.9, 3.3, 2.7};
    constexpr double kPhase[] = {0.9, 3.5, 5.6, 1.7, 4.4, 0.2};
    return kBase[sheet] + kAmplitude[sheet] * std::sin(kFrequency[sheet] * x + kPhase[sheet]) +
           0.3 * kAmplitude[sheet] * std::sin(1.9 * kFrequency[sheet] * x + 2 * kPhase[sheet]);
}

}  // namespace

QImage DrawDawn() {
    const Noise cloudNoise(11);
    const Noise ridgeNoise(14);
    const Ramp sky(
        {{0, 0xFF1D2748}, {0.20, 0xFF54466C}, {0.38, 0xFFB9798A}, {0.50, 0xFFF4A97C}, {0.60, 0xFFFFD9A6}});
    const Ramp rock({{0, 0xFFD59A8E},
                     {0.2, 0xFFAD8090},
                     {0.4, 0xFF76658B},
                     {0.6, 0xFF4B4A72},
                     {0.8, 0xFF2A3154},
                     {1, 0xFF151B33}});
    const Light sunLight = FromRgb(0xFFFFE3B8);
    const auto sunAt = [&](const Spot& at) {
        const double dx = at.x - 0.5 * Picture::kAspect;
        const double dy = at.v - 0.58;
        const double near = (dx * dx * 0.7 + dy * dy) / (0.045 * 0.045);
        const double wide = (dx * dx * 0.35 + dy * dy) / (0.16 * 0.16);
        return 0.75 * std::exp(-near / 2) + 0.42 * std::exp(-wide / 2);
    };
    Picture picture;
    picture.Fill([&](Spot at) { return sky.At(at.v) + sunLight * sunAt(at); });
    picture.Over([&](Spot at) {
        const double streak = cloudNoise.Streaks(at.x * 1.3 + 3.0, at.v * 1.3 * 17 + 0.5 * at.x, 5);
        const double band = SmoothStep(0.02, 0.12, at.v) * SmoothStep(0.40, 0.26, at.v);
        const double patch = SmoothStep(0.34, 0.66, cloudNoise.Streaks(at.x * 1.1 + 41, at.v * 5.5, 2));
        const Light lit = Mix(FromRgb(0xFF8E6284), FromRgb(0xFFFFB98A), SmoothStep(0.04, 0.34, at.v));
        return std::make_pair(lit, 0.85 * band * patch * SmoothStep(0.48, 0.72, streak));
    });
    for (int i = 0; i < 6; ++i) {
        const Light body = rock.At(i / 5.0);
        const Light mist = Mix(rock.At((i - 1) / 5.0), FromRgb(0xFFF0B596), 0.35);
        picture.Over([&](Spot at) {
            const double line = RidgeLine(ridgeNoise, at, i);
            const double depth = SmoothStep(0, 0.17, at.v - line);
            const double grit = 0.92 + 0.16 * ridgeNoise.Fractal(at.x * 22, at.v * 30 + 7 * i, 3);
            const Light colour = Mix(body * grit, mist, depth * (0.55 - 0.09 * i));
            return std::make_pair(colour + sunLight * (0.16 * sunAt(at) * (1 - i / 5.0)), Below(line, at.v));
        });
    }
    return picture.Finish(1001, 1.2);
}

QImage DrawDunes() {
    const Noise noise(31);
    const Ramp sky({{0, 0xFF5F86A8}, {0.22, 0xFF9FB0B4}, {0.42, 0xFFF2D6B0}});
    const Ramp lit({{0, 0xFFFFDFA8}, {0.5, 0xFFF0AD62}, {1, 0xFFC0713A}});
    const Ramp shade({{0, 0xFF9A4F33}, {0.55, 0xFF6B3329}, {1, 0xFF3A1A26}});
    const Light hazeLight = FromRgb(0xFFEFC99E);
    constexpr Dune kDunes[] = {{0.400, 0.022, 2.6, 0.2, 1.62, 0.9, 0.52},
                               {0.455, 0.060, 2.2, 4.95, 1.02, 1.0, 0.30},
                               {0.575, 0.075, 2.7, 1.15, 0.30, 1.5, 0.0},
                               {0.690, 0.100, 2.1, 4.75, 1.10, -0.55, 0.0},
                               {0.910, 0.110, 1.7, 1.10, 0.36, 2.4, 0.0}};
    Picture picture;
    picture.Fill([&](Spot at) {
        const double dx = at.x - 0.32;
        const double dy = at.v - 0.34;
        const double glow = std::exp(-(dx * dx * 0.5 + dy * dy) / (2 * 0.12 * 0.12));
        return sky.At(at.v) + FromRgb(0xFFFFE6BC) * (0.30 * glow);
    });
    int index = 0;
    for (const Dune& dune : kDunes) {
        const double seedRow = 13.0 * index++;
        picture.Over([&](Spot at) {
            const double line = Skyline(dune, at.x);
            const double depth = at.v - line;
            const double down = std::max(depth, 0.0);
            const double drift = 0.35 * down * (noise.Line(at.v * 5 + seedRow, 2) - 0.5);
            const double bend = 0.045 * (std::sin(15 * down + seedRow) - std::sin(seedRow));
            const double crest = dune.crestAt + dune.crestDrift * down + drift + bend;
            const double shaded = SmoothStep(-0.005, 0.005, at.x - crest);
            const double warp = noise.Fractal(at.x * 2.4 + seedRow, at.v * 2.4, 3);
            const double ripple =
                std::sin((at.v * 1.0 + 0.16 * at.x) * 330 * (1.15 - 0.3 * at.v) + warp * 26);
            const double fall = Clamp01(depth * 2.1 + 0.35 * (warp - 0.5) + 0.06 * index);
            const Light bright =
                lit.At(fall) * (1 + 0.085 * ripple * SmoothStep(0.015, 0.10, depth) * (1 - dune.haze));
            const Light dark = shade.At(Clamp01(depth * 2.0 + 0.10 * index - 0.12 + 0.3 * (warp - 0.5)));
            const Light rim = FromRgb(0xFFFFEBC4) * (0.22 * std::exp(-std::max(depth, 0.0) / 0.012));
            const Light colour = Mix(bright + rim, dark, shaded * 0.94);
            return std::make_pair(Mix(colour, hazeLight, dune.haze), Below(line, at.v));
        });
    }
    return picture.Finish(1003);
}

QImage DrawPaperHills() {
    const Noise fibre(61);
    const Light sunLight = FromRgb(0xFFFFF7E6);
    const auto paper = [&](const Spot& at, int sheet) {
        const double fine = fibre.Fractal(at.x * 140 + 9 * sheet, at.v * 60 + 5 * sheet, 2);
        return 0.95 + 0.10 * fine;
    };
    const auto shadow = [](double distance) { return 1 - 0.3 * std::exp(-std::max(distance, 0.0) / 0.03); };
    Picture picture;
    picture.Fill([&](Spot at) {
        const double cast = shadow(SheetEdge(0, at.x) - at.v);
        return Mix(FromRgb(0xFFF6ECD9), FromRgb(0xFFF8E6CB), at.v * 2.5) * (paper(at, 0) * cast);
    });
    picture.Over([&](Spot at) {
        const double away = std::hypot(at.x - 0.5 * Picture::kAspect, at.v - 0.262);
        constexpr double kRadius = 0.128;
        const double rim = std::exp(-std::max(away - kRadius, 0.0) / 0.02);
        if (away > kRadius + 0.001) {
            return std::make_pair(FromRgb(0xFFB98C5E), 0.20 * rim);
        }
        const double cast = shadow(SheetEdge(0, at.x) - at.v);
        return std::make_pair(sunLight * (1.02 * paper(at, 9) * cast), Clamp01((kRadius - away) * 680 + 0.5));
    });
    for (int i = 0; i < 6; ++i) {
        const Light body = FromRgb(kSheets[i]);
        picture.Over([&](Spot at) {
            const double line = SheetEdge(i, at.x);
            const double depth = at.v - line;
            const double cast = i < 5 ? shadow(SheetEdge(i + 1, at.x) - at.v) : 1;
            const double edge = depth < 6.0 / Picture::kHeight ? 1 : 0;
            const double fall = 1.04 - 0.5 * std::max(depth, 0.0);
            const Light sheet = body * (paper(at, i + 1) * cast * fall);
            const Light colour = Mix(sheet, sheet * 1.28 + sunLight * 0.03, edge);
            return std::make_pair(colour, Below(line, at.v));
        });
    }
    return picture.Finish(1006);
}

}  // namespace kivo::artwork
