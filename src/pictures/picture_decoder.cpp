#include "pictures/picture_decoder.h"

#include <QIODevice>
#include <QImageReader>
#include <QtEndian>

#include <utility>

#include "pictures/decoded_megabytes.h"

namespace kivo {

namespace {

// Nothing a camera or a screenshot makes is larger; what claims to be would only eat the memory.
constexpr int kLongestSide = 32767;
constexpr qint64 kMostPixels = 60LL * 1000 * 1000;
constexpr qint64 kMostPixelsLineByLine = 260LL * 1000 * 1000;
constexpr int kBytesOfWidestPixel = 8;
constexpr int kMostMegabytes = int((kMostPixels * kBytesOfWidestPixel) >> 20);

namespace jpeg {

constexpr int kMarkerStart = 0xFF;
constexpr int kBaselineFrame = 0xC0;
constexpr int kExtendedFrame = 0xC1;
constexpr int kArithmeticFrame = 0xC9;
constexpr int kLastFrame = 0xCF;
constexpr int kHuffmanTables = 0xC4;
constexpr int kExtension = 0xC8;
constexpr int kArithmeticTables = 0xCC;
constexpr int kImageStart = 0xD8;
constexpr int kScanStart = 0xDA;
// Cameras write some dozens; a file of nothing else is noise.
constexpr int kMostSegments = 10000;

bool IsFrame(int marker) {
    return marker >= kBaselineFrame && marker <= kLastFrame && marker != kHuffmanTables &&
           marker != kExtension && marker != kArithmeticTables;
}

bool IsSequentialFrame(int marker) {
    return marker == kBaselineFrame || marker == kExtendedFrame || marker == kArithmeticFrame;
}

// -1 at the end of the file.
int ReadByte(QIODevice& device) {
    char byte = 0;
    return device.getChar(&byte) ? static_cast<quint8>(byte) : -1;
}

// The next marker, where one has to stand; -1 where none does.
int ReadMarker(QIODevice& device) {
    if (ReadByte(device) != kMarkerStart) {
        return -1;
    }
    int marker = kMarkerStart;
    while (marker == kMarkerStart) {
        marker = ReadByte(device);
    }
    return marker;
}

// The length of the segment's contents, -1 for none.
int ReadLength(QIODevice& device) {
    constexpr int kOwnBytes = 2;
    const QByteArray bytes = device.read(kOwnBytes);
    return bytes.size() < kOwnBytes ? -1 : qFromBigEndian<quint16>(bytes.constData()) - kOwnBytes;
}

// From the start of the file on.
bool ComesLineByLine(QIODevice& device) {
    constexpr int kFrameHeader = 6;  // depth, height, width, number of components
    if (ReadMarker(device) != kImageStart) {
        return false;
    }
    int components = 0;
    for (int segment = 0; segment < kMostSegments; ++segment) {
        const int marker = ReadMarker(device);
        const int length = ReadLength(device);
        const qint64 contents = device.pos();
        if (marker < 0 || length < 1) {
            return false;
        }
        if (marker == kScanStart) {
            return components > 0 && ReadByte(device) == components;
        }
        if (IsFrame(marker)) {
            const QByteArray header = device.read(kFrameHeader);
            if (!IsSequentialFrame(marker) || header.size() < kFrameHeader) {
                return false;
            }
            components = static_cast<quint8>(header.back());
        }
        if (!device.seek(contents + length)) {
            return false;
        }
    }
    return false;
}

}  // namespace jpeg

void AllowLargePictures() {
    static const bool isAllowed = [] {
        AllowDecodedMegabytes(kMostMegabytes);
        return true;
    }();
    Q_UNUSED(isAllowed)
}

}  // namespace

bool IsReasonablePictureSize(QSize size, bool decodesLineByLine) {
    if (size.isEmpty() || size.width() > kLongestSide || size.height() > kLongestSide) {
        return false;
    }
    const qint64 pixels = qint64(size.width()) * size.height();
    return pixels <= (decodesLineByLine ? kMostPixelsLineByLine : kMostPixels);
}

bool IsLineByLineJpeg(QIODevice& device) {
    const qint64 before = device.pos();
    const bool answer = device.seek(0) && jpeg::ComesLineByLine(device);
    return device.seek(before) && answer;
}

DecodedPicture DecodePicture(QIODevice& device, const std::function<QSize(QSize)>& usefulSize) {
    AllowLargePictures();
    QImageReader reader(&device);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    // Only JPEG really decodes fewer pixels; others say they can and scale what they have decoded in full.
    const bool isJpeg = reader.format() == "jpeg";
    // A format that does not tell its size in the header (size is then invalid) is read as it is.
    if (size.isValid()) {
        if (!IsReasonablePictureSize(size, isJpeg && IsLineByLineJpeg(device))) {
            return {
                QImage(),
                QStringLiteral("is too large to be shown (%1 x %2)").arg(size.width()).arg(size.height())};
        }
        if (isJpeg) {
            // It is turned after it has been scaled.
            const bool onItsSide = reader.transformation() & QImageIOHandler::TransformationRotate90;
            const QSize useful = usefulSize(onItsSide ? size.transposed() : size);
            reader.setScaledSize(onItsSide ? useful.transposed() : useful);
        }
    }
    QImage image = reader.read();
    if (image.isNull()) {
        return {QImage(), QStringLiteral("cannot be read (%1)").arg(reader.errorString())};
    }
    return {std::move(image), QString()};
}

}  // namespace kivo
