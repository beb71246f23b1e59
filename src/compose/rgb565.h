#pragma once

// Pixels as the panel takes them: RGB565, high byte first, rows top to bottom, no padding, in the panel's
// landscape order. Pure; called by the upload and the refresh thread.

#include <QImage>
#include <QRect>

#include "compose/geometry.h"

namespace kivo {

// Writes canvasRect of image (QImage::Format_RGB16, the canvas of that orientation) to out, which has room
// for CutBytes(canvasRect) bytes. Portrait cuts are turned by 270 degrees on the way, so out holds
// WireRect(canvasRect, orientation). canvasRect must lie inside image.
void WriteWirePixels(const QImage& image, const QRect& canvasRect, Orientation orientation, quint8* out);

// The same as bytes of their own: CutBytes(canvasRect) of them.
QByteArray WirePixels(const QImage& image, const QRect& canvasRect, Orientation orientation);

// Makes each of the pixels dimmer, whatever lies beside it: a cut of a dimmed frame equals the dimmed cut. To
// three eighths, which leaves grey about as grey in five bits as in six.
void DimWirePixels(QByteArray& pixels);

}  // namespace kivo
