#pragma once

// The reports of the screen: pure functions from values to bytes. docs/protocol.md has the byte tables.
//
// Byte 0 of every buffer is the HID report id, byte 1 the marker, byte 2 the command; fields of two bytes
// have the low byte first. Pixels are RGB565 with the high byte first, rows from top to bottom without
// padding.

#include <QTime>
#include <QtGlobal>
#include <array>
#include <cstddef>
#include <vector>

namespace kivo {

constexpr int kPanelWidth = 320;
constexpr int kPanelHeight = 170;
constexpr int kFrameBytes = kPanelWidth * kPanelHeight * 2;

constexpr std::size_t kReportHeaderBytes = 9;

// Area image: the buffer holds one byte more than is written of it.
constexpr std::size_t kAreaBufferBytes = 4097;
constexpr std::size_t kAreaWriteBytes = 4096;
// Bytes of pixels that the buffer has room for, and those that travel when kAreaWriteBytes of it are written.
constexpr int kAreaBufferPayload = 4088;
constexpr int kMaxAreaPayload = 4087;
constexpr int kMaxAreaSide = 255;

constexpr std::size_t kChunkReportBytes = 4105;
constexpr int kChunkPayload = 4096;
constexpr int kChunkCount = 27;
constexpr int kLastChunkPayload = kFrameBytes - (kChunkCount - 1) * kChunkPayload;

constexpr std::size_t kCommandReportBytes = 4097;
constexpr std::size_t kFillReportBytes = 4105;
constexpr std::size_t kProbeBufferBytes = 4097;
// The probe is written from its second byte on.
constexpr std::size_t kProbeStart = 1;

using AreaReport = std::array<quint8, kAreaBufferBytes>;
using ChunkReport = std::array<quint8, kChunkReportBytes>;
using CommandReport = std::array<quint8, kCommandReportBytes>;
using FillReport = std::array<quint8, kFillReportBytes>;
using ProbeReport = std::array<quint8, kProbeBufferBytes>;

// Whether an area of this size fits one report of SendAreaImageWithPos.
constexpr bool FitsAreaReport(int width, int height) {
    return width >= 1 && width <= kMaxAreaSide && height >= 1 && height <= kMaxAreaSide &&
           width * height * 2 <= kMaxAreaPayload;
}

// A: an image at a place. `pixels` has width * height * 2 bytes on the wire's pixel order; what does not fit
// the buffer is left out, and numbers too large for their field lose their upper bits: the caller keeps the
// limits.
AreaReport BuildAreaReport(const quint8* pixels, int x, int y, int width, int height);

// B: chunk `number` (1..27) of a whole frame of kFrameBytes.
ChunkReport BuildChunkReport(const quint8* frame, int number, quint8 reportId);

// C: a short command. The message starts with the marker; at most 4096 bytes of it are taken.
CommandReport BuildCommandReport(const quint8* message, int length);

// Messages for BuildCommandReport.
std::array<quint8, 4> OrientationMessage(int flag);
std::array<quint8, 6> TimeSyncMessage(const QTime& time);
std::array<quint8, 6> TimeShowMessage(const QTime& time);

// D: an area in one colour, given as the two bytes of a pixel. What does not fit the report is left out.
FillReport BuildFillReport(int x, int y, int width, int height, quint8 firstByte, quint8 secondByte,
                           quint8 reportId);

// E: the fixed probe, to be written from kProbeStart on.
ProbeReport BuildProbeReport(quint8 reportId);

// Rows of each part in which an image goes out as several area reports, top to bottom. Empty for an empty
// image. Equal parts, the last one takes the rest; where the rest does not fit a report it is divided
// further.
std::vector<int> PlanImageParts(int width, int height);

}  // namespace kivo
