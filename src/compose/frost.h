#pragma once

// Frosted glass: the picture is blurred where glass lies over it and nowhere else. Pure; any thread.

#include <QImage>
#include <QSize>

namespace kivo {

// The picture blurred by a Gaussian of 5 panel pixels, at half of canvas, the panel's size. What lies beyond
// an edge of the picture counts as that edge. Enlarged smoothly it serves a frame of any size, so a window
// that shows the panel larger has the panel's very frost. placed: Format_RGB32, any size.
QImage BlurredPicture(const QImage& placed, QSize canvas);

// Puts the blurred picture in the place of image where glass is, by its opacity. glass is a mask of the
// image's size, Format_ARGB32_Premultiplied; image is Format_RGB32.
void Frost(QImage& image, const QImage& glass, const QImage& blurred);

// The picture in the panel's colours, Format_RGB16. The 32 and 64 steps of a colour would show as bands in
// what is blurred, so they are broken up under glass; elsewhere pixels are rounded down. glass as above, null
// for none.
QImage PanelPixels(const QImage& picture, const QImage& glass);

}  // namespace kivo
