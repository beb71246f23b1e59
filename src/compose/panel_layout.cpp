#include "compose/panel_layout.h"

#include <QFontMetrics>
#include <algorithm>
#include <mutex>

#include "compose/free_text_placing.h"
#include "compose/panel_text.h"

namespace kivo {

namespace {

using LaidOutTexts = std::shared_ptr<const PanelTexts>;

// What is chosen, what is applied, and what an editor compares them with.
constexpr int kMostKept = 8;

struct KeptLayout {
    ScreenState state;
    LaidOutTexts layout;
};
struct LayoutCache {
    std::mutex mutex;
    QVector<KeptLayout> kept;  // the one used last comes first
};
Q_GLOBAL_STATIC(LayoutCache, layoutCache)

// The ink of a caption, with the blur of its edges.
QRect CaptionInk(const TextRun& run) {
    const FittedLine line = FitRun(run);
    const QRect ink = QFontMetrics(PanelFont(line.pixelSize)).tightBoundingRect(line.text);
    return ink.isEmpty() ? QRect() : ink.translated(line.baseLine).adjusted(-1, -1, 1, 1) & run.rect;
}

QVector<TakenRoom> RoomOfItems(const QVector<TextRun>& runs) {
    QVector<TakenRoom> taken;
    for (const TextRun& run : runs) {
        const bool isValue = run.role == TextRole::Value;
        const QRect rect = isValue ? run.rect : CaptionInk(run);
        if (!rect.isEmpty()) {
            taken.append({isValue ? RoomOf::Value : RoomOf::Caption, run.item, rect});
        }
    }
    return taken;
}

const TakenRoom* RoomOfItem(const QVector<TakenRoom>& taken, RoomOf of, int item) {
    const auto found = std::find_if(taken.begin(), taken.end(), [of, item](const TakenRoom& room) {
        return room.of == of && room.item == item;
    });
    return found == taken.end() ? nullptr : &*found;
}

QVector<TakenRoom> RoomOfChips(const ScreenState& state, const QVector<TakenRoom>& items) {
    QVector<TakenRoom> chips;
    for (int slot = 0; state.custom && slot < kSlotCount; ++slot) {
        const int item = ItemDrawnIn(state, slot);
        if (item != kEmptySlot) {
            const bool hasCaption = RoomOfItem(items, RoomOf::Caption, item) != nullptr;
            chips.append({RoomOf::Chip, item, SlotChipRect(slot, state.orientation, hasCaption)});
        }
    }
    return chips;
}

LaidOutTexts LaidOut(const ScreenState& state) {
    auto layout = std::make_shared<PanelTexts>();
    layout->runs = LayOutItems(state);
    layout->taken = RoomOfItems(layout->runs);
    layout->taken += RoomOfChips(state, layout->taken);
    layout->freeText = PlaceFreeText(state, FreeAreas(layout->taken, state.orientation));
    const QRect& text = layout->freeText.bounds;
    if (!text.isNull()) {
        layout->taken.append({RoomOf::FreeText, OtherText, text});
        layout->taken.append({RoomOf::Pill, OtherText, text.marginsAdded(kPillPadding)});
    }
    return layout;
}

// Whoever finds a state takes it to the front; mutex is held.
LaidOutTexts Take(QVector<KeptLayout>& kept, const ScreenState& state) {
    for (int k = 0; k < kept.size(); ++k) {
        if (kept[k].state == state) {
            kept.move(k, 0);
            return kept.first().layout;
        }
    }
    return nullptr;
}

}  // namespace

std::shared_ptr<const PanelTexts> LayOutPanel(const ScreenState& state) {
    LayoutCache* cache = layoutCache();
    {
        const std::lock_guard<std::mutex> lock(cache->mutex);
        if (LaidOutTexts found = Take(cache->kept, state)) {
            return found;
        }
    }
    LaidOutTexts layout = LaidOut(state);
    const std::lock_guard<std::mutex> lock(cache->mutex);
    if (LaidOutTexts found = Take(cache->kept, state)) {
        return found;  // another thread was faster
    }
    cache->kept.prepend({state, layout});
    if (cache->kept.size() > kMostKept) {
        cache->kept.removeLast();
    }
    return layout;
}

QRect ChipOf(const PanelTexts& texts, int item) {
    const TakenRoom* room = RoomOfItem(texts.taken, RoomOf::Chip, item);
    return room != nullptr ? room->rect : QRect();
}

QRect SlotRoom(const PanelTexts& texts, const ScreenState& state, int slot) {
    const int item = ItemDrawnIn(state, slot);
    return item == kEmptySlot ? SlotChipRect(slot, state.orientation, false) : ChipOf(texts, item);
}

PanelTexts LayOutPanelTexts(const ScreenState& state, const ItemTexts& texts, std::optional<QRgb> accent) {
    PanelTexts written = *LayOutPanel(state);
    for (TextRun& run : written.runs) {
        run.scale.accent = accent.value_or(run.scale.accent);
        if (run.role == TextRole::Value) {
            run.text = WrittenValue(state, run.item, texts[size_t(run.item)]);
        }
    }
    return written;
}

QVector<TextRun> LayOutTexts(const ScreenState& state, const ItemTexts& texts) {
    return LayOutPanelTexts(state, texts).runs;
}

}  // namespace kivo
