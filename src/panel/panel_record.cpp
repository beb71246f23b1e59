#include "panel/panel_record.h"

#include "compose/live_renderer.h"
#include "panel/lit_frame.h"

namespace kivo {

namespace {

// Nothing but the frame is known to be as it was.
void ForgetAllButFrame(PanelRecord& record) {
    const SharedFrame frame = record.acknowledged.frame;
    record.acknowledged = {};
    record.acknowledged.frame = frame;
    ++record.epoch;
}

void ForgetAll(PanelRecord& record) {
    record.acknowledged = {};
    ++record.epoch;
}

// A chunk whose write failed may have arrived all the same, as one does that took too long. Texts go on over
// the picture that was there; without an id it is no frame that was desired, so the next one is sent, though
// it may be the same again.
void DoubtFrame(PanelRecord& record) {
    if (record.acknowledged.frame) {
        PanelFrame doubted = *record.acknowledged.frame;
        doubted.id.clear();
        record.acknowledged.frame = std::make_shared<const PanelFrame>(std::move(doubted));
    }
}

// A report that was dropped was never begun, so it says nothing.
bool TellsSomething(const PanelRecord& record, quint64 epoch, TransferResult result) {
    return epoch == record.epoch && result != TransferResult::Dropped;
}

}  // namespace

SharedFrame DesiredFrame(const PanelRecord& record) {
    return InLight(record.desired.frame, record.desired.light);
}

OwedReports WhatIsOwed(const PanelRecord& record) {
    OwedReports owed;
    const PanelRecord::Acknowledged& taken = record.acknowledged;
    const QByteArray desired = IdInLight(record.desired.frame, record.desired.light);
    owed.frame = !desired.isEmpty() && (!taken.frame || taken.frame->id != desired);
    owed.orientation = !owed.frame && taken.frame && taken.orientation != taken.frame->state.orientation;
    owed.clock = !taken.isClockShown;
    return owed;
}

bool IsTextOwed(const PanelRecord& record, int item, const QString& text) {
    if (text.isEmpty() || !record.acknowledged.frame) {
        return false;
    }
    const AcknowledgedText& shown = record.acknowledged.texts[size_t(item)];
    const bool changed = !shown.isDrawnByItself || shown.text != text;
    return (changed || item == Time || item == Date) &&
           IsUpdateSent(record.acknowledged.frame->state, item, changed);
}

QString FormerText(const PanelRecord& record, int item) {
    const AcknowledgedText& shown = record.acknowledged.texts[size_t(item)];
    return shown.text.isNull() || shown.isDrawnByItself ? shown.text : PlaceholderTexts()[size_t(item)];
}

ItemTexts ShownTexts(const PanelRecord& record) {
    ItemTexts texts;
    const SharedFrame& frame = record.acknowledged.frame;
    for (int item = 0; frame && item < kLiveValueCount; ++item) {
        if (HasPlace(frame->state, item)) {
            texts[size_t(item)] = record.acknowledged.texts[size_t(item)].text;
        }
    }
    return texts;
}

void NoteArrival(PanelRecord& record) {
    ForgetAllButFrame(record);
    record.refusedRounds = 0;
    record.retry = {};
}

void NoteSighting(PanelRecord& record, const PanelSighting& sighting) {
    const bool wasPresent = record.presence == ScreenPresence::Present;
    record.presence = sighting.presence;
    record.path = sighting.path;
    if (sighting.presence != ScreenPresence::Present) {
        return;
    }
    const bool isNewNode = record.nodeStamp != sighting.stamp;
    record.nodeStamp = sighting.stamp;
    const bool isAnother =
        !record.panelKey.isEmpty() && !sighting.panelKey.isEmpty() && record.panelKey != sighting.panelKey;
    if (!sighting.panelKey.isEmpty()) {
        record.panelKey = sighting.panelKey;
    }
    if (isAnother) {
        ForgetAll(record);
    }
    if (!wasPresent || isNewNode || isAnother) {
        NoteArrival(record);
    }
}

void SetDesired(PanelRecord& record, const SharedFrame& frame) {
    record.desired.frame = frame;
    record.retry = {};
}

void SetLight(PanelRecord& record, PanelLight light) {
    record.desired.light = light;
    record.retry = {};
}

void NoteFrameBegun(PanelRecord& record) {
    record.isFrameOnItsWay = true;
}

bool NoteFrame(PanelRecord& record, quint64 epoch, const SharedFrame& frame, const ItemTexts& texts,
               const WholeImageResult& result) {
    record.isFrameOnItsWay = false;
    if (result.result == TransferResult::Taken && epoch == record.epoch) {
        ApplyComposedState(record, frame, texts);
        return true;
    }
    if (result.chunksTaken > 0) {
        ForgetAll(record);  // part of it lies over the picture that was there
    } else if (result.result == TransferResult::Refused) {
        DoubtFrame(record);
    }
    return false;
}

void ApplyComposedState(PanelRecord& record, const SharedFrame& frame, const ItemTexts& texts) {
    ForgetAll(record);
    record.acknowledged.frame = frame;
    record.desired.texts = texts;
    for (int item = 0; item < kLiveValueCount; ++item) {
        record.acknowledged.texts[size_t(item)].text = texts[size_t(item)];
    }
}

void NoteOrientation(PanelRecord& record, quint64 epoch, Orientation orientation, TransferResult result) {
    if (!TellsSomething(record, epoch, result)) {
        return;
    }
    record.acknowledged.orientation.reset();
    if (result == TransferResult::Taken) {
        record.acknowledged.orientation = orientation;
    }
}

void NoteTimeShow(PanelRecord& record, quint64 epoch, TransferResult result) {
    if (TellsSomething(record, epoch, result)) {
        record.acknowledged.isClockShown = result == TransferResult::Taken;
    }
}

void NoteText(PanelRecord& record, quint64 epoch, int item, const QString& text, TransferResult result) {
    if (TellsSomething(record, epoch, result)) {
        record.acknowledged.texts[size_t(item)] =
            result == TransferResult::Taken ? AcknowledgedText{text, true} : AcknowledgedText{};
    }
}

void NoteTimeSync(PanelRecord& record, TransferResult result) {
    switch (result) {
        case TransferResult::Taken:
            if (record.refusedRounds > 0) {
                NoteArrival(record);
            }
            return;
        case TransferResult::Refused:
            ++record.refusedRounds;
            return;
        case TransferResult::NotThere:
            record.presence = ScreenPresence::Absent;
            return;
        case TransferResult::Dropped:
            return;
    }
}

PanelStatus StatusOf(const PanelRecord& record, std::chrono::milliseconds now) {
    const OwedReports owed = WhatIsOwed(record);
    const bool isTryingAgain =
        record.refusedRounds > 0 || ((owed.frame || owed.orientation) && record.retry.HasFailed());
    PanelStatus status;
    status.isFrameOwed = owed.frame;
    if (record.presence == ScreenPresence::Absent) {
        status.condition = PanelCondition::NoScreen;
    } else if (record.presence == ScreenPresence::Denied) {
        status.condition = PanelCondition::Denied;
        status.node = record.path;
    } else if (record.refusedRounds >= kRefusedRoundsBeforeTold) {
        status.condition = PanelCondition::Refusing;
    } else if (record.isFrameOnItsWay || (owed.frame && !isTryingAgain)) {
        status.condition = PanelCondition::Sending;
    } else if (isTryingAgain) {
        status.condition = PanelCondition::TryingAgain;
    } else if (record.frameTakenSince.count() >= 0 && now - record.frameTakenSince < kSentIsToldFor) {
        status.condition = PanelCondition::Sent;
        status.sentAt = record.frameTakenAt;
    } else {
        status.condition = PanelCondition::Connected;
    }
    return status;
}

}  // namespace kivo
