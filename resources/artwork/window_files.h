#pragma once

#include <QByteArray>
#include <QImage>

#include <vector>

// The two picture formats of the window that Qt cannot write.

namespace kivo::artwork {

// An animation that runs for ever. All frames have one size and no transparency; the palette is 256 colours
// or fewer, every pixel gets the nearest of them. delay is in hundredths of a second a frame.
QByteArray EncodeGif(const std::vector<QImage>& frames, const QVector<QRgb>& palette, int delay);

// An icon file of square pictures with alpha. Up to 64 pixels wide they are plain bitmaps, which everything
// reads; larger ones are PNG inside.
QByteArray EncodeIco(const std::vector<QImage>& pictures);

}  // namespace kivo::artwork
