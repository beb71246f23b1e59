#include "compose/frost.h"

#include <QPainter>
#include <QVector>
#include <algorithm>
#include <array>

namespace kivo {

namespace {

// Five pixels averaged three times over, which is nearly a Gaussian: 2.45 pixels. Of a halved picture it is 5
// pixels of the panel, for the halving and the enlarging blur too.
constexpr std::array<quint16, 13> kKernel{1, 3, 6, 10, 15, 18, 19, 18, 15, 10, 6, 3, 1};
constexpr int kTaps = int(kKernel.size());
constexpr int kReach = kTaps / 2;
constexpr int kKernelSum = 125;
constexpr int kChannels = 4;  // of a 32-bit pixel, in the order of its bytes

// Adds weight times count values. A weight has 16 bits as they have: the processor multiplies eight such at
// once.
void Add(quint16* sums, const quint16* values, quint16 weight, int count) {
    for (int k = 0; k < count; ++k) {
        sums[k] = quint16(sums[k] + weight * values[k]);
    }
}
void Add(quint32* sums, const quint16* values, quint16 weight, int count) {
    for (int k = 0; k < count; ++k) {
        sums[k] += quint32(weight) * values[k];
    }
}

// A row's bytes, and on both sides the outermost pixel again.
void WidenRow(const uchar* row, int width, quint16* widened) {
    const int values = width * kChannels;
    const int beyond = kReach * kChannels;
    for (int k = 0; k < beyond; ++k) {
        widened[k] = row[k % kChannels];
        widened[beyond + values + k] = row[values - kChannels + k % kChannels];
    }
    std::copy(row, row + values, widened + beyond);
}

// Sums along the rows, kKernelSum times as large as the bytes; they fit 16 bits.
QVector<quint16> SummedAlongRows(const QImage& image) {
    const int values = image.width() * kChannels;
    QVector<quint16> sums(values * image.height());
    QVector<quint16> widened(values + 2 * kReach * kChannels);
    for (int y = 0; y < image.height(); ++y) {
        WidenRow(image.constScanLine(y), image.width(), widened.data());
        quint16* to = &sums[y * values];
        for (int tap = 0; tap < kTaps; ++tap) {
            Add(to, &widened.at(tap * kChannels), kKernel[size_t(tap)], values);
        }
    }
    return sums;
}

void AverageAlongColumns(const QVector<quint16>& sums, QImage& image) {
    constexpr quint32 kWhole = kKernelSum * kKernelSum;
    const int values = image.width() * kChannels;
    QVector<quint32> column(values);
    for (int y = 0; y < image.height(); ++y) {
        column.fill(kWhole / 2);
        for (int tap = 0; tap < kTaps; ++tap) {
            const int from = qBound(0, y + tap - kReach, image.height() - 1);
            Add(column.data(), &sums.at(from * values), kKernel[size_t(tap)], values);
        }
        uchar* to = image.scanLine(y);
        const quint32* whole = column.constData();
        for (int k = 0; k < values; ++k) {
            to[k] = uchar(whole[k] / kWhole);
        }
    }
}

// The steps of a channel of that many levels: byte to level, in 65536ths, half a level too low. So what is
// broken up is as bright on the whole as what is rounded down beside it.
constexpr int kOne = 65536;
std::array<int, 256> LevelTable(int most) {
    std::array<int, 256> table{};
    for (size_t byte = 0; byte < table.size(); ++byte) {
        table[byte] = qMax(0, int(byte) * most * kOne / 255 - kOne / 2);
    }
    return table;
}

// Numbers of chance, 0 to 65535, the same for the same place at every time: a pattern would be seen as one.
quint32 ChanceAt(int x, int y) {
    quint32 number = quint32(x) * 0x9E3779B1U ^ quint32(y) * 0x85EBCA77U;
    number = (number ^ number >> 15) * 0x2C1B3C6DU;
    number = (number ^ number >> 12) * 0x297A2D39U;
    return number >> 16;
}

}  // namespace

void Blur(QImage& image) {
    const QVector<quint16> sums = SummedAlongRows(image);
    AverageAlongColumns(sums, image);
}

QImage BlurredPicture(const QImage& placed, QSize canvas) {
    QImage small = placed.scaled(canvas / 2, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .convertToFormat(QImage::Format_RGB32);
    Blur(small);
    return small;
}

void Frost(QImage& image, const QImage& glass, const QImage& blurred) {
    QImage frost = blurred.scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    {
        QPainter painter(&frost);
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.drawImage(0, 0, glass);
    }
    QPainter painter(&image);
    painter.drawImage(0, 0, frost);
}

QImage PanelPixels(const QImage& picture, const QImage& soft) {
    static const std::array<int, 256> fiveBits = LevelTable(31);
    static const std::array<int, 256> sixBits = LevelTable(63);
    QImage panel = picture.convertToFormat(QImage::Format_RGB16);
    for (int y = 0; y < soft.height(); ++y) {
        const auto* cover = reinterpret_cast<const QRgb*>(soft.constScanLine(y));
        const auto* from = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        auto* to = reinterpret_cast<quint16*>(panel.scanLine(y));
        for (int x = 0; x < soft.width(); ++x) {
            if (qAlpha(cover[x]) == 0) {
                continue;
            }
            // Green goes the other way, which halves what the eye sees of it.
            const int part = int(ChanceAt(x, y));
            const int red = (fiveBits[size_t(qRed(from[x]))] + part) / kOne;
            const int green = (sixBits[size_t(qGreen(from[x]))] + kOne - 1 - part) / kOne;
            const int blue = (fiveBits[size_t(qBlue(from[x]))] + part) / kOne;
            to[x] = quint16(red << 11 | green << 5 | blue);
        }
    }
    return panel;
}

QImage WholeMask(QSize size) {
    QImage mask(size, QImage::Format_ARGB32_Premultiplied);
    mask.fill(Qt::black);
    return mask;
}

}  // namespace kivo
