#include "picture.h"

#include <algorithm>
#include <cmath>

namespace kivo::artwork {

namespace {

constexpr double kGrainDeviation = 0.0155;
constexpr int kGrainWidth = Picture::kWidth / 2;
constexpr int kGrainHeight = Picture::kHeight / 2;

// IEC 61966-2-1
double Decode(double value) {
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Encode(double value) {
    return value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1 / 2.4) - 0.055;
}

// Catmull-Rom weights of four neighbours for a place t between the middle two.
std::array<double, 4> CubicWeights(double t) {
    const double t2 = t * t;
    const double t3 = t2 * t;
    return {-0.5 * t + t2 - 0.5 * t3, 1 - 2.5 * t2 + 1.5 * t3, 0.5 * t + 2 * t2 - 1.5 * t3,
            -0.5 * t2 + 0.5 * t3};
}

// The grain is made at half size and enlarged: single pixels would vanish when the picture is reduced.
class Grain {
public:
    explicit Grain(quint64 seed) : m_values(static_cast<size_t>(kGrainWidth) * kGrainHeight) {
        Random random(seed);
        for (double& value : m_values) {
            value = random.Gauss();
        }
    }

    double At(int x, int y) const {
        const int left = (x - 1) / 2;
        const int top = (y - 1) / 2;
        const auto across = CubicWeights(x % 2 == 0 ? 0.75 : 0.25);
        const auto down = CubicWeights(y % 2 == 0 ? 0.75 : 0.25);
        double sum = 0;
        for (int j = 0; j < 4; ++j) {
            const int row = std::clamp(top + j - 1, 0, kGrainHeight - 1);
            for (int i = 0; i < 4; ++i) {
                const int column = std::clamp(left + i - 1, 0, kGrainWidth - 1);
                sum += across[i] * down[j] * m_values[static_cast<size_t>(row) * kGrainWidth + column];
            }
        }
        return sum;
    }

private:
    std::vector<double> m_values;
};

int ToByte(double value) {
    return static_cast<int>(std::lround(Clamp01(value) * 255));
}

}  // namespace

Light operator+(Light a, Light b) {
    return {a.r + b.r, a.g + b.g, a.b + b.b};
}

Light operator*(Light a, double factor) {
    return {a.r * factor, a.g * factor, a.b * factor};
}

Light Mix(Light a, Light b, double t) {
    return a * (1 - t) + b * t;
}

double Luminance(Light light) {
    return 0.2126 * light.r + 0.7152 * light.g + 0.0722 * light.b;
}

Light FromRgb(QRgb rgb) {
    return {Decode(qRed(rgb) / 255.0), Decode(qGreen(rgb) / 255.0), Decode(qBlue(rgb) / 255.0)};
}

Light Ramp::At(double t) const {
    if (t <= m_stops.front().first) {
        return FromRgb(m_stops.front().second);
    }
    for (size_t i = 1; i < m_stops.size(); ++i) {
        const auto& [from, low] = m_stops[i - 1];
        const auto& [to, high] = m_stops[i];
        if (t < to) {
            const double part = (t - from) / (to - from);
            return {Decode(Lerp(qRed(low), qRed(high), part) / 255),
                    Decode(Lerp(qGreen(low), qGreen(high), part) / 255),
                    Decode(Lerp(qBlue(low), qBlue(high), part) / 255)};
        }
    }
    return FromRgb(m_stops.back().second);
}

Spot Picture::SpotAt(int x, int y) {
    const double u = (x + 0.5) / kWidth;
    return {u, (y + 0.5) / kHeight, u * kAspect};
}

void Picture::Fill(const std::function<Light(Spot)>& colour) {
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            At(x, y) = colour(SpotAt(x, y));
        }
    }
}

void Picture::Over(const std::function<std::pair<Light, double>(Spot)>& paint) {
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const auto [light, alpha] = paint(SpotAt(x, y));
            if (alpha > 0) {
                At(x, y) = Mix(At(x, y), light, std::min(alpha, 1.0));
            }
        }
    }
}

void Picture::Through(const QImage& mask, const std::function<Light(Spot)>& colour) {
    for (int y = 0; y < kHeight; ++y) {
        const uchar* line = mask.constScanLine(y);
        for (int x = 0; x < kWidth; ++x) {
            if (line[x] > 0) {
                At(x, y) = Mix(At(x, y), colour(SpotAt(x, y)), line[x] / 255.0);
            }
        }
    }
}

void Picture::AddStars(quint64 seed, int count, const std::function<double(Spot)>& keep) {
    constexpr int kReach = 5;
    Random random(seed);
    for (int i = 0; i < count; ++i) {
        const double cx = random.Range(0, kWidth);
        const double cy = random.Range(0, kHeight);
        const double brightness = 0.05 + 0.95 * std::pow(random.Unit(), 3);
        const double radius = 1.5 + 1.3 * brightness * random.Unit();
        const Light tint = Mix(FromRgb(0xFFBFD4FF), FromRgb(0xFFFFE2C4), random.Unit());
        const bool kept = random.Unit() < keep(SpotAt(static_cast<int>(cx), static_cast<int>(cy)));
        for (int y = static_cast<int>(cy) - kReach; kept && y <= cy + kReach; ++y) {
            for (int x = static_cast<int>(cx) - kReach; x <= cx + kReach; ++x) {
                if (x >= 0 && x < kWidth && y >= 0 && y < kHeight) {
                    const double away = std::hypot(x + 0.5 - cx, y + 0.5 - cy) / radius;
                    At(x, y) = At(x, y) + tint * (brightness * std::exp(-away * away));
                }
            }
        }
    }
}

QImage Picture::Finish(quint64 seed, double grain) const {
    // Half of the grain is grey, half differs by channel: a 16-bit colour then hardly ever repeats in a row.
    const Grain grey(seed);
    const std::array<Grain, 3> tint = {Grain(seed + 2000), Grain(seed + 4000), Grain(seed + 6000)};
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    for (int y = 0; y < kHeight; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < kWidth; ++x) {
            const Light& light = m_pixels[static_cast<size_t>(y) * kWidth + x];
            const double luminance = Clamp01(Luminance(light));
            // Near black a 16-bit colour has so few steps that they need more grain to break up.
            const double strength = 0.9 + 0.3 * std::sqrt(luminance) + 0.4 * SmoothStep(0.04, 0, luminance);
            const double deviation = grain * kGrainDeviation * strength * std::sqrt(0.5);
            const double common = grey.At(x, y);
            const auto grained = [&](double value, const Grain& own) {
                return ToByte(Encode(Clamp01(value)) + deviation * (common + own.At(x, y)));
            };
            line[x] = qRgb(grained(light.r, tint[0]), grained(light.g, tint[1]), grained(light.b, tint[2]));
        }
    }
    return image;
}

double Below(double line, double v) {
    return Clamp01((v - line) * Picture::kHeight + 0.5);
}

}  // namespace kivo::artwork
