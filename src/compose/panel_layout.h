#pragma once

// All that is written on a panel and where: values, captions, times and dates, the free text, and the room
// that all of it takes. The whole frame, the live update and the editor's magnified preview all go by it, so
// they cannot disagree. Needs a QGuiApplication. Any thread.

#include <QVector>
#include <memory>
#include <optional>

#include "compose/free_text.h"
#include "compose/item_layout.h"
#include "compose/panel_room.h"
#include "compose/screen_state.h"

namespace kivo {

struct PanelTexts {
    QVector<TextRun> runs;  // values and captions, in drawing order
    FreeTextBlock freeText;
    QVector<TakenRoom> taken;
};

// The chip of an item, which has one in the custom layouts; else null.
QRect ChipOf(const PanelTexts& texts, int item);

// The chip in a slot of a custom layout, 0..4; in one that holds nothing, where a chip without a caption
// would lie.
QRect SlotRoom(const PanelTexts& texts, const ScreenState& state, int slot);

// The panel with these texts. No place hangs on a text, so a new value moves nothing. accent: of the ticks,
// where they have not the theme's own.
PanelTexts LayOutPanelTexts(const ScreenState& state, const ItemTexts& texts,
                            std::optional<QRgb> accent = std::nullopt);

// The values and captions alone.
QVector<TextRun> LayOutTexts(const ScreenState& state, const ItemTexts& texts);

// The same without the values' texts. The layouts of the last few states are kept, so that a live update or
// the next picture of a window need not lay out again.
std::shared_ptr<const PanelTexts> LayOutPanel(const ScreenState& state);

}  // namespace kivo
