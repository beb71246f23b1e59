#include "compose/rgb565.h"

#include <QtEndian>

namespace kivo {

namespace {

const quint16* Row(const QImage& image, int y) {
    return reinterpret_cast<const quint16*>(image.constScanLine(y));
}

void WriteRows(const QImage& image, const QRect& rect, quint8* out) {
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        qToBigEndian<quint16>(Row(image, y) + rect.left(), rect.width(), out);
        out += qsizetype(rect.width()) * 2;
    }
}

// The wire's row r is the canvas column right - r, read from top to bottom. Going down a column touches a new
// cache line at every step, so eight wire rows are written side by side: each line fetched then serves eight
// pixels.
void WriteTurned(const QImage& image, const QRect& rect, quint8* out) {
    constexpr int kBlock = 8;
    const int wireWidth = rect.height();
    const int wireRows = rect.width();
    const qsizetype stride = image.bytesPerLine() / 2;
    const quint16* top = Row(image, rect.top());
    for (int first = 0; first < wireRows; first += kBlock) {
        const int rows = qMin(kBlock, wireRows - first);
        for (int x = 0; x < wireWidth; ++x) {
            const quint16* source = top + x * stride + rect.right() - first;
            quint8* target = out + (qsizetype(first) * wireWidth + x) * 2;
            for (int r = 0; r < rows; ++r) {
                qToBigEndian<quint16>(source[-r], target + qsizetype(r) * wireWidth * 2);
            }
        }
    }
}

}  // namespace

void WriteWirePixels(const QImage& image, const QRect& canvasRect, Orientation orientation, quint8* out) {
    Q_ASSERT(image.format() == QImage::Format_RGB16);
    Q_ASSERT(image.rect().contains(canvasRect));
    if (orientation == Orientation::Landscape) {
        WriteRows(image, canvasRect, out);
    } else {
        WriteTurned(image, canvasRect, out);
    }
}

QByteArray WirePixels(const QImage& image, const QRect& canvasRect, Orientation orientation) {
    QByteArray bytes(CutBytes(canvasRect), Qt::Uninitialized);
    WriteWirePixels(image, canvasRect, orientation, reinterpret_cast<quint8*>(bytes.data()));
    return bytes;
}

void DimWirePixels(QByteArray& pixels) {
    constexpr unsigned kGreenMost = 0x3F;
    constexpr unsigned kOtherMost = 0x1F;
    const auto dimmed = [](unsigned value) { return (value * 3 + 4) / 8; };
    auto* const bytes = reinterpret_cast<quint8*>(pixels.data());
    for (int at = 0; at + 1 < pixels.size(); at += 2) {
        const unsigned pixel = qFromBigEndian<quint16>(bytes + at);
        const unsigned dim =
            dimmed(pixel >> 11U) << 11U | dimmed(pixel >> 5U & kGreenMost) << 5U | dimmed(pixel & kOtherMost);
        qToBigEndian(static_cast<quint16>(dim), bytes + at);
    }
}

}  // namespace kivo
