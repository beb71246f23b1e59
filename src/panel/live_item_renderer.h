#pragma once

// What the refresh thread works with: whoever brings clock and texts to the panel.

#include <QString>

namespace kivo {

class LiveItemRenderer {
public:
    LiveItemRenderer() = default;
    LiveItemRenderer(const LiveItemRenderer&) = delete;
    LiveItemRenderer& operator=(const LiveItemRenderer&) = delete;
    virtual ~LiveItemRenderer() = default;

    // Once, before the first round.
    virtual void Prepare() = 0;

    // Opens a round: sets the panel's clock and sends what is owed besides texts. False: the panel is not
    // there, and no text need be handed over in this round.
    virtual bool BeginRound() = 0;

    // Brings the item's newest text to the panel. Whether it was owed, so that something was sent or
    // tried.
    virtual bool RenderLiveItem(const QString& text, int item) = 0;
};

}  // namespace kivo
