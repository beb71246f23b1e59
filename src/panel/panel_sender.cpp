#include "panel/panel_sender.h"

#include <QLoggingCategory>

#include "compose/rgb565.h"
#include "panel/frame_store.h"
#include "panel/lit_frame.h"
#include "panel/panel_memory.h"
#include "telemetry/local_time.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(senderLog, "kivo.panel")

constexpr quint8 kReportId = 0;  // the panel's reports are not numbered

const quint8* Bytes(const QByteArray& bytes) {
    return reinterpret_cast<const quint8*>(bytes.constData());
}

std::chrono::milliseconds SystemClock() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace

PanelSender::PanelSender(Parts parts) : m_parts(std::move(parts)) {
    if (!m_parts.now) {
        m_parts.now = &SystemClock;
    }
}

template <typename Change>
void PanelSender::ChangeRecord(Change change) {
    {
        const std::lock_guard<std::mutex> lock(m_recordMutex);
        change(m_record);
    }
    if (m_parts.changed) {
        m_parts.changed();
    }
}

PanelRecord PanelSender::RecordNow() const {
    const std::lock_guard<std::mutex> lock(m_recordMutex);
    return m_record;
}

void PanelSender::SetLoaded(const ScreenState& state) {
    const std::lock_guard<std::mutex> lock(m_recordMutex);
    m_loaded = state;
    m_chosen = state;
}

void PanelSender::SetChosen(const ScreenState& state) {
    const std::lock_guard<std::mutex> lock(m_recordMutex);
    m_chosen = state;
}

ScreenState PanelSender::Applied() const {
    const std::lock_guard<std::mutex> lock(m_recordMutex);
    const SharedFrame& frame =
        m_record.acknowledged.frame ? m_record.acknowledged.frame : m_record.desired.frame;
    return frame ? frame->state : m_loaded;
}

ItemTexts PanelSender::ShownTexts() const {
    const std::lock_guard<std::mutex> lock(m_recordMutex);
    return kivo::ShownTexts(m_record);
}

void PanelSender::SetLight(PanelLight light) {
    ChangeRecord([light](PanelRecord& record) { kivo::SetLight(record, light); });
}

void PanelSender::NoteArrival() {
    ChangeRecord([](PanelRecord& record) { kivo::NoteArrival(record); });
}

PanelStatus PanelSender::Status() const {
    const std::lock_guard<std::mutex> lock(m_recordMutex);
    PanelStatus status = StatusOf(m_record, m_parts.now());
    status.isSoftwarePanel = m_parts.memory == nullptr;
    return status;
}

PanelFacts PanelSender::Facts() const {
    PanelFacts facts = FactsOf(RecordNow(), m_parts.now());
    facts.prepend({QStringLiteral("kind"), m_parts.memory == nullptr ? QStringLiteral("software panel")
                                                                     : QStringLiteral("USB screen")});
    return facts;
}

bool PanelSender::LookAtPanel() {
    const PanelSighting sighting = m_parts.session.LookAtPanel();
    ChangeRecord([&sighting](PanelRecord& record) { NoteSighting(record, sighting); });
    return sighting.presence == ScreenPresence::Present;
}

bool PanelSender::SendTimeSync() {
    const std::lock_guard<std::mutex> turn(m_turn);
    return SyncTime();
}

bool PanelSender::SyncTime() {
    if (!LookAtPanel()) {
        return false;
    }
    const TransferResult result = m_parts.transfers.SendTimeSync();
    int refused = 0;
    ChangeRecord([result, &refused](PanelRecord& record) {
        NoteTimeSync(record, result);
        refused = record.refusedRounds;
    });
    if (result == TransferResult::Refused && refused == kRefusedRoundsBeforeTold) {
        qCWarning(senderLog,
                  "The screen can be opened but takes no report; another program may have it to itself.");
    }
    return result == TransferResult::Taken || result == TransferResult::Refused;
}

SharedFrame PanelSender::ComposeFrameOf(const ScreenState& state) {
    const std::optional<FramePicture> picture = m_parts.picture(state);
    if (!picture) {
        return nullptr;
    }
    // Frames are composed seldom: a skin that is kept for the next one would only lie there.
    SkinCache skins;
    return MakePanelFrame(state,
                          ComposeBackground(DrawnState(state, picture->isStandIn), picture->image, skins));
}

