#pragma once

// What one panel is to show and what it has taken, as one value. What has to be sent is the difference; every
// event (an arrival, a wake-up, a report that was refused, another panel) only makes part of what was
// acknowledged unknown. Plain values and pure functions; PanelSender owns the record of the panel in use and
// guards it.

#include <QByteArray>
#include <QString>
#include <QTime>
#include <array>
#include <chrono>
#include <optional>

#include "compose/screen_state.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "panel/panel_frame.h"
#include "panel/panel_status.h"
#include "panel/retry_schedule.h"

namespace kivo {

// A text as the panel took it: with a whole frame, or later by its own rectangles. Null: not known.
struct AcknowledgedText {
    QString text;
    bool isDrawnByItself = false;
};

struct PanelRecord {
    struct Desired {
        SharedFrame frame;  // null until one was loaded or composed
        // While Black the panel is to show nothing, whatever is applied.
        PanelLight light = PanelLight::Full;
        ItemTexts texts;  // of each item, handed over last
    };
    struct Acknowledged {
        // Null: not known, so nothing may be drawn over it. Without an id: it was whole, but a first
        // chunk that was refused may lie over it, so it equals no desired frame.
        SharedFrame frame;
        std::optional<Orientation> orientation;
        bool isClockShown = false;
        std::array<AcknowledgedText, kLiveValueCount> texts;
    };

    Desired desired;
    Acknowledged acknowledged;

    QByteArray panelKey;  // of the panel that is there or was last; empty: not known, and then any panel
                          // counts as it
    ScreenPresence presence = ScreenPresence::Absent;
    QByteArray path;        // of its data interface
    QByteArray nodeStamp;   // of the node it was seen at last; empty: not known
    int refusedRounds = 0;  // rounds in a row whose clock report was not taken
    // Counts what made texts unknown: a report that was begun before such an event tells nothing after it.
    quint64 epoch = 0;
    RetrySchedule retry;  // of frame and orientation
    bool isFrameOnItsWay = false;
    QTime frameTakenAt;  // local time, for people
    std::chrono::milliseconds frameTakenSince{-1};
};

// From this many rounds on a panel that can be opened but takes nothing is said to be held by another
// program.
constexpr int kRefusedRoundsBeforeTold = 3;

// The frame that the panel is to show now, in its light; null where there is none yet.
SharedFrame DesiredFrame(const PanelRecord& record);

struct OwedReports {
    bool frame = false;
    bool orientation = false;
    bool clock = false;
};
// What is to be sent before any text. While a frame is owed, the orientation is not: it belongs to the frame.
OwedReports WhatIsOwed(const PanelRecord& record);

// Whether this text of an item has to be sent, over the frame that the panel has. The record's only
// gate for texts. Deliberate, fixed: time and date go out whenever they are handed over, changed or
// not, but for a date in a custom layout's centre slot.
bool IsTextOwed(const PanelRecord& record, int item, const QString& text);

// What the item is taken to show now: null where that is not known, the placeholder after a whole frame.
QString FormerText(const PanelRecord& record, int item);

// What the panel has taken, item by item; empty for an item that has no place on it.
ItemTexts ShownTexts(const PanelRecord& record);

// The panel came (back), or the system woke up: texts, clock and orientation are unknown, the frame is still
// there, for the panel keeps it without power. What is owed is tried at once.
void NoteArrival(PanelRecord& record);

// What a look at the panel's node gave. A panel that is there again has arrived, also where only its new node
// tells that it was gone; another one has taken nothing.
void NoteSighting(PanelRecord& record, const PanelSighting& sighting);

// A new frame is desired, and is tried at once.
void SetDesired(PanelRecord& record, const SharedFrame& frame);

// The panel is to have that light from now on. Tried at once.
void SetLight(PanelRecord& record, PanelLight light);

// A frame is about to be sent; then what became of one that was begun at that epoch, with these texts drawn
// on it. True when the panel has it. Where the panel came back in the middle it may have lost the beginning,
// so the frame is not known to be there, whatever was taken.
void NoteFrameBegun(PanelRecord& record);
bool NoteFrame(PanelRecord& record, quint64 epoch, const SharedFrame& frame, const ItemTexts& texts,
               const WholeImageResult& result);
// The panel has this frame with these texts. Every text still counts as changed: each is drawn once more by
// itself.
void ApplyComposedState(PanelRecord& record, const SharedFrame& frame, const ItemTexts& texts);

// What became of reports that were begun at that epoch.
void NoteOrientation(PanelRecord& record, quint64 epoch, Orientation orientation, TransferResult result);
void NoteTimeShow(PanelRecord& record, quint64 epoch, TransferResult result);
void NoteText(PanelRecord& record, quint64 epoch, int item, const QString& text, TransferResult result);
// The clock report that opens each round is how a panel shows that it answers: one that takes it again has
// arrived.
void NoteTimeSync(PanelRecord& record, TransferResult result);

// What window and tray say of it. now: the clock of frameTakenSince.
PanelStatus StatusOf(const PanelRecord& record, std::chrono::milliseconds now);
// How long a frame that was taken is told of.
constexpr std::chrono::seconds kSentIsToldFor{4};

}  // namespace kivo
