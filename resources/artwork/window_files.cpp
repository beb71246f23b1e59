#include "window_files.h"

#include <QBuffer>
#include <QDataStream>
#include <QHash>
#include <QRect>
#include <QVector>

#include <limits>

namespace kivo::artwork {

namespace {

constexpr int kGifBits = 8;
constexpr int kPaletteSize = 1 << kGifBits;

// GIF's variable-length LZW: codes start one bit longer than a pixel and grow up to twelve bits, then the
// table starts anew. The bytes come in blocks of up to 255 behind their length.
class LzwWriter {
public:
    QByteArray Encode(const QByteArray& pixels) {
        Restart();
        int prefix = static_cast<uchar>(pixels[0]);
        for (int i = 1; i < pixels.size(); ++i) {
            const int pixel = static_cast<uchar>(pixels[i]);
            const int key = prefix * kPaletteSize + pixel;
            const auto known = m_codes.constFind(key);
            if (known != m_codes.constEnd()) {
                prefix = *known;
                continue;
            }
            Put(prefix);
            if (m_next == kLargest) {
                Restart();
            } else {
                m_codes.insert(key, m_next++);
                if (m_next - 1 == 1 << m_bits) {
                    ++m_bits;
                }
            }
            prefix = pixel;
        }
        Put(prefix);
        Put(kEnd);
        while (m_held > 0) {
            Flush();
        }
        return Blocks();
    }

private:
    static constexpr int kClear = kPaletteSize;
    static constexpr int kEnd = kClear + 1;
    static constexpr int kLargest = 4096;

    void Restart() {
        if (m_next != 0) {
            Put(kClear);
        }
        m_codes.clear();
        m_bits = kGifBits + 1;
        if (m_next == 0) {
            Put(kClear);
        }
        m_next = kEnd + 1;
    }
    void Put(int code) {
        m_buffer |= static_cast<quint32>(code) << m_held;
        m_held += m_bits;
        while (m_held >= 8) {
            Flush();
        }
    }
    void Flush() {
        m_bytes.append(static_cast<char>(m_buffer & 0xFF));
        m_buffer >>= 8;
        m_held -= 8;
    }
    QByteArray Blocks() const {
        QByteArray blocks(1, static_cast<char>(kGifBits));
        for (int at = 0; at < m_bytes.size(); at += 255) {
            const QByteArray block = m_bytes.mid(at, 255);
            blocks.append(static_cast<char>(block.size()));
            blocks.append(block);
        }
        blocks.append('\0');
        return blocks;
    }

    QHash<int, int> m_codes;
    int m_next = 0;
    int m_bits = 0;
    int m_held = 0;
    quint32 m_buffer = 0;
    QByteArray m_bytes;
};

int NearestColour(const QVector<QRgb>& palette, QRgb colour) {
    int best = 0;
    int bestAway = std::numeric_limits<int>::max();
    for (int i = 0; i < palette.size(); ++i) {
        const int red = qRed(palette[i]) - qRed(colour);
        const int green = qGreen(palette[i]) - qGreen(colour);
        const int blue = qBlue(palette[i]) - qBlue(colour);
        const int away = red * red + green * green + blue * blue;
        if (away < bestAway) {
            bestAway = away;
            best = i;
        }
    }
    return best;
}

QImage Indexed(const QImage& image, const QVector<QRgb>& palette, QHash<QRgb, int>& nearest) {
    QImage indexed(image.size(), QImage::Format_Indexed8);
    indexed.setColorTable(palette);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb colour = image.pixel(x, y) | 0xFF000000;
            auto found = nearest.find(colour);
            if (found == nearest.end()) {
                found = nearest.insert(colour, NearestColour(palette, colour));
            }
            indexed.setPixel(x, y, static_cast<uint>(*found));
        }
    }
    return indexed;
}

// What differs from the frame before; the whole frame for the first.
QRect Changed(const QImage& before, const QImage& now) {
    if (before.isNull()) {
        return now.rect();
    }
    QRect changed;
    for (int y = 0; y < now.height(); ++y) {
        for (int x = 0; x < now.width(); ++x) {
            if (now.pixelIndex(x, y) != before.pixelIndex(x, y)) {
                changed |= QRect(x, y, 1, 1);
            }
        }
    }
    return changed.isNull() ? QRect(0, 0, 1, 1) : changed;
}