void PanelSender::Prepare() {
    const std::lock_guard<std::mutex> one(m_composeMutex);
    ScreenState loaded;
    {
        const std::lock_guard<std::mutex> lock(m_recordMutex);
        if (m_record.desired.frame) {
            return;
        }
        loaded = m_loaded;
    }
    SharedFrame frame = m_parts.frames.Load(loaded);
    if (!frame) {
        frame = ComposeFrameOf(loaded);
        if (!frame) {
            return;
        }
        m_parts.frames.Save(frame);
    }
    const std::lock_guard<std::mutex> turn(m_turn);
    // In its turn: what is sent before, to darken the panel, makes it forget.
    std::optional<RememberedPanel> remembered;
    if (m_parts.memory != nullptr) {
        remembered = m_parts.memory->Read();
    }
    ChangeRecord([&](PanelRecord& record) {
        SetDesired(record, frame);
        const SharedFrame shown = DesiredFrame(record);
        if (remembered && remembered->frameId == shown->id &&
            (record.panelKey.isEmpty() || remembered->panelKey.isEmpty() ||
             record.panelKey == remembered->panelKey)) {
            record.acknowledged.frame = shown;
            record.panelKey = remembered->panelKey.isEmpty() ? record.panelKey : remembered->panelKey;
        }
    });
}

bool PanelSender::BeginRound() {
    m_parts.frames.KeepSaved(m_parts.now());
    const std::lock_guard<std::mutex> turn(m_turn);
    if (!SyncTime()) {
        return false;
    }
    PayFrameAndOrientation();
    if (WhatIsOwed(RecordNow()).clock) {
        SendTimeShow();
    }
    return true;
}

void PanelSender::PayFrameAndOrientation() {
    const PanelRecord record = RecordNow();
    const OwedReports owed = WhatIsOwed(record);
    if ((!owed.frame && !owed.orientation) || !record.retry.IsDue(m_parts.now())) {
        return;
    }
    if (!owed.frame) {
        SendOrientation();
        NoteAttempt(QByteArray());
        return;
    }
    const SharedFrame frame = DesiredFrame(record);
    SendFrame(frame);
    NoteAttempt(frame->id);
}

// After frame or orientation were tried: what is left of them waits, longer each time. A frame that is owed
// and is another one than was tried has become the desired one meanwhile, and is tried at once.
void PanelSender::NoteAttempt(const QByteArray& triedFrameId) {
    ChangeRecord([&](PanelRecord& record) {
        const OwedReports left = WhatIsOwed(record);
        const bool isSame = IdInLight(record.desired.frame, record.desired.light) == triedFrameId;
        if ((left.frame && isSame) || left.orientation) {
            record.retry.NoteFailure(m_parts.now());
        } else {
            record.retry = {};
        }
    });
}

bool PanelSender::ComposeWholeFrame() {
    const std::lock_guard<std::mutex> one(m_composeMutex);
    ScreenState chosen;
    {
        const std::lock_guard<std::mutex> lock(m_recordMutex);
        chosen = m_chosen;
    }
    const SharedFrame frame = ComposeFrameOf(chosen);
    if (!frame) {
        return false;
    }
    const std::lock_guard<std::mutex> turn(m_turn);
    ChangeRecord([&frame](PanelRecord& record) { SetDesired(record, frame); });
    m_parts.frames.Save(frame);
    if (!LookAtPanel()) {
        return false;
    }
    const SharedFrame sent = DesiredFrame(RecordNow());
    const bool isTaken = SendFrame(sent);
    NoteAttempt(sent->id);
    return isTaken;
}

