#include "device/transfers.h"

#include <QLoggingCategory>
#include <utility>

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(transferLog, "kivo.device")

// The line end belongs to the text.
constexpr char kUnableAreaWithPos[] = "Unable to SendAreaImageWithPos.\n";

}  // namespace

Transfers::Transfers(ScreenSession& session, Clock clock) : m_session(session), m_clock(std::move(clock)) {
    if (!m_clock) {
        m_clock = &QTime::currentTime;
    }
}

Transfers::Opened Transfers::Open() {
    if (m_stopped) {
        return {};
    }
    Opened opened{m_session.OpenForTransfer(), TransferResult::NotThere};
    if (!opened.handle) {
        m_session.DoubtNode();
    }
    return opened;
}

// A node that refuses a report may not be the screen's any more: it is asked before the next one.
TransferResult Transfers::Result(int written) {
    if (written >= 0) {
        return TransferResult::Taken;
    }
    m_session.DoubtNode();
    return TransferResult::Refused;
}

TransferResult Transfers::SendAreaImageWithPos(const quint8* pixels, int x, int y, int width, int height) {
    if (wholeFrameBusy() != 0) {
        return TransferResult::Dropped;
    }
    const Opened opened = Open();
    if (!opened.handle) {
        return opened.otherwise;
    }
    const AreaReport report = BuildAreaReport(pixels, x, y, width, height);

    // A frame may have begun meanwhile; then this update is dropped. The gate keeps one that begins from now
    // on waiting until this report is through, so that no area ever lands between its chunks.
    const std::shared_lock gate(m_areaGateMutex, std::try_to_lock);
    if (!gate.owns_lock() || wholeFrameBusy() != 0) {
        return TransferResult::Dropped;
    }

    const int written = opened.handle->Write(report.data(), kAreaWriteBytes);
    if (written < 0) {
        qCDebug(transferLog, "%s", kUnableAreaWithPos);
    }
    return Result(written);
}

WholeImageResult Transfers::SendWholeImage(const quint8* frame, quint8 reportId) {
    const std::lock_guard upload(m_uploadMutex);
    m_wholeFrameBusy = 1;
    // After the flag: no new area gets in, so the wait is for those already writing only.
    const std::unique_lock gate(m_areaGateMutex);
    const Opened opened = Open();
    const WholeImageResult sent =
        opened.handle ? WriteChunks(*opened.handle, frame, reportId) : WholeImageResult{opened.otherwise, 0};
    m_wholeFrameBusy = 0;
    return sent;
}

WholeImageResult Transfers::WriteChunks(ScreenHandle& handle, const quint8* frame, quint8 reportId) {
    for (int number = 1; number <= kChunkCount; ++number) {
        const ChunkReport report = BuildChunkReport(frame, number, reportId);
        if (m_stopped) {
            return {TransferResult::Dropped, number - 1};
        }
        const TransferResult result = Result(handle.Write(report.data(), report.size()));
        if (result != TransferResult::Taken) {
            return {result, number - 1};
        }
    }
    return {TransferResult::Taken, kChunkCount};
}

TransferResult Transfers::SendRawReport(const quint8* message, int length) {
    const Opened opened = Open();
    if (!opened.handle) {
        return opened.otherwise;
    }
    const CommandReport report = BuildCommandReport(message, length);
    return Result(opened.handle->Write(report.data(), report.size()));
}

TransferResult Transfers::SendOrientation(int flag) {
    const auto message = OrientationMessage(flag);
    return SendRawReport(message.data(), static_cast<int>(message.size()));
}

TransferResult Transfers::SendTimeSync() {
    const auto message = TimeSyncMessage(m_clock());
    return SendRawReport(message.data(), static_cast<int>(message.size()));
}

TransferResult Transfers::SendTimeShow() {
    const auto message = TimeShowMessage(m_clock());
    return SendRawReport(message.data(), static_cast<int>(message.size()));
}

}  // namespace kivo
