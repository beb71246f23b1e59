#pragma once

#include <QtGlobal>

#include <array>
#include <random>

namespace kivo::artwork {

// Random numbers that are the same with every standard library: the engine is fixed by the standard, its
// distributions are not, so the mapping is our own.
class Random {
public:
    explicit Random(quint64 seed) : m_engine(seed) {}

    double Unit();                          // 0 <= value < 1
    double Range(double low, double high);  // low <= value < high
    int Below(int count);                   // 0 <= value < count
    double Gauss();                         // mean 0, deviation 1

private:
    std::mt19937_64 m_engine;
};

// Smooth value noise in two dimensions, one feature a unit, period 256 units.
class Noise {
public:
    explicit Noise(quint64 seed);

    double At(double x, double y) const;  // 0..1
    // Fractal sum of octaves, each twice as fine and half as strong; 0..1, mean about .5.
    double Fractal(double x, double y, int octaves)
        const;  // The same without the turn between octaves: keeps a stretch in x or y that the caller gave.
    double Streaks(double x, double y, int octaves) const;
    double Line(double x, int octaves) const { return Fractal(x, 0.37, octaves); }

private:
    static constexpr int kPeriod = 256;
    double Lattice(int x, int y) const;

    std::array<quint8, kPeriod> m_order{};
    std::array<double, kPeriod> m_values{};
};

double Clamp01(double value);
// 0 below low, 1 above high, smooth between; low may be greater than high.
double SmoothStep(double low, double high, double value);
double Lerp(double a, double b, double t);

}  // namespace kivo::artwork
