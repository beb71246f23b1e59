#pragma once

// The one that writes to the panel: keeps its record, and sends what the record says is owed. The workers
// (upload, refresh, clock, light) take turns in it, so that nothing is ever drawn for one picture and written
// over another.
// The GUI thread hands states in and reads; its calls wait for no write.

#include <array>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

#include "compose/frame_composer.h"
#include "compose/live_renderer.h"
#include "panel/live_item_renderer.h"
#include "panel/panel_record.h"
#include "panel/panel_report.h"

namespace kivo {

class FrameStore;
class PanelMemory;

class PanelSender final : public LiveItemRenderer {
public:
    // All that is referred to outlives the sender.
    struct Parts {
        ScreenSession& session;
        Transfers& transfers;
        FrameStore& frames;
        PanelMemory* memory = nullptr;  // null: a panel that forgets with the process
        // The text of a live value at this moment (empty for none), for a whole frame.
        // Called on whichever worker sends that; a text alone is handed in.
        std::function<QString(int item)> valueText;
        // The picture behind a state, which may take its time; nothing when the end has come. Called on the
        // same threads, once for each frame that is composed.
        std::function<std::optional<FramePicture>(const ScreenState& state)> picture = {};
        // A clock that never runs backwards; empty: the system's.
        std::function<std::chrono::milliseconds()> now = {};
        // Called after each change of the record that may be told of, on the thread that made it. The turn
        // may be held then, so it calls only what waits for no write.
        std::function<void()> changed = {};
    };
    explicit PanelSender(Parts parts);

    // --- Any thread; these wait for no write. ---

    // What was loaded at start. Its frame is loaded or composed by Prepare.
    void SetLoaded(const ScreenState& state);
    // What the next ComposeWholeFrame brings to the panel.
    void SetChosen(const ScreenState& state);
    // The state of the frame that the panel has; where that is not known, the one it is to have.
    ScreenState Applied() const;
    // What the panel has taken, item by item; empty for what it does not show.
    ItemTexts ShownTexts() const;
    // Has the next round bring what the panel is to show in this light. A new sender's is full.
    void SetLight(PanelLight light);
    // A screen arrived, or the system woke up.
    void NoteArrival();
    PanelStatus Status() const;
    // What the panel has and is owed, for a report.
    PanelFacts Facts() const;

    // --- Worker threads; they block while the panel takes its time. ---

    // Sets the panel's clock, and so learns whether it is there and answers. True when the panel is there,
    // also where it refused.
    bool SendTimeSync();

    // Makes the frame of the loaded state the desired one, from the saved background where that fits, else
    // composed again; and recalls whether the panel has it. Nothing where a frame was composed already.
    void Prepare() override;

    bool BeginRound() override;
    bool RenderLiveItem(const QString& text, int item) override;

    // Composes the chosen state, makes it the desired frame, saves its background and sends it with the texts
    // of this moment; then orientation, and what applying adds: orientation again and the time show. While
    // the panel is to be black it is sent the black frame instead. False when the panel did not take the
    // frame; it stays owed then. Where the end comes before the picture, nothing is composed, saved or sent.
    bool ComposeWholeFrame();

private:
    // An update as it was drawn last. Time and date are sent in every round though they change once a minute
    // and once a day, so most rounds find theirs here.
    struct DrawnUpdate {
        SharedFrame frame;
        bool firstTime = false;
        ItemTexts texts;
        LiveUpdate update;
    };
    static bool StillHolds(const DrawnUpdate& drawn, const DrawnUpdate& asked);

    // Null when the end has come before its picture.
    SharedFrame ComposeFrameOf(const ScreenState& state);
    // All of these with the turn held.
    bool LookAtPanel();
    bool SyncTime();
    void PayFrameAndOrientation();
    void NoteAttempt(const QByteArray& triedFrameId);
    bool SendFrame(const SharedFrame& frame);
    bool SendOrientation();
    void SendTimeShow();
    const QVector<Cut>& CutsOf(const DrawnUpdate& asked, int item);

    // Runs a change of the record under its lock, then tells of it.
    template <typename Change>
    void ChangeRecord(Change change);
    PanelRecord RecordNow() const;

    Parts m_parts;

    std::mutex m_composeMutex;  // one composing thread at a time; taken before the turn

    std::mutex m_turn;  // whoever writes to the panel; held over drawing, writing and noting
    std::array<DrawnUpdate, kLiveValueCount> m_drawn;

    mutable std::mutex m_recordMutex;  // taken last, held for moments
    ScreenState m_loaded;
    ScreenState m_chosen;
    PanelRecord m_record;
};

}  // namespace kivo
