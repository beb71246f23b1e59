#include "virtualscreen/panel_decoder.h"

#include <QLoggingCategory>
#include <QTransform>
#include <algorithm>
#include <cstring>

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(panelLog, "kivo.panel")

// The panel as its protocol page describes it.
constexpr int kWidth = 320;
constexpr int kHeight = 170;
constexpr std::size_t kFrameSize = std::size_t{kWidth} * kHeight * 2;

constexpr quint8 kMarkerByte = 0x55;
constexpr quint8 kShortCommand = 0xA1;
constexpr quint8 kAreaCommand = 0xA2;
constexpr quint8 kFrameCommand = 0xA3;

constexpr std::size_t kHeaderSize = 9;
constexpr std::size_t kShortCommandSize = 4097;
constexpr std::size_t kAreaSize = 4096;
constexpr std::size_t kAreaSizeOfParts = 4097;  // parts of an image are written with the buffer's last byte
constexpr std::size_t kFillSize = 4105;
constexpr std::size_t kFrameChunkSize = 4105;

constexpr std::size_t kPayloadSize = 4096;
constexpr int kChunks = 27;
constexpr std::size_t kLastPayloadSize = kFrameSize - (kChunks - 1) * kPayloadSize;

constexpr std::array<quint8, 8> kProbeBytes{0x55, 0xA2, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06};

constexpr std::array<const char*, kPanelErrorKinds> kErrorNames{
    "size",         "report id",      "marker",           "command",         "sub-command", "parameter",
    "phase",        "chunk number",   "offset",           "payload length",  "padding",     "area empty",
    "area outside", "area too large", "fill not uniform", "area in a frame", "interface"};

int ReadU16(const quint8* at) {
    return at[0] | (at[1] << 8);
}

bool AllZero(const quint8* from, const quint8* end) {
    static constexpr std::array<quint8, kFrameChunkSize> kZeros{};
    return std::memcmp(from, kZeros.data(), static_cast<std::size_t>(end - from)) == 0;
}

// Pixels on the wire have the high byte first.
quint16 PixelAt(const quint8* at) {
    return static_cast<quint16>((at[0] << 8) | at[1]);
}

void StoreRow(QImage& image, int x, int y, const quint8* pixels, int count) {
    uchar* const row = image.scanLine(y) + std::ptrdiff_t{x} * 2;
    for (int i = 0; i < count; ++i) {
        const quint16 word = PixelAt(pixels + std::ptrdiff_t{i} * 2);
        std::memcpy(row + std::ptrdiff_t{i} * 2, &word, sizeof word);
    }
}

bool IsProbe(const quint8* data, std::size_t length) {
    constexpr std::size_t kProbeEnd = 1 + kProbeBytes.size();
    return length >= kProbeEnd && length <= kAreaSize &&
           std::equal(kProbeBytes.begin(), kProbeBytes.end(), data + 1) &&
           AllZero(data + kProbeEnd, data + length);
}

QString Hex(int value) {
    return QStringLiteral("0x%1").arg(value, 2, 16, QLatin1Char('0'));
}

}  // namespace

QString PanelErrorName(PanelError error) {
    return QLatin1String(kErrorNames.at(static_cast<std::size_t>(error)));
}

QImage PanelState::UprightImage() const {
    constexpr int kPortrait = 2;
    // Portrait pictures were turned by 270 degrees clockwise to lie in the panel's raster.
    return orientation == kPortrait ? image.transformed(QTransform().rotate(90)) : image;
}

PanelDecoder::PanelDecoder() : m_frame(kFrameSize) {
    m_state.image = QImage(kWidth, kHeight, QImage::Format_RGB16);
    m_state.image.fill(Qt::black);
}

