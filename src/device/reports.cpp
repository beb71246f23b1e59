#include "device/reports.h"

#include <algorithm>

namespace kivo {

namespace {

constexpr quint8 kMarker = 0x55;
constexpr quint8 kCommandShort = 0xA1;
constexpr quint8 kCommandArea = 0xA2;
constexpr quint8 kCommandFrame = 0xA3;

constexpr quint8 kSubCommandOrientation = 0xF1;
constexpr quint8 kSubCommandTimeSync = 0xF2;
constexpr quint8 kSubCommandTimeShow = 0xF3;

constexpr quint8 kPhaseFirst = 0xF0;
constexpr quint8 kPhaseMiddle = 0xF1;
constexpr quint8 kPhaseLast = 0xF2;

// Offsets in every report.
constexpr std::size_t kReportId = 0;
constexpr std::size_t kMarkerAt = 1;
constexpr std::size_t kCommandAt = 2;
// Area and fill.
constexpr std::size_t kAreaX = 3;
constexpr std::size_t kAreaY = 5;
constexpr std::size_t kAreaWidth = 7;
constexpr std::size_t kAreaHeight = 8;
// Chunk.
constexpr std::size_t kChunkPhase = 3;
constexpr std::size_t kChunkNumber = 4;
constexpr std::size_t kChunkOffset = 5;
constexpr std::size_t kChunkLength = 7;

constexpr quint8 LowByte(int value) {
    return static_cast<quint8>(value & 0xFF);
}

template <std::size_t size>
void PutU16(std::array<quint8, size>& report, std::size_t at, int value) {
    report.at(at) = LowByte(value);
    report.at(at + 1) = LowByte(value >> 8);
}

template <std::size_t size>
void PutAreaHeader(std::array<quint8, size>& report, int x, int y, int width, int height) {
    report.at(kMarkerAt) = kMarker;
    report.at(kCommandAt) = kCommandArea;
    PutU16(report, kAreaX, x);
    PutU16(report, kAreaY, y);
    report.at(kAreaWidth) = LowByte(width);
    report.at(kAreaHeight) = LowByte(height);
}

// Bytes of an area, never more than the limit; 64 bits, for the sides are anybody's numbers.
int AreaBytes(int width, int height, int limit) {
    if (width <= 0 || height <= 0) {
        return 0;
    }
    return static_cast<int>(std::min<qint64>(qint64{width} * height * 2, limit));
}

std::array<quint8, 6> TimeMessage(quint8 subCommand, const QTime& time) {
    return {kMarker,
            kCommandShort,
            subCommand,
            LowByte(time.hour()),
            LowByte(time.minute()),
            LowByte(time.second())};
}

}  // namespace

AreaReport BuildAreaReport(const quint8* pixels, int x, int y, int width, int height) {
    AreaReport report{};
    PutAreaHeader(report, x, y, width, height);
    std::copy_n(pixels, AreaBytes(width, height, kAreaBufferPayload), report.begin() + kReportHeaderBytes);
    return report;
}

ChunkReport BuildChunkReport(const quint8* frame, int number, quint8 reportId) {
    ChunkReport report{};
    const int offset = (number - 1) * kChunkPayload;
    const int length = number == kChunkCount ? kLastChunkPayload : kChunkPayload;
    report.at(kReportId) = reportId;
    report.at(kMarkerAt) = kMarker;
    report.at(kCommandAt) = kCommandFrame;
    report.at(kChunkPhase) = number == 1 ? kPhaseFirst : number == kChunkCount ? kPhaseLast : kPhaseMiddle;
    report.at(kChunkNumber) = LowByte(number);
    // Deliberate: only the low 16 bits, so chunk 17 starts again at 0. The panel counts along by the number.
    PutU16(report, kChunkOffset, offset);
    PutU16(report, kChunkLength, length);
    std::copy_n(frame + offset, length, report.begin() + kReportHeaderBytes);
    return report;
}

CommandReport BuildCommandReport(const quint8* message, int length) {
    CommandReport report{};
    const int fitting = std::clamp(length, 0, static_cast<int>(kCommandReportBytes) - 1);
    std::copy_n(message, fitting, report.begin() + kMarkerAt);
    return report;
}

std::array<quint8, 4> OrientationMessage(int flag) {
    // The panel counts orientations from 1. Through unsigned, for INT_MAX + 1 must not be computed.
    return {kMarker, kCommandShort, kSubCommandOrientation,
            static_cast<quint8>((static_cast<unsigned>(flag) + 1U) & 0xFFU)};
}

std::array<quint8, 6> TimeSyncMessage(const QTime& time) {
    return TimeMessage(kSubCommandTimeSync, time);
}

std::array<quint8, 6> TimeShowMessage(const QTime& time) {
    return TimeMessage(kSubCommandTimeShow, time);
}

FillReport BuildFillReport(int x, int y, int width, int height, quint8 firstByte, quint8 secondByte,
                           quint8 reportId) {
    FillReport report{};
    report.at(kReportId) = reportId;
    PutAreaHeader(report, x, y, width, height);
    constexpr int kRoom = static_cast<int>(kFillReportBytes - kReportHeaderBytes);
    const auto bytes = static_cast<std::size_t>(AreaBytes(width, height, kRoom));
    for (std::size_t i = 0; i < bytes; i += 2) {
        report.at(kReportHeaderBytes + i) = firstByte;
        report.at(kReportHeaderBytes + i + 1) = secondByte;
    }
    return report;
}

ProbeReport BuildProbeReport(quint8 reportId) {
    ProbeReport report{};
    constexpr std::array<quint8, 8> kProbe{kMarker, kCommandArea, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06};
    report.at(kProbeStart) = reportId;
    std::copy(kProbe.begin(), kProbe.end(), report.begin() + kProbeStart + 1);
    return report;
}

std::vector<int> PlanImageParts(int width, int height) {
    if (width <= 0 || height <= 0) {
        return {};
    }
    const qint64 total = qint64{width} * height * 2;
    const qint64 parts = (total + kAreaBufferPayload - 1) / kAreaBufferPayload;
    const int rowsPerPart = static_cast<int>(height / parts);
    const int mostRows = std::max(1, kAreaBufferPayload / 2 / width);

    std::vector<int> rows;
    int left = height;
    // A row wider than a report gives no rows a part: then there is nothing to share out evenly.
    for (qint64 part = 1; part < parts && rowsPerPart > 0; ++part) {
        rows.push_back(rowsPerPart);
        left -= rowsPerPart;
    }
    // The rest can be more than a report holds, for the division was rounded down.
    while (left > 0) {
        rows.push_back(std::min(left, mostRows));
        left -= rows.back();
    }
    return rows;
}

}  // namespace kivo
