#include "reserved/reserved_transfers.h"

#include <QLoggingCategory>
#include <QThread>
#include <QtEndian>
#include <algorithm>
#include <utility>
#include <vector>

#include "device/reports.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(transferLog, "kivo.device")

// The line end belongs to these texts.
constexpr char kUnableArea[] = "Unable to SendAreaImage.\n";
constexpr char kUnableFeature[] = "Unable to send a feature report.\n";

// Between the parts of an image, so that the panel keeps up.
constexpr std::chrono::milliseconds kPartPause{100};

void LogIfFailed(int written, const char* text) {
    if (written < 0) {
        qCDebug(transferLog, "%s", text);
    }
}

// RGB565 rows of an image, each pixel with its high byte first. The image's memory holds native words and may
// pad its rows.
std::vector<quint8> HighByteFirst(const QImage& rgb16) {
    std::vector<quint8> bytes(static_cast<std::size_t>(rgb16.width()) *
                              static_cast<std::size_t>(rgb16.height()) * 2);
    const qsizetype rowBytes = qsizetype{rgb16.width()} * 2;
    quint8* row = bytes.data();
    for (int y = 0; y < rgb16.height(); ++y, row += rowBytes) {
        qToBigEndian<quint16>(rgb16.constScanLine(y), rgb16.width(), row);
    }
    return bytes;
}

}  // namespace

ReservedTransfers::ReservedTransfers(ScreenSession& session, Pause pause)
    : m_session(session), m_pause(std::move(pause)) {
    if (!m_pause) {
        m_pause = [](std::chrono::milliseconds duration) {
            QThread::msleep(static_cast<unsigned long>(duration.count()));
        };
    }
}

void ReservedTransfers::SendAreaImage(const quint8* pixels, int width, int height) {
    const SharedScreenHandle handle = m_session.dataHandle();
    if (!handle) {
        return;
    }
    const AreaReport report = BuildAreaReport(pixels, 0, 0, width, height);
    LogIfFailed(handle->Write(report.data(), kAreaWriteBytes), kUnableArea);
}

void ReservedTransfers::SendFillRect(int x, int y, int width, int height, quint8 firstByte, quint8 secondByte,
                                     quint8 reportId) {
    const SharedScreenHandle handle = m_session.dataHandle();
    if (!handle) {
        return;
    }
    const FillReport report = BuildFillReport(x, y, width, height, firstByte, secondByte, reportId);
    LogIfFailed(handle->Write(report.data(), report.size()), kUnableFeature);
}

void ReservedTransfers::SendProbe(int length, quint8 reportId) {
    const SharedScreenHandle handle = m_session.dataHandle();
    if (!handle) {
        return;
    }
    const ProbeReport report = BuildProbeReport(reportId);
    const int fitting = std::clamp(length, 0, static_cast<int>(report.size() - kProbeStart));
    LogIfFailed(handle->Write(report.data() + kProbeStart, static_cast<std::size_t>(fitting)),
                kUnableFeature);
}

void ReservedTransfers::SendImageChunked(const QImage& image, int x, int y) {
    const QImage rgb16 = image.convertToFormat(QImage::Format_RGB16);
    const std::vector<quint8> pixels = HighByteFirst(rgb16);
    const std::ptrdiff_t rowBytes = std::ptrdiff_t{rgb16.width()} * 2;
    const quint8* next = pixels.data();
    bool first = true;
    for (const int rows : PlanImageParts(rgb16.width(), rgb16.height())) {
        if (!std::exchange(first, false)) {
            m_pause(kPartPause);
        }
        // Asked for anew each time: the screen may have been closed during the pause.
        const SharedScreenHandle handle = m_session.dataHandle();
        if (!handle) {
            return;
        }
        const AreaReport report = BuildAreaReport(next, x, y, rgb16.width(), rows);
        LogIfFailed(handle->Write(report.data(), report.size()), kUnableFeature);
        next += rows * rowBytes;
        y += rows;
    }
}

int ReservedTransfers::SendFeature(const SharedScreenHandle& handle, const quint8* data, std::size_t length) {
    if (!handle) {
        return -1;
    }
    const int sent = handle->SendFeatureReport(data, length);
    LogIfFailed(sent, kUnableFeature);
    return sent < 0 ? -1 : 0;
}

}  // namespace kivo
