#pragma once

// The pixels of a picture as a range. Pure; any thread.

#include <QImage>

namespace kivo {

// The pixels of one picture, row after row from its upper left corner. It owns nothing: the picture has to
// outlive it, and must be neither changed in size nor shared meanwhile.
template <typename Pixel>
class PixelRange {
public:
    PixelRange(Pixel* first, qsizetype count) : m_first(first), m_end(first + count) {}

    Pixel* begin() const { return m_first; }
    Pixel* end() const { return m_end; }

private:
    Pixel* m_first;
    Pixel* m_end;
};

// Of an image that was not made over foreign memory and has 32 bits a pixel: its rows have nothing between
// them.
inline PixelRange<QRgb> PixelsOf(QImage& image) {
    return {reinterpret_cast<QRgb*>(image.bits()), qsizetype(image.width()) * image.height()};
}
inline PixelRange<const QRgb> PixelsOf(const QImage& image) {
    return {reinterpret_cast<const QRgb*>(image.constBits()), qsizetype(image.width()) * image.height()};
}

}  // namespace kivo
