#pragma once

// The door through which the refresh thread reaches whatever shows the live values. The owner registers
// itself while it lives; without one, values are still read and remembered but nothing is drawn.

#include <QString>
#include <atomic>

namespace kivo {

class LiveItemRenderer {
public:
    virtual ~LiveItemRenderer() = default;

    // Draws the item's new text and sends what changed. Called on the refresh thread.
    virtual void RenderLiveItem(const QString& text, int item) = 0;
};

// The one that is live, or null. Set and cleared by its owner on the GUI thread; the owner outlives the
// threads that read it, or clears it and waits for them.
extern std::atomic<LiveItemRenderer*> liveItemRenderer;

}  // namespace kivo
