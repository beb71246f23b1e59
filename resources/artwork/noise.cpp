#include "noise.h"

#include <algorithm>
#include <cmath>

namespace kivo::artwork {

double Random::Unit() {
    // 53 bits are what a double holds.
    return static_cast<double>(m_engine() >> 11) * 0x1.0p-53;
}

double Random::Range(double low, double high) {
    return low + (high - low) * Unit();
}

int Random::Below(int count) {
    return static_cast<int>(Unit() * count);
}

double Random::Gauss() {
    constexpr double kTwoPi = 6.283185307179586;
    const double radius = std::sqrt(-2.0 * std::log(1.0 - Unit()));
    return radius * std::cos(kTwoPi * Unit());
}

Noise::Noise(quint64 seed) {
    Random random(seed);
    for (int i = 0; i < kPeriod; ++i) {
        m_order[i] = static_cast<quint8>(i);
        m_values[i] = random.Unit();
    }
    for (int i = kPeriod - 1; i > 0; --i) {
        std::swap(m_order[i], m_order[random.Below(i + 1)]);
    }
}

double Noise::Lattice(int x, int y) const {
    const int row = m_order[y & (kPeriod - 1)];
    return m_values[m_order[(x + row) & (kPeriod - 1)]];
}

double Noise::At(double x, double y) const {
    const double floorX = std::floor(x);
    const double floorY = std::floor(y);
    const int cellX = static_cast<int>(floorX);
    const int cellY = static_cast<int>(floorY);
    const auto fade = [](double t) { return t * t * t * (t * (t * 6 - 15) + 10); };
    const double fx = fade(x - floorX);
    const double fy = fade(y - floorY);
    const double top = Lerp(Lattice(cellX, cellY), Lattice(cellX + 1, cellY), fx);
    const double foot = Lerp(Lattice(cellX, cellY + 1), Lattice(cellX + 1, cellY + 1), fx);
    return Lerp(top, foot, fy);
}

double Noise::Fractal(double x, double y, int octaves) const {
    double sum = 0;
    double weight = 0;
    double strength = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += strength * At(x, y);
        weight += strength;
        strength *= 0.5;
        // A little more than doubled, turned and moved, so that the lattices of the octaves never line up.
        const double turnedX = 2.02 * (0.8 * x - 0.6 * y) + 17.3;
        y = 2.02 * (0.6 * x + 0.8 * y) + 5.9;
        x = turnedX;
    }
    return sum / weight;
}

double Noise::Streaks(double x, double y, int octaves) const {
    double sum = 0;
    double weight = 0;
    double strength = 1;
    for (int i = 0; i < octaves; ++i) {
        sum += strength * At(x, y);
        weight += strength;
        strength *= 0.5;
        x = 2.02 * x + 17.3;
        y = 2.02 * y + 5.9;
    }
    return sum / weight;
}

double Clamp01(double value) {
    return std::clamp(value, 0.0, 1.0);
}

double SmoothStep(double low, double high, double value) {
    const double t = Clamp01((value - low) / (high - low));
    return t * t * (3 - 2 * t);
}

double Lerp(double a, double b, double t) {
    return a + (b - a) * t;
}

}  // namespace kivo::artwork