PanelReport PanelDecoder::Decode(const quint8* data, std::size_t length) {
    ++m_state.counts.reports;
    m_state.counts.bytes += length;

    PanelReport report;
    constexpr std::size_t kCommandEnd = 3;
    if (length < kCommandEnd) {
        Reject(report, PanelError::Size, QStringLiteral("%1 bytes").arg(length));
        return report;
    }
    if (data[0] != 0) {
        Reject(report, PanelError::ReportId, Hex(data[0]));
    }
    if (data[1] != kMarkerByte) {
        Reject(report, PanelError::Marker, Hex(data[1]));
        return report;
    }
    switch (data[2]) {
        case kShortCommand:
            DecodeCommand(data, length, report);
            break;
        case kAreaCommand:
            DecodeArea(data, length, report);
            break;
        case kFrameCommand:
            DecodeChunk(data, length, report);
            break;
        default:
            Reject(report, PanelError::Command, Hex(data[2]));
            break;
    }
    return report;
}

void PanelDecoder::DecodeCommand(const quint8* data, std::size_t length, PanelReport& report) {
    if (length != kShortCommandSize) {
        return Reject(report, PanelError::Size, QStringLiteral("short command of %1 bytes").arg(length));
    }

    constexpr std::size_t kParameters = 4;
    const quint8* const parameters = data + kParameters;
    std::size_t parameterBytes = 0;
    PanelReportKind kind = PanelReportKind::Invalid;
    switch (data[3]) {
        case 0xF1:
            kind = PanelReportKind::Orientation;
            parameterBytes = 1;
            break;
        case 0xF2:
        case 0xF3:
            kind = data[3] == 0xF2 ? PanelReportKind::TimeSync : PanelReportKind::TimeShow;
            parameterBytes = 3;
            break;
        default:
            return Reject(report, PanelError::SubCommand, Hex(data[3]));
    }

    if (kind == PanelReportKind::Orientation) {
        report.orientation = parameters[0];
        if (report.orientation != 1 && report.orientation != 2) {
            Reject(report, PanelError::Parameter, QStringLiteral("orientation %1").arg(report.orientation));
        }
    } else {
        report.time = QTime(parameters[0], parameters[1], parameters[2]);
        if (!report.time.isValid()) {
            Reject(report, PanelError::Parameter,
                   QStringLiteral("time %1:%2:%3").arg(parameters[0]).arg(parameters[1]).arg(parameters[2]));
        }
    }
    if (!AllZero(parameters + parameterBytes, data + length)) {
        Reject(report, PanelError::Padding, QStringLiteral("short command %1").arg(Hex(data[3])));
    }
    if (!report.errors.empty()) {
        return;
    }

    report.kind = kind;
    ++m_state.counts.commands;
    if (kind == PanelReportKind::Orientation) {
        m_state.orientation = report.orientation;
    } else if (kind == PanelReportKind::TimeSync) {
        m_state.clock = report.time;
    } else {
        m_state.shownTime = report.time;
    }
}

void PanelDecoder::DecodeArea(const quint8* data, std::size_t length, PanelReport& report) {
    if (IsProbe(data, length)) {
        if (!report.errors.empty()) {
            return;
        }
        report.kind = PanelReportKind::Probe;
        ++m_state.counts.probes;
        return;
    }
    if (length != kAreaSize && length != kAreaSizeOfParts && length != kFillSize) {
        return Reject(report, PanelError::Size, QStringLiteral("area of %1 bytes").arg(length));
    }

    const QRect area(ReadU16(data + 3), ReadU16(data + 5), data[7], data[8]);
    const QString where =
        QStringLiteral("%1,%2 %3x%4").arg(area.x()).arg(area.y()).arg(area.width()).arg(area.height());
    if (area.isEmpty()) {
        return Reject(report, PanelError::AreaEmpty, where);
    }
    if (!QRect(0, 0, kWidth, kHeight).contains(area)) {
        Reject(report, PanelError::AreaOutside, where);
    }
    const std::size_t pixelBytes = std::size_t{data[7]} * data[8] * 2;
    if (pixelBytes > length - kHeaderSize) {
        return Reject(report, PanelError::AreaTooLarge, where);
    }
    if (!AllZero(data + kHeaderSize + pixelBytes, data + length)) {
        Reject(report, PanelError::Padding, QStringLiteral("area ") + where);
    }
    const quint8* const pixels = data + kHeaderSize;
    // Each byte equals the one two before it.
    if (length == kFillSize && !std::equal(pixels + 2, pixels + pixelBytes, pixels)) {
        Reject(report, PanelError::FillNotUniform, where);
    }
    if (FrameInProgress()) {
        Reject(report, PanelError::AreaInFrame,
               QStringLiteral("%1 before chunk %2").arg(where).arg(m_nextChunk));
    }
    if (!report.errors.empty()) {
        return;
    }

    report.kind = length == kFillSize ? PanelReportKind::Fill : PanelReportKind::Area;
    report.area = area;
    report.changedPicture = true;
    ++m_state.counts.areas;
    DrawArea(pixels, area);
}

