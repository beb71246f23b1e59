#pragma once

// Contrast as people measure it, by the formula of its definition.

#include <QRgb>
#include <QtGlobal>
#include <cmath>

namespace kivo::test {

inline double LightOfByte(double byte) {
    const double share = byte / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
}

inline double Light(QRgb color) {
    return 0.2126 * LightOfByte(qRed(color)) + 0.7152 * LightOfByte(qGreen(color)) +
           0.0722 * LightOfByte(qBlue(color));
}

inline double ContrastOf(double a, double b) {
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

}  // namespace kivo::test
