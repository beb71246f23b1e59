#include "compose/frost.h"

#include <QPainter>
#include <QVector>
#include <algorithm>
#include <array>

namespace kivo {

namespace {

// Five pixels averaged three times over, which is nearly a Gaussian: 2.45 pixels. Of a halved picture it is 5
// pixels of the panel, for the halving and the enlarging blur too. A weight has 16 bits as what it weighs:
// the processor multiplies eight such at once.
constexpr std::array<quint16, 13> kKernel{1, 3, 6, 10, 15, 18, 19, 18, 15, 10, 6, 3, 1};
constexpr int kTaps = int(kKernel.size());
constexpr int kReach = kTaps / 2;
constexpr int kKernelSum = 125;
constexpr int kChannels = 4;                 // of a 32-bit pixel, in the order of its bytes
constexpr int kBeyond = kReach * kChannels;  // values that a sum takes in on each side of its own

// A row's bytes, and on both sides the outermost pixel again.
void WidenRow(const uchar* row, int width, quint16* widened) {
    const int values = width * kChannels;
    for (int k = 0; k < kBeyond; ++k) {
        widened[k] = row[k % kChannels];
        widened[kBeyond + values + k] = row[values - kChannels + k % kChannels];
    }
    std::copy(row, row + values, widened + kBeyond);
}

// Sums along the rows, kKernelSum times as large as the bytes; they fit 16 bits. The kernel is the same from
// both ends, so two values share a weight, here and below.
QVector<quint16> SummedAlongRows(const QImage& image) {
    const int values = image.width() * kChannels;
    QVector<quint16> sums(values * image.height());
    QVector<quint16> widened(values + 2 * kBeyond);
    quint16* to = sums.data();
    for (int y = 0; y < image.height(); ++y) {
        WidenRow(image.constScanLine(y), image.width(), widened.data());
        const quint16* from = widened.constData();
        for (int k = 0; k < values; ++k, ++from, ++to) {
            auto sum = quint16(kKernel[kReach] * from[kBeyond]);
            for (int tap = 0; tap < kReach; ++tap) {
                const int away = (kReach - tap) * kChannels;
                const auto both = quint16(from[kBeyond - away] + from[kBeyond + away]);
                sum = quint16(sum + kKernel[size_t(tap)] * both);
            }
            *to = sum;
        }
    }
    return sums;
}

void AverageAlongColumns(const QVector<quint16>& sums, QImage& image) {
    constexpr quint32 kWhole = kKernelSum * kKernelSum;
    const int values = image.width() * kChannels;
    const int last = image.height() - 1;
    QVector<quint32> column(values);
    for (int y = 0; y <= last; ++y) {
        std::array<const quint16*, kTaps> rows{};
        for (int tap = 0; tap < kTaps; ++tap) {
            rows[size_t(tap)] = &sums.at(qBound(0, y + tap - kReach, last) * values);
        }
        quint32* whole = column.data();
        for (int k = 0; k < values; ++k) {
            whole[k] = kWhole / 2 + quint32(kKernel[kReach]) * rows[kReach][k];
            for (size_t tap = 0; tap < kReach; ++tap) {
                const auto both = quint16(rows[tap][k] + rows[kTaps - 1 - tap][k]);  // two sums fit, too
                whole[k] += quint32(kKernel[tap]) * both;
            }
        }
        uchar* to = image.scanLine(y);
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
    const int width = soft.width();
    for (int y = 0; y < soft.height(); ++y) {
        const auto* cover = reinterpret_cast<const QRgb*>(soft.constScanLine(y));
        const auto* from = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        auto* to = reinterpret_cast<quint16*>(panel.scanLine(y));
        for (int x = 0; x < width; ++x) {
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
