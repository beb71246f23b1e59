#include "picture.h"
#include "scenes.h"

#include <QPainter>
#include <QPolygonF>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace kivo::artwork {

namespace {

QImage EmptyMask() {
    QImage mask(Picture::kWidth, Picture::kHeight, QImage::Format_Grayscale8);
    mask.fill(0);
    return mask;
}

// Tiers of drooping branches, all in pixels; foot is where the trunk stands.
QPolygonF Fir(Random& random, QPointF foot, double height, double halfWidth) {
    const int tiers = std::clamp(static_cast<int>(height / 14), 6, 13);
    QPolygonF left;
    QPolygonF right;
    const QPointF tip = foot - QPointF(0, height);
    for (int i = 1; i <= tiers; ++i) {
        const double t = i / static_cast<double>(tiers);
        const double y = tip.y() + height * (0.06 + 0.90 * t);
        const double reach = halfWidth * std::pow(t, 0.85);
        const double droop = 0.45 * height / tiers;
        left << QPointF(foot.x() - reach * random.Range(0.82, 1.12), y + droop * random.Range(0.2, 0.8))
             << QPointF(foot.x() - reach * 0.42, y - 0.15 * droop);
        right << QPointF(foot.x() + reach * random.Range(0.82, 1.12), y + droop * random.Range(0.2, 0.8))
              << QPointF(foot.x() + reach * 0.42, y - 0.15 * droop);
    }
    QPolygonF fir;
    fir << tip << right << QPointF(foot.x() + halfWidth * 0.10, foot.y() + 8)
        << QPointF(foot.x() - halfWidth * 0.10, foot.y() + 8);
    for (auto point = left.crbegin(); point != left.crend(); ++point) {
        fir << *point;
    }
    return fir;
}

struct FirRow {
    double foot;    // v of the ground
    double height;  // of a middling tree, in pixels
    double spacing;
    double gapFrom;  // no tree between these u
    double gapTo;
};

// Ground and trees of one row.
QImage FirMask(quint64 seed, const FirRow& row, const std::function<double(double)>& groundLine) {
    Random random(seed);
    QImage mask = EmptyMask();
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    QPolygonF ground;
    ground << QPointF(Picture::kWidth, Picture::kHeight) << QPointF(0, Picture::kHeight);
    for (int x = 0; x <= Picture::kWidth; x += 8) {
        ground << QPointF(x, groundLine(x / static_cast<double>(Picture::kWidth)) * Picture::kHeight);
    }
    painter.drawPolygon(ground);
    double x = -row.spacing * random.Unit();
    while (x < Picture::kWidth + row.spacing) {
        const double u = x / Picture::kWidth;
        const double height = row.height * random.Range(0.62, 1.22);
        const QPointF foot(x, groundLine(u) * Picture::kHeight + 3);
        const QPolygonF fir = Fir(random, foot, height, height * random.Range(0.17, 0.22));
        if (u < row.gapFrom || u > row.gapTo) {
            painter.drawPolygon(fir, Qt::WindingFill);
        }
        x += row.spacing * random.Range(0.45, 1.5);
    }
    return mask;
}

}  // namespace

