#include "device/transfers.h"

#include <QLoggingCategory>
#include <QThread>
#include <QtEndian>
#include <algorithm>
#include <utility>
#include <vector>

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(transferLog, "kivo.device")

// The line end belongs to these texts.
constexpr char kUnableAreaWithPos[] = "Unable to SendAreaImageWithPos.\n";
constexpr char kUnableArea[] = "Unable to SendAreaImage.\n";
constexpr char kUnableFeature[] = "Unable to send a feature report.\n";

// Between the parts of an image, so that the panel keeps up.
constexpr std::chrono::milliseconds kPartPause{100};

void LogIfFailed(int written, const char* text) {
    if (written < 0)
        qCDebug(transferLog, "%s", text);
}

// RGB565 rows of an image, each pixel with its high byte first. The image's memory holds native words and may
// pad its rows.
std::vector<quint8> HighByteFirst(const QImage& rgb16) {
    std::vector<quint8> bytes(static_cast<std::size_t>(rgb16.width()) *
                              static_cast<std::size_t>(rgb16.height()) * 2);
    const qsizetype rowBytes = qsizetype{rgb16.width()} * 2;
    quint8* row = bytes.data();
    for (int y = 0; y < rgb16.height(); ++y, row += rowBytes)
        qToBigEndian<quint16>(rgb16.constScanLine(y), rgb16.width(), row);
    return bytes;
}

}  // namespace

Transfers::Transfers(ScreenSession& session, Clock clock, Pause pause)
    : m_session(session), m_clock(std::move(clock)), m_pause(std::move(pause)) {
    if (!m_clock) {
        m_clock = &QTime::currentTime;
    }
    if (!m_pause) {
        m_pause = [](std::chrono::milliseconds duration) {
            QThread::msleep(static_cast<unsigned long>(duration.count()));
        };
    }
}

Transfers::Opened Transfers::Open() {
    if (m_stopped)
        return {};
    Opened opened{m_session.OpenForTransfer(), TransferResult::NotThere};
    if (!opened.handle)
        m_session.DoubtNode();
    return opened;
}

// A node that refuses a report may not be the screen's any more: it is asked before the next one.
TransferResult Transfers::Result(int written) {
    if (written >= 0)
        return TransferResult::Taken;
    m_session.DoubtNode();
    return TransferResult::Refused;
}

TransferResult Transfers::SendAreaImageWithPos(const quint8* pixels, int x, int y, int width, int height) {
    if (wholeFrameBusy() != 0)
        return TransferResult::Dropped;
    const Opened opened = Open();
    if (!opened.handle)
        return opened.otherwise;
    const AreaReport report = BuildAreaReport(pixels, x, y, width, height);

    // A frame may have begun meanwhile; then this update is dropped. The gate keeps one that begins from now
    // on waiting until this report is through, so that no area ever lands between its chunks.
    const std::shared_lock gate(m_areaGateMutex, std::try_to_lock);
    if (!gate.owns_lock() || wholeFrameBusy() != 0)
        return TransferResult::Dropped;

    const int written = opened.handle->Write(report.data(), kAreaWriteBytes);
    LogIfFailed(written, kUnableAreaWithPos);
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
        if (m_stopped)
            return {TransferResult::Dropped, number - 1};
        const TransferResult result = Result(handle.Write(report.data(), report.size()));
        if (result != TransferResult::Taken)
            return {result, number - 1};
    }
    return {TransferResult::Taken, kChunkCount};
}

TransferResult Transfers::SendRawReport(const quint8* message, int length) {
    const Opened opened = Open();
    if (!opened.handle)
        return opened.otherwise;
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

void Transfers::SendAreaImage(const quint8* pixels, int width, int height) {
    const SharedScreenHandle handle = m_session.dataHandle();
    if (!handle)
        return;
    const AreaReport report = BuildAreaReport(pixels, 0, 0, width, height);
    LogIfFailed(handle->Write(report.data(), kAreaWriteBytes), kUnableArea);
}

void Transfers::SendFillRect(int x, int y, int width, int height, quint8 firstByte, quint8 secondByte,
                             quint8 reportId) {
    const SharedScreenHandle handle = m_session.dataHandle();
    if (!handle)
        return;
    const FillReport report = BuildFillReport(x, y, width, height, firstByte, secondByte, reportId);
    LogIfFailed(handle->Write(report.data(), report.size()), kUnableFeature);
}

void Transfers::SendProbe(int length, quint8 reportId) {
    const SharedScreenHandle handle = m_session.dataHandle();
    if (!handle)
        return;
    const ProbeReport report = BuildProbeReport(reportId);
    const int fitting = std::clamp(length, 0, static_cast<int>(report.size() - kProbeStart));
    LogIfFailed(handle->Write(report.data() + kProbeStart, static_cast<std::size_t>(fitting)),
                kUnableFeature);
}

void Transfers::SendImageChunked(const QImage& image, int x, int y) {
    const QImage rgb16 = image.convertToFormat(QImage::Format_RGB16);
    const std::vector<quint8> pixels = HighByteFirst(rgb16);
    const std::ptrdiff_t rowBytes = std::ptrdiff_t{rgb16.width()} * 2;
    const quint8* next = pixels.data();
    bool first = true;
    for (const int rows : PlanImageParts(rgb16.width(), rgb16.height())) {
        if (!std::exchange(first, false))
            m_pause(kPartPause);
        // Asked for anew each time: the screen may have been closed during the pause.
        const SharedScreenHandle handle = m_session.dataHandle();
        if (!handle)
            return;
        const AreaReport report = BuildAreaReport(next, x, y, rgb16.width(), rows);
        LogIfFailed(handle->Write(report.data(), report.size()), kUnableFeature);
        next += rows * rowBytes;
        y += rows;
    }
}

int Transfers::SendFeature(const SharedScreenHandle& handle, const quint8* data, std::size_t length) {
    if (!handle)
        return -1;
    const int sent = handle->SendFeatureReport(data, length);
    LogIfFailed(sent, kUnableFeature);
    return sent < 0 ? -1 : 0;
}

}  // namespace kivo