bool PanelSender::SendFrame(const SharedFrame& frame) {
    ItemTexts texts;
    for (int item = 0; item < kLiveValueCount; ++item) {
        texts[size_t(item)] = m_parts.valueText(item);
    }
    const QImage image = ComposeFrame(frame->state, frame->background, texts);
    QByteArray pixels = WirePixels(image, image.rect(), frame->state.orientation);
    if (frame->light == PanelLight::Dimmed) {
        DimWirePixels(pixels);
    }
    if (m_parts.memory != nullptr) {
        m_parts.memory->Forget();
    }
    const quint64 epoch = RecordNow().epoch;
    ChangeRecord([](PanelRecord& record) { NoteFrameBegun(record); });
    const WholeImageResult result = m_parts.transfers.SendWholeImage(Bytes(pixels), kReportId);
    bool isThere = false;
    ChangeRecord([&](PanelRecord& record) {
        isThere = NoteFrame(record, epoch, frame, texts, result);
        if (isThere) {
            record.frameTakenAt = ReadLocalTime().time;
            record.frameTakenSince = m_parts.now();
        }
    });
    const PanelRecord after = RecordNow();
    if (m_parts.memory != nullptr && after.acknowledged.frame && !after.acknowledged.frame->id.isEmpty()) {
        m_parts.memory->Write({after.panelKey, after.acknowledged.frame->id});
    }
    if (!isThere) {
        return false;
    }
    // Composing sends the orientation; applying sends it again, and with it what starts the clock.
    SendOrientation();
    SendOrientation();
    SendTimeShow();
    return true;
}

bool PanelSender::SendOrientation() {
    const PanelRecord record = RecordNow();
    if (!record.acknowledged.frame) {
        return false;
    }
    const Orientation orientation = record.acknowledged.frame->state.orientation;
    const TransferResult result = m_parts.transfers.SendOrientation(int(orientation));
    ChangeRecord([&](PanelRecord& changed) { NoteOrientation(changed, record.epoch, orientation, result); });
    return result == TransferResult::Taken;
}

void PanelSender::SendTimeShow() {
    const quint64 epoch = RecordNow().epoch;
    const TransferResult result = m_parts.transfers.SendTimeShow();
    ChangeRecord([epoch, result](PanelRecord& record) { NoteTimeShow(record, epoch, result); });
}

bool PanelSender::RenderLiveItem(const QString& text, int item) {
    if (text.isEmpty() || !IsItem(item)) {
        return false;
    }
    const std::lock_guard<std::mutex> turn(m_turn);
    {
        const std::lock_guard<std::mutex> lock(m_recordMutex);
        m_record.desired.texts[size_t(item)] = text;
        if (!IsTextOwed(m_record, item, text)) {
            return false;
        }
    }
    // Another panel may stand there by now; then this text waits for its frame.
    if (!LookAtPanel()) {
        return false;
    }
    const PanelRecord record = RecordNow();
    if (!IsTextOwed(record, item, text)) {
        return false;
    }
    const SharedFrame frame = record.acknowledged.frame;
    const QVector<Cut>& cuts =
        CutsOf({frame, FormerText(record, item).isNull(), record.desired.texts, {}}, item);
    // No cut at all: a rectangle of a damaged settings file that no report can carry. There is nothing to
    // wait for.
    TransferResult result = TransferResult::Taken;
    for (const Cut& cut : cuts) {
        const QRect wire = WireRect(cut.canvasRect, frame->state.orientation);
        const TransferResult sent = m_parts.transfers.SendAreaImageWithPos(
            Bytes(cut.pixels), wire.x(), wire.y(), wire.width(), wire.height());
        result = sent == TransferResult::Taken ? result : sent;
    }
    const std::lock_guard<std::mutex> lock(m_recordMutex);
    NoteText(m_record, record.epoch, item, text, result);
    return true;
}

const QVector<Cut>& PanelSender::CutsOf(const DrawnUpdate& asked, int item) {
    DrawnUpdate& drawn = m_drawn[size_t(item)];
    if (!StillHolds(drawn, asked)) {
        drawn = asked;
        drawn.update =
            RenderItem(asked.frame->state, asked.frame->background, asked.texts, item, asked.firstTime);
        if (asked.frame->light == PanelLight::Dimmed) {
            for (Cut& cut : drawn.update.cuts) {
                DimWirePixels(cut.pixels);
            }
        }
    }
    return drawn.update.cuts;
}

bool PanelSender::StillHolds(const DrawnUpdate& drawn, const DrawnUpdate& asked) {
    if (drawn.frame != asked.frame || drawn.firstTime != asked.firstTime) {
        return false;
    }
    for (int item = 0; item < kLiveValueCount; ++item) {
        const bool isOnIt = (drawn.update.drawnItems >> item & 1U) != 0;
        if (isOnIt && drawn.texts[size_t(item)] != asked.texts[size_t(item)]) {
            return false;
        }
    }
    return true;
}

}  // namespace kivo