void PanelDecoder::DecodeChunk(const quint8* data, std::size_t length, PanelReport& report) {
    if (length != kFrameChunkSize) {
        return Reject(report, PanelError::Size, QStringLiteral("chunk of %1 bytes").arg(length));
    }

    constexpr quint8 kFirst = 0xF0;
    constexpr quint8 kMiddle = 0xF1;
    constexpr quint8 kLast = 0xF2;
    const quint8 phase = data[3];
    const int number = data[4];
    report.chunkNumber = number;
    if (phase == kFirst && number == 1) {
        // What was on its way is forgotten: the sender begins again.
        m_frameSpoiled = false;
    } else if (number != std::max(m_nextChunk, 1)) {
        Reject(report, PanelError::ChunkNumber,
               QStringLiteral("%1 instead of %2").arg(number).arg(std::max(m_nextChunk, 1)));
        m_frameSpoiled = true;
        m_nextChunk = number >= 1 && number < kChunks ? number + 1 : 0;
        return;
    }

    const quint8 expectedPhase = number == 1 ? kFirst : number == kChunks ? kLast : kMiddle;
    if (phase != expectedPhase) {
        Reject(report, PanelError::Phase, QStringLiteral("%1 in chunk %2").arg(Hex(phase)).arg(number));
    }
    const std::size_t offset = static_cast<std::size_t>(number - 1) * kPayloadSize;
    if (ReadU16(data + 5) != static_cast<int>(offset % 65536)) {
        Reject(report, PanelError::Offset,
               QStringLiteral("%1 in chunk %2").arg(ReadU16(data + 5)).arg(number));
    }
    const std::size_t payload = number == kChunks ? kLastPayloadSize : kPayloadSize;
    if (ReadU16(data + 7) != static_cast<int>(payload)) {
        Reject(report, PanelError::PayloadLength,
               QStringLiteral("%1 in chunk %2").arg(ReadU16(data + 7)).arg(number));
    }
    if (!AllZero(data + kHeaderSize + payload, data + length)) {
        Reject(report, PanelError::Padding, QStringLiteral("chunk %1").arg(number));
    }

    m_nextChunk = number == kChunks ? 0 : number + 1;
    if (!report.errors.empty()) {
        m_frameSpoiled = true;
        return;
    }
    report.kind = PanelReportKind::Chunk;
    std::copy_n(data + kHeaderSize, payload, m_frame.begin() + static_cast<std::ptrdiff_t>(offset));
    if (number == kChunks && !m_frameSpoiled) {
        report.changedPicture = true;
        ShowFrame();
    }
}

void PanelDecoder::AbandonFrame() {
    m_nextChunk = 0;
    m_frameSpoiled = false;
}

void PanelDecoder::DrawArea(const quint8* pixels, const QRect& area) {
    const int rowBytes = area.width() * 2;
    for (int row = 0; row < area.height(); ++row) {
        StoreRow(m_state.image, area.x(), area.y() + row, pixels + std::ptrdiff_t{row} * rowBytes,
                 area.width());
    }
}

void PanelDecoder::ShowFrame() {
    ++m_state.counts.frames;
    DrawArea(m_frame.data(), QRect(0, 0, kWidth, kHeight));
}

void PanelDecoder::Count(PanelError error, const QString& detail) {
    ++m_state.counts.errors;
    ++m_state.counts.errorsByKind.at(static_cast<std::size_t>(error));
    qCWarning(panelLog, "Report refused, %s: %s", qUtf8Printable(PanelErrorName(error)),
              qUtf8Printable(detail));
}

void PanelDecoder::Reject(PanelReport& report, PanelError error, const QString& detail) {
    report.errors.push_back(error);
    Count(error, detail);
}

}  // namespace kivo
