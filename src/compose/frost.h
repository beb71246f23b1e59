#pragma once

// What is soft on the panel: frosted glass, under which the picture is blurred, and pictures that are blurred
// as a whole. Pure; any thread.

#include <QImage>
#include <QSize>

namespace kivo {

// Blurs an image (Format_RGB32) by a Gaussian of two and a half of its own pixels. What lies beyond an edge
// counts as that edge. Of a reduced image, enlarged smoothly again, that is as much wider as it was reduced,
// and the same in a frame of any size.
void Blur(QImage& image);

// The picture blurred by a Gaussian of 5 panel pixels, at half of canvas, the panel's size. Enlarged smoothly
// it serves a frame of any size, so a window that shows the panel larger has the panel's very frost. placed:
// Format_RGB32, any size.
QImage BlurredPicture(const QImage& placed, QSize canvas);

// Puts the blurred picture in the place of image where glass is, by its opacity. glass is a mask of the
// image's size, Format_ARGB32_Premultiplied; image is Format_RGB32.
void Frost(QImage& image, const QImage& glass, const QImage& blurred);

// The picture in the panel's colours, Format_RGB16. The 32 and 64 steps of a colour would show as bands in
// what has lost its grain, so they are broken up where soft covers the picture; elsewhere pixels are rounded
// down. soft is a mask like glass, null for none.
QImage PanelPixels(const QImage& picture, const QImage& soft);

// A mask that covers everything.
QImage WholeMask(QSize size);

}  // namespace kivo
