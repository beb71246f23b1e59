#pragma once

// Transfers that write on the session's open data handle and leave it open; without one they return at once.
// A failed write gives one line in the debug log. Nothing in the program calls them. Any thread.

#include <QImage>
#include <chrono>
#include <functional>

#include "device/screen_session.h"

namespace kivo {

class ReservedTransfers {
public:
    using Pause = std::function<void(std::chrono::milliseconds)>;

    // The pause is called on the thread of the transfer; an empty one stands for sleeping.
    explicit ReservedTransfers(ScreenSession& session, Pause pause = {});

    // An area at the panel's origin; the pixels as in Transfers::SendAreaImageWithPos.
    void SendAreaImage(const quint8* pixels, int width, int height);
    void SendFillRect(int x, int y, int width, int height, quint8 firstByte, quint8 secondByte,
                      quint8 reportId);
    void SendProbe(int length, quint8 reportId);
    // Sends the image in parts, 100 ms apart, from (x, y) downwards.
    void SendImageChunked(const QImage& image, int x, int y);

    // 0, or -1 for a null handle or a failure.
    static int SendFeature(const SharedScreenHandle& handle, const quint8* data, std::size_t length);

private:
    ScreenSession& m_session;
    Pause m_pause;
};

}  // namespace kivo
