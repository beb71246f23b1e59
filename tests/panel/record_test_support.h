#pragma once

// What the tests of a panel's record share: frames, and a panel that has taken all of one.

#include "../compose/compose_test_support.h"
#include "panel/panel_record.h"

namespace kivo::test {

inline const ItemTexts kTexts{QStringLiteral("45℃"),
                              QStringLiteral("37%"),
                              QStringLiteral("20%"),
                              QStringLiteral("18:46"),
                              QStringLiteral("15w"),
                              QStringLiteral("2026.11.21"),
                              QStringLiteral("1000"),
                              QString(),
                              QString()};

inline SharedFrame FrameOf(const ScreenState& state) {
    return MakePanelFrame(state, {BlackCanvas(state.orientation)});
}
inline SharedFrame FrameOf(Theme theme, Orientation orientation = Orientation::Landscape) {
    return FrameOf(ThemeScreen(theme, orientation));
}

inline PanelSighting Seen(const QByteArray& key) {
    return {ScreenPresence::Present, key, "node", "stamp"};
}

// A panel that has taken everything: frame, orientation, clock, each text by itself.
inline PanelRecord Complete(const SharedFrame& frame) {
    PanelRecord record;
    NoteSighting(record, Seen("a"));
    SetDesired(record, frame);
    ApplyComposedState(record, frame, kTexts);
    NoteOrientation(record, record.epoch, frame->state.orientation, TransferResult::Taken);
    NoteTimeShow(record, record.epoch, TransferResult::Taken);
    for (const int item : kLiveItems) {
        NoteText(record, record.epoch, item, kTexts[size_t(item)], TransferResult::Taken);
    }
    return record;
}

}  // namespace kivo::test
