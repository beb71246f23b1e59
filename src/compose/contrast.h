#pragma once

// How well a colour can be read on what lies behind it. Pure; any thread.

#include <QRgb>
#include <QVector>

namespace kivo {

// The least contrast of text, and the share of its pixels that may have less.
constexpr double kReadableContrast = 4.5;
constexpr double kUnreadableShare = 0.05;

// Relative luminance, 0..1, of an sRGB colour; alpha is ignored.
double Luminance(QRgb color);

// That of the brightest colour that the panel may make of it, whose steps it may go up by one.
double BrightestOnPanel(QRgb color);

// 1 to 21.
double Contrast(double luminance, double otherLuminance);

// Whether ink can be read on these pixels, as bright as the panel shows them: Qt widens a 16-bit pixel to
// bytes that may be a little darker.
bool IsReadable(QRgb ink, const QVector<QRgb>& ground);

// The least opacity, from least to 1, of a plate in that tint over these pixels with which ink, the lighter
// of the two, can be read on it, whatever blending and the panel's colours make of it. 1 where not even that
// is enough.
double LeastStrength(QRgb ink, QRgb tint, const QVector<QRgb>& ground, double least);

}  // namespace kivo
