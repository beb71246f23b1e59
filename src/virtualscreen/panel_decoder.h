#pragma once

// The panel's side of the wire: takes output reports, checks every byte of them and shows what they say.
// Written from docs/protocol.md alone and on purpose without a line of the sending side: it is the second
// opinion on the format. Not guarded; VirtualHidApi and the log tool call it from one thread at a time.

#include <QImage>
#include <QString>
#include <QTime>
#include <QtGlobal>
#include <array>
#include <cstddef>
#include <optional>
#include <vector>

namespace kivo {

enum class PanelError {
    Size,            // the report has a length that its command does not have
    ReportId,        // byte 0 is not 0
    Marker,          // byte 1 is not 0x55
    Command,         // byte 2 is no command
    SubCommand,      // byte 3 of a short command is none
    Parameter,       // an orientation or a time that does not exist
    Phase,           // first, middle or last does not suit the chunk number
    ChunkNumber,     // not the chunk that comes next
    Offset,          // not the chunk's offset modulo 65536
    PayloadLength,   // not the chunk's length
    Padding,         // a byte behind the content is not zero
    AreaEmpty,       // width or height 0
    AreaOutside,     // reaches over the panel's edge
    AreaTooLarge,    // more pixels than the report carries
    FillNotUniform,  // a report of the fill's length with two colours
    AreaInFrame,     // an area between the chunks of a frame
    Interface,       // written to the control interface
};
constexpr int kPanelErrorKinds = 17;

QString PanelErrorName(PanelError error);

struct PanelCounts {
    quint64 reports = 0;
    quint64 bytes = 0;  // report ids included
    quint64 frames = 0;
    quint64 areas = 0;
    quint64 commands = 0;
    quint64 probes = 0;
    quint64 errors = 0;
    std::array<quint64, kPanelErrorKinds> errorsByKind{};

    quint64 Errors(PanelError kind) const { return errorsByKind.at(static_cast<std::size_t>(kind)); }
};

struct PanelState {
    QImage image;                    // 320 x 170, RGB16, the panel's own landscape raster
    std::optional<int> orientation;  // as on the wire: 1 landscape, 2 portrait
    std::optional<QTime> clock;      // last time it was set to
    std::optional<QTime> shownTime;  // last time it was asked to show
    PanelCounts counts;

    // The picture as a person looks at it: turned upright (170 x 320) when the orientation is 2.
    QImage UprightImage() const;
};

// What one report was; for summaries.
enum class PanelReportKind { Invalid, Area, Fill, Chunk, Orientation, TimeSync, TimeShow, Probe };

struct PanelReport {
    PanelReportKind kind = PanelReportKind::Invalid;
    std::vector<PanelError> errors;  // empty: accepted
    int chunkNumber = 0;             // Chunk
    QRect area;                      // Area, Fill
    int orientation = 0;             // Orientation
    QTime time;                      // TimeSync, TimeShow
    bool changedPicture = false;
};

class PanelDecoder {
public:
    PanelDecoder();

    // One output report as it was handed to the write call, report id first. A report with an error changes
    // nothing but the counts, and each error gives one line in the log.
    PanelReport Decode(const quint8* data, std::size_t length);

    // The sender gave up, or the cable was pulled: a frame that is not complete is forgotten, without an
    // error.
    void AbandonFrame();

    // Counts an error that shows outside the bytes.
    void Count(PanelError error, const QString& detail);

    bool FrameInProgress() const { return m_nextChunk != 0; }
    const PanelState& State() const { return m_state; }

private:
    void DecodeArea(const quint8* data, std::size_t length, PanelReport& report);
    void DecodeChunk(const quint8* data, std::size_t length, PanelReport& report);
    void DecodeCommand(const quint8* data, std::size_t length, PanelReport& report);
    void DrawArea(const quint8* pixels, const QRect& area);
    void ShowFrame();
    void Reject(PanelReport& report, PanelError error, const QString& detail);

    PanelState m_state;
    std::vector<quint8> m_frame;  // the frame that is on its way, as bytes
    int m_nextChunk = 0;          // 0: no frame on its way
    bool m_frameSpoiled = false;  // a chunk of it was wrong: it is not shown
};

}  // namespace kivo
