#pragma once

// What the panel shows and is to show: the chosen and the applied state, the texts on it, and the two ways to
// bring them there. One object for the life of the program; every function may be called on any thread.
//
// The GUI edits a chosen state. ComposeWholeFrame (upload thread) composes that one and, when the panel has
// taken it, makes it the applied one. RenderLiveItem (refresh thread) draws over the applied one. One mutex
// guards states and texts; it is never held while something is written to the panel.

#include <array>
#include <functional>
#include <memory>
#include <mutex>

#include "compose/background_store.h"
#include "compose/frame_composer.h"
#include "compose/live_item_renderer.h"
#include "compose/live_renderer.h"
#include "compose/screen_state.h"

namespace kivo {

class Transfers;

// What each item is taken to have shown after a whole frame, so that its next text counts as a change. (A
// time of 00:00 equals its placeholder; times are sent whether they changed or not.)
const ItemTexts& PlaceholderTexts();

class LiveScreen final : public LiveItemRenderer {
public:
    // The text of a live value at this moment (item 0..8, empty for none).
    using ValueText = std::function<QString(int item)>;

    // transfers and backgrounds must outlive this object. Registers itself as liveItemRenderer.
    LiveScreen(Transfers& transfers, BackgroundStore& backgrounds, ValueText valueText);
    ~LiveScreen() override;
    Q_DISABLE_COPY(LiveScreen)

    // Both states at once: what was loaded at start.
    void SetLoaded(const ScreenState& state);
    void SetChosen(const ScreenState& state);
    ScreenState Chosen() const;
    ScreenState Applied() const;
    ItemTexts ShownTexts() const;  // that the panel has taken; empty for an item that has no place on it

    // Composes the chosen state with the texts of this moment, saves its background, uploads the frame and,
    // when that went well, makes the state the applied one and tells the panel its orientation. False when
    // the panel did not take the frame; applied state and texts are then as before, and live values go on
    // over the applied background. While it runs, live updates are left out: who keeps a refresh thread
    // running meanwhile makes it forget what it sent.
    bool ComposeWholeFrame();

    // Composes the background again, without sending, where the saved one is missing.
    void RestoreBackground();

    // Draws the item's new text over the applied state and sends the rectangles that changed. An empty text,
    // an item that is not shown and an unchanged one (but time and date) send nothing.
    void RenderLiveItem(const QString& text, int item) override;

    // Takes every item as never drawn: the next text of each is sent in full.
    void ForgetDrawnTexts();

private:
    void KeepAppliedBackground();
    void ApplyComposedState(const ScreenState& state, const QImage& background, const ItemTexts& texts);
    QImage MakeBackground(const ScreenState& state);

    // An update as it was drawn last. Time and date are sent in every round though they change once a minute
    // and once a day, so most rounds find theirs here.
    struct DrawnUpdate {
        std::shared_ptr<const ScreenState> state;
        qint64 background = 0;  // QImage::cacheKey
        bool firstTime = false;
        ItemTexts texts;
        LiveUpdate update;
    };
    static bool StillHolds(const DrawnUpdate& drawn, const DrawnUpdate& asked);

    Transfers& m_transfers;
    BackgroundStore& m_backgrounds;
    const ValueText m_valueText;
    std::mutex m_composeMutex;  // one composing thread at a time
    SkinCache m_skins;

    mutable std::mutex m_mutex;
    bool m_composing = false;
    ScreenState m_chosen;
    std::shared_ptr<const ScreenState> m_applied;
    QImage
        m_keptBackground;  // of the applied state, where the saved one belongs to a frame that was not taken
    QImage m_appliedBackground;
    ItemTexts m_texts;     // handed over last
    ItemTexts m_shown;     // taken by the panel
    ItemTexts m_previous;  // what a new text is compared with; null where the item was never drawn

    std::mutex m_drawnMutex;
    std::array<DrawnUpdate, kLiveValueCount> m_drawn;
};

}  // namespace kivo