QImage DrawAurora() {
    const Noise waveNoise(21);
    const Noise streakNoise(22);
    const Ramp sky({{0, 0xFF050A1C}, {0.30, 0xFF0B1440}, {0.75, 0xFF0A2136}});
    const Light green = FromRgb(0xFF39F29A);
    const Light pale = FromRgb(0xFF57FFB4);
    const Light teal = FromRgb(0xFF1FD0A0);
    const Light violet = FromRgb(0xFF5A49D6);
    struct Curtain {
        double base;
        double swing;
        double reach;
        double strength;
        double phase;
    };
    constexpr Curtain kCurtains[] = {
        {0.42, 0.10, 0.26, 0.50, 0.4}, {0.58, 0.09, 0.21, 0.62, 2.6}, {0.70, 0.07, 0.15, 0.42, 4.9}};
    Picture picture;
    picture.Fill([&](Spot at) { return sky.At(at.v); });
    picture.AddStars(23, 300, [](const Spot& at) { return SmoothStep(0.55, 0.35, at.v); });
    picture.Over([&](Spot at) {
        const int px = static_cast<int>(at.u * Picture::kWidth);
        const int py = static_cast<int>(at.v * Picture::kHeight);
        Light light = picture.At(px, py);
        for (const Curtain& curtain : kCurtains) {
            const double wander = waveNoise.Line(at.x * 1.3 + 20 * curtain.phase, 3) - 0.5;
            const double base =
                curtain.base + curtain.swing * std::sin(at.x * 3.1 + curtain.phase) + 0.16 * wander;
            const double above = base - at.v;
            const double rays = streakNoise.Fractal(at.x * 26 + 9 * curtain.phase + 0.5 * at.v,
                                                    at.v * 0.7 + curtain.phase, 3);
            const double folds = streakNoise.Fractal(at.x * 4 + 5 * curtain.phase, curtain.phase, 2);
            const double streak =
                (0.45 + 1.0 * SmoothStep(0.25, 0.80, rays)) * (0.30 + 1.3 * SmoothStep(0.25, 0.75, folds));
            const double reach = curtain.reach * (0.65 + 0.9 * rays);
            const double body = above > 0 ? std::exp(-above / reach) : std::exp(above / 0.018);
            const double t = Clamp01(above / (reach * 2.2));
            Light colour = Mix(Mix(pale, green, Clamp01(t * 5)), teal, SmoothStep(0.1, 0.4, t));
            colour = Mix(colour, violet, SmoothStep(0.28, 0.75, t));
            light = light + colour * (curtain.strength * streak * body);
        }
        return std::make_pair(light, 1.0);
    });
    picture.Over([&](Spot at) {
        const double line =
            0.715 - 0.055 * std::sin(at.x * 2.1 + 0.4) - 0.07 * (waveNoise.Line(at.x * 2.2 + 70, 4) - 0.5);
        return std::make_pair(Mix(FromRgb(0xFF06283A), FromRgb(0xFF03131F), SmoothStep(0, 0.16, at.v - line)),
                              Below(line, at.v));
    });
    const auto ground = [&](double u) { return 0.945 - 0.03 * std::sin(u * 7 + 1.0); };
    const auto far = [&](double u) { return 0.87 - 0.025 * std::sin(u * 6 + 2.2); };
    picture.Through(FirMask(24, {0, 62, 15, 2, 2}, far), [](Spot) { return FromRgb(0xFF041A26); });
    picture.Through(FirMask(25, {0, 125, 27, 2, 2}, ground), [](Spot) { return FromRgb(0xFF02080F); });
    return picture.Finish(1002);
}

QImage DrawMorningFirs() {
    const Noise rayNoise(81);
    const Noise groundNoise(82);
    const Ramp sky({{0, 0xFFC6E0CB}, {0.30, 0xFFDCEBD6}, {0.75, 0xFFA9CDB8}});
    const Ramp tree({{0, 0xFFA5CAB6},
                     {0.2, 0xFF86B3A0},
                     {0.4, 0xFF5C9384},
                     {0.6, 0xFF346A62},
                     {0.8, 0xFF174340},
                     {1, 0xFF08201F}});
    const Light sun = FromRgb(0xFFFFF1C9);
    const double sunX = 0.52 * Picture::kAspect;
    constexpr double kSunV = 0.15;
    Picture picture;
    picture.Fill([&](Spot at) {
        const double away = std::hypot(at.x - sunX, at.v - kSunV);
        return sky.At(at.v) +
               sun * (0.85 * std::exp(-away * away / (2 * 0.055 * 0.055)) + 0.30 * std::exp(-away / 0.20));
    });
    constexpr FirRow kRows[] = {{0.470, 40, 12, 2, 2},        {0.520, 62, 17, 2, 2},
                                {0.590, 100, 25, 2, 2},       {0.690, 165, 38, 0.49, 0.55},
                                {0.840, 265, 62, 0.42, 0.60}, {0.965, 410, 92, 0.34, 0.66}};
    for (int i = 0; i < 6; ++i) {
        const FirRow& row = kRows[i];
        const auto ground = [&](double u) {
            return row.foot + 0.05 * (groundNoise.Line(u * 3 + 9 * i, 3) - 0.5);
        };
        const Light body = tree.At(i / 5.0);
        const Light mist = FromRgb(0xFFCFE4D2);
        const double span = 1.1 * row.height / Picture::kHeight;
        picture.Through(FirMask(83 + static_cast<quint64>(i), row, ground), [&](Spot at) {
            const double toFoot = SmoothStep(row.foot - span, row.foot, at.v) *
                                  Lerp(1, 0.35, SmoothStep(row.foot, row.foot + 0.12, at.v));
            return Mix(body, mist, toFoot * (0.80 - 0.155 * i));
        });
    }
    for (int y = 0; y < Picture::kHeight; ++y) {
        for (int x = 0; x < Picture::kWidth; ++x) {
            const Spot at = Picture::SpotAt(x, y);
            const double dx = at.x - sunX;
            const double dy = at.v - kSunV;
            const double away = std::hypot(dx, dy);
            const double beam = SmoothStep(0.50, 0.70, rayNoise.Streaks(std::atan2(dx, dy) * 6 + 50, 0.4, 2));
            const double reach =
                SmoothStep(0.06, 0.18, away) * std::exp(-away / 0.30) * SmoothStep(-0.05, 0.1, dy);
            // Mostly stronger, hardly added: light that is only added turns dark trees brown.
            picture.At(x, y) = picture.At(x, y) * (1 + 0.55 * beam * reach) + sun * (0.02 * beam * reach);
        }
    }
    return picture.Finish(1008);
}

}  // namespace kivo::artwork
