#pragma once

// One panel: what it shows, and what it keeps without power. The decoder says what a report is; the pixels
// are kept here, because a panel outlives the node it is plugged in at, and may show a frame while it still
// comes.

#include <QByteArray>
#include <QTime>
#include <optional>

#include "device/reports.h"
#include "virtualscreen/panel_decoder.h"

namespace kivo::test {

class SimulatedPanel {
public:
    // showsParts: each chunk is seen as soon as it is there, instead of the whole frame with the last one.
    SimulatedPanel(QByteArray key, char startPixels, bool showsParts)
        : m_key(std::move(key)),
          m_showsParts(showsParts),
          m_pixels(kFrameBytes, startPixels),
          m_wholeFrame(m_pixels),
          m_incoming(m_pixels) {}

    // A report that arrived, report id first.
    PanelReport Take(const quint8* data, std::size_t length) {
        const quint64 framesBefore = m_decoder.State().counts.frames;
        const PanelReport report = m_decoder.Decode(data, length);
        const auto* const payload = reinterpret_cast<const char*>(data + kReportHeaderBytes);
        switch (report.kind) {
            case PanelReportKind::Chunk:
                TakeChunk(report.chunkNumber, payload);
                break;
            case PanelReportKind::Area:
                TakeArea(report.area, payload);
                break;
            case PanelReportKind::Orientation:
                m_orientation = report.orientation;
                break;
            case PanelReportKind::TimeSync:
                m_clock = report.time;
                break;
            case PanelReportKind::TimeShow:
                m_shownTime = report.time;
                break;
            case PanelReportKind::Invalid:
            case PanelReportKind::Fill:
            case PanelReportKind::Probe:
                break;
        }
        if (report.kind == PanelReportKind::Chunk) {
            m_hasWholeFrame = m_decoder.State().counts.frames != framesBefore;
        }
        if (m_decoder.State().counts.frames != framesBefore) {
            m_pixels = m_incoming;
            m_wholeFrame = m_incoming;
        }
        return report;
    }

    // The sender closed its handle: what is incomplete never becomes a frame.
    void AbandonFrame() { m_decoder.AbandonFrame(); }

    // Keeps its last whole frame, as it was when it was complete, and loses all that came after it.
    void LosePower() {
        AbandonFrame();
        m_pixels = m_wholeFrame;
        m_orientation.reset();
        m_clock.reset();
        m_shownTime.reset();
    }

    // The last chunk that it took made a frame whole.
    bool HasWholeFrame() const { return m_hasWholeFrame; }
    const QByteArray& Key() const { return m_key; }
    const QByteArray& Pixels() const { return m_pixels; }                   // in wire order
    std::optional<int> OrientationOnWire() const { return m_orientation; }  // 1 landscape, 2 portrait
    std::optional<QTime> Clock() const { return m_clock; }
    std::optional<QTime> ShownTime() const { return m_shownTime; }

private:
    void TakeChunk(int number, const char* payload) {
        const int offset = (number - 1) * kChunkPayload;
        const int length = number == kChunkCount ? kLastChunkPayload : kChunkPayload;
        m_incoming.replace(offset, length, payload, length);
        if (m_showsParts) {
            m_pixels.replace(offset, length, payload, length);
        }
    }

    void TakeArea(const QRect& area, const char* payload) {
        const int rowBytes = area.width() * 2;
        for (int row = 0; row < area.height(); ++row) {
            const int offset = ((area.top() + row) * kPanelWidth + area.left()) * 2;
            m_pixels.replace(offset, rowBytes, payload + qsizetype{row} * rowBytes, rowBytes);
        }
    }

    const QByteArray m_key;
    const bool m_showsParts;
    PanelDecoder m_decoder;
    QByteArray m_pixels;
    QByteArray m_wholeFrame;
    QByteArray m_incoming;
    bool m_hasWholeFrame = false;
    std::optional<int> m_orientation;
    std::optional<QTime> m_clock;
    std::optional<QTime> m_shownTime;
};

}  // namespace kivo::test