QByteArray PngBytes(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG", 0);
    return bytes;
}

// A bitmap as icon files want it: twice the height, from the foot up, behind it one bit a pixel that a
// reader without alpha takes for the mask.
QByteArray BitmapBytes(const QImage& image) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    const int side = image.width();
    const int maskLine = (side + 31) / 32 * 4;
    out << quint32(40) << qint32(side) << qint32(2 * side) << quint16(1) << quint16(32) << quint32(0)
        << quint32(side * side * 4 + maskLine * side) << qint32(0) << qint32(0) << quint32(0) << quint32(0);
    for (int y = side - 1; y >= 0; --y) {
        for (int x = 0; x < side; ++x) {
            out << quint32(image.pixel(x, y));
        }
    }
    for (int y = side - 1; y >= 0; --y) {
        QByteArray line(maskLine, '\0');
        for (int x = 0; x < side; ++x) {
            if (qAlpha(image.pixel(x, y)) == 0) {
                line[x / 8] = static_cast<char>(line[x / 8] | (0x80 >> x % 8));
            }
        }
        out.writeRawData(line.constData(), line.size());
    }
    return bytes;
}

}  // namespace

QByteArray EncodeGif(const std::vector<QImage>& frames, const QVector<QRgb>& palette, int delay) {
    QByteArray bytes("GIF89a");
    QDataStream out(&bytes, QIODevice::WriteOnly | QIODevice::Append);
    out.setByteOrder(QDataStream::LittleEndian);
    const QSize size = frames.front().size();
    out << quint16(size.width()) << quint16(size.height()) << quint8(0xF0 | (kGifBits - 1)) << quint8(0)
        << quint8(0);
    for (int i = 0; i < kPaletteSize; ++i) {
        const QRgb colour = palette.value(i, 0);
        out << quint8(qRed(colour)) << quint8(qGreen(colour)) << quint8(qBlue(colour));
    }
    // For ever.
    const QByteArray repeat("\x21\xFF\x0BNETSCAPE2.0\x03\x01\x00\x00\x00", 19);
    out.writeRawData(repeat.constData(), repeat.size());
    QHash<QRgb, int> nearest;
    QImage before;
    for (const QImage& frame : frames) {
        const QImage indexed = Indexed(frame, palette, nearest);
        const QRect part = Changed(before, indexed);
        before = indexed;
        QByteArray pixels;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            pixels.append(reinterpret_cast<const char*>(indexed.constScanLine(y)) + part.left(),
                          part.width());
        }
        out << quint8(0x21) << quint8(0xF9) << quint8(4) << quint8(1 << 2) << quint16(delay) << quint8(0)
            << quint8(0);
        out << quint8(0x2C) << quint16(part.left()) << quint16(part.top()) << quint16(part.width())
            << quint16(part.height()) << quint8(0);
        const QByteArray packed = LzwWriter().Encode(pixels);
        out.writeRawData(packed.constData(), packed.size());
    }
    out << quint8(0x3B);
    return bytes;
}

QByteArray EncodeIco(const std::vector<QImage>& pictures) {
    constexpr int kLargestBitmap = 64;
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint16(0) << quint16(1) << quint16(pictures.size());
    std::vector<QByteArray> bodies;
    auto offset = static_cast<quint32>(6 + 16 * pictures.size());
    for (const QImage& picture : pictures) {
        const QImage straight = picture.convertToFormat(QImage::Format_ARGB32);
        bodies.push_back(picture.width() > kLargestBitmap ? PngBytes(straight) : BitmapBytes(straight));
        const auto side = static_cast<quint8>(picture.width() & 0xFF);  // 256 is written as 0
        out << side << side << quint8(0) << quint8(0) << quint16(1) << quint16(32)
            << quint32(bodies.back().size()) << offset;
        offset += static_cast<quint32>(bodies.back().size());
    }
    for (const QByteArray& body : bodies) {
        out.writeRawData(body.constData(), body.size());
    }
    return bytes;
}

}  // namespace kivo::artwork
