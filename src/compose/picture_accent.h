#pragma once

// An accent taken from the picture, in the place of a theme's own. Pure; any thread.

#include <QImage>
#include <QRgb>
#include <optional>

namespace kivo {

// The least contrast of an accent to the glass that its icons stand on.
constexpr double kSeenContrast = 3;

// The colour of a picture's strongest hue, made as clear as the themes' accents are; none where the picture
// is all but grey. The same hue for a picture that is merely darker. picture: any size, Format_RGB32.
std::optional<QRgb> StrongestHue(const QImage& picture);

// How bright a picture (Format_RGB32) is on the panel through glass of its size (Format_ARGB32_Premultiplied)
// where that is half opaque at least: the luminance, 0..1, that one pixel in twenty is above. 0 where it
// never is.
double LightThrough(const QImage& glass, const QImage& picture);

// The colour, lightened within its hue until it stands out from that luminance on the panel, and from dark
// grey in any case; white where nothing less does.
QRgb LiftedAccent(QRgb color, double luminance);

// Puts one accent in the place of another in a drawing of nothing but white and that accent, in any
// opacity and mixture. Format_ARGB32_Premultiplied.
void Recolor(QImage& drawing, QRgb from, QRgb to);

}  // namespace kivo
