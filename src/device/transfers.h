#pragma once

// What the program sends to the screen; the screen never answers. Each transfer opens the data path, writes
// and closes. Any function may be called on any thread. With no screen they return quietly. A failed write
// gives one line in the debug log; one of a whole frame or a short command is told by the result alone.

#include <QTime>
#include <atomic>
#include <functional>
#include <mutex>
#include <shared_mutex>

#include "device/reports.h"
#include "device/screen_session.h"

namespace kivo {

// What became of a transfer.
enum class TransferResult {
    Taken,
    Refused,   // the screen was open and did not take it
    NotThere,  // the screen could not be opened
    Dropped,   // not tried, or not to its end: a whole frame is under way, or the program ends
};

struct WholeImageResult {
    TransferResult result = TransferResult::Dropped;
    int chunksTaken = 0;  // 0..kChunkCount
};

class Transfers {
public:
    using Clock = std::function<QTime()>;

    // The clock is called on the thread of the transfer; an empty one stands for the local wall clock.
    explicit Transfers(ScreenSession& session, Clock clock = {});

    // Sends one area: width * height * 2 bytes, RGB565, high byte first, at most kMaxAreaPayload
    // (FitsAreaReport says whether), in the panel's landscape coordinates. Dropped, never queued, while a
    // whole frame is under way.
    TransferResult SendAreaImageWithPos(const quint8* pixels, int x, int y, int width, int height);

    // Sends a frame of kFrameBytes in 27 chunks, without a pause; leaves off at the first that is refused. A
    // second frame waits until the first one is through.
    WholeImageResult SendWholeImage(const quint8* frame, quint8 reportId);

    // Sends `length` bytes of a message (0x55, command, ...) as a short command.
    TransferResult SendRawReport(const quint8* message, int length);

    // Orientation flag of the theme: 0 landscape, 1 portrait.
    TransferResult SendOrientation(int flag);
    // Both read the clock.
    TransferResult SendTimeSync();
    TransferResult SendTimeShow();

    // From now on none of the transfers above that open the data path begins any more, and a whole frame is
    // left at its next chunk: the program ends, and a screen that hangs must not hold it up for longer than
    // the write it is in.
    void StopTransfers() { m_stopped = true; }

    // 1 for the whole duration of SendWholeImage.
    quint8 wholeFrameBusy() const { return m_wholeFrameBusy.load(); }

private:
    // The open screen, or why there is none.
    struct Opened {
        SharedScreenHandle handle;
        TransferResult otherwise = TransferResult::Dropped;
    };
    Opened Open();
    TransferResult Result(int written);
    WholeImageResult WriteChunks(ScreenHandle& handle, const quint8* frame, quint8 reportId);

    ScreenSession& m_session;
    Clock m_clock;
    std::atomic<bool> m_stopped{false};
    std::atomic<quint8> m_wholeFrameBusy{0};
    std::mutex m_uploadMutex;           // one whole frame at a time
    std::shared_mutex m_areaGateMutex;  // shared by area writes, held alone by a whole frame
};

}  // namespace kivo
