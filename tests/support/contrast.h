#pragma once

// How far what is drawn stands off its ground.

#include <QHash>
#include <QImage>
#include <cmath>

namespace kivo::test {

// Relative luminance, 0 to 1.
inline double Light(QRgb color) {
    const auto linear = [](int byte) {
        const double share = byte / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

// Between what fills most of a place and what is furthest from it there. Thin strokes do not always reach
// their full colour, so this is less than the contrast of the colours, never more, but for icons and edges in
// the place.
inline double ContrastIn(const QImage& picture) {
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    QRgb ground = 0;
    for (auto at = counts.cbegin(); at != counts.cend(); ++at) {
        ground = at.value() > counts.value(ground) ? at.key() : ground;
    }
    double most = 1;
    for (auto at = counts.cbegin(); at != counts.cend(); ++at) {
        const double a = Light(at.key()) + 0.05;
        const double b = Light(ground) + 0.05;
        most = qMax(most, qMax(a, b) / qMin(a, b));
    }
    return most;
}

// A place in a widget, in its own coordinates, cut out of a picture of it.
inline QImage CutOut(const QImage& picture, const QRect& place) {
    const double ratio = picture.devicePixelRatio();
    return picture.copy(QRectF(QPointF(place.topLeft()) * ratio, QSizeF(place.size()) * ratio).toRect());
}

}  // namespace kivo::test
