#pragma once

#include <QImage>
#include <QRgb>
#include <QVector>

#include <vector>

namespace kivo::artwork {

// The busy indicator, 128 x 128 window pixels at 1 or 2 device pixels each: a comet runs clockwise round a
// screen, one tick a frame.
constexpr int kProgressDelay = 4;  // hundredths of a second
std::vector<QImage> DrawProgress(int scale);
// The colours it is made of, with enough steps between them for smooth edges.
QVector<QRgb> ProgressPalette();
// Its shape: a disc with a hard edge, for the dialog's mask knows no half-transparency.
QImage DrawProgressMask();

}  // namespace kivo::artwork
