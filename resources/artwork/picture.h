#pragma once

#include "noise.h"

#include <QImage>
#include <QRgb>

#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

namespace kivo::artwork {

// A colour in linear light, 0 black, 1 as bright as the screen gets; more is cut when the picture is saved.
struct Light {
    double r = 0;
    double g = 0;
    double b = 0;
};
Light operator+(Light a, Light b);
Light operator*(Light a, double factor);
Light Mix(Light a, Light b, double t);
double Luminance(Light light);
Light FromRgb(QRgb rgb);  // from sRGB bytes; alpha is ignored

// Colours at positions. Between them it goes evenly for the eye (sRGB bytes), not for the light.
class Ramp {
public:
    Ramp(std::initializer_list<std::pair<double, QRgb>> stops) : m_stops(stops) {}
    Light At(double t) const;

private:
    std::vector<std::pair<double, QRgb>> m_stops;
};

// A place in a picture: u and v run 0..1 over width and height, x is the horizontal place in heights, so
// that x and v are of one scale.
struct Spot {
    double u;
    double v;
    double x;
};

// A background while it is made: 1280 x 680 pixels of linear light, four times the panel.
class Picture {
public:
    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 680;
    static constexpr double kAspect = static_cast<double>(kWidth) / kHeight;

    Picture() : m_pixels(static_cast<size_t>(kWidth) * kHeight) {}

    Light& At(int x, int y) { return m_pixels[static_cast<size_t>(y) * kWidth + x]; }
    static Spot SpotAt(int x, int y);

    void Fill(const std::function<Light(Spot)>& colour);
    // Mixes the colour in by the alpha (0..1) that the function gives with it.
    void Over(const std::function<std::pair<Light, double>(Spot)>& paint);
    // The same through a Grayscale8 mask of the picture's size.
    void Through(const QImage& mask, const std::function<Light(Spot)>& colour);
    // Adds at most count round stars where keep() of their place, 0..1, beats a die.
    void AddStars(quint64 seed, int count, const std::function<double(Spot)>& keep);

    // sRGB picture with the grain that keeps slow gradients from stepping on a 16-bit panel. A sky that is
    // slower than others needs more of it.
    QImage Finish(quint64 seed, double grain = 1) const;

private:
    std::vector<Light> m_pixels;
};

// 0 above a skyline at height line (in v), 1 below it, with an edge one pixel wide.
double Below(double line, double v);

}  // namespace kivo::artwork
