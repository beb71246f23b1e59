#pragma once

// Where the free text stands. At its row where that is free; else moved as little as it takes to a place that
// is, on more lines or smaller where that is the shorter way; and where it fits nowhere, cut. Pure; any
// thread.

#include <QRect>
#include <QVector>

#include "compose/free_text.h"
#include "compose/screen_state.h"

namespace kivo {

// areas: where its ink may lie (FreeAreas); it leaves them never.
//
// Landscape row 0 is centred in its box, row 2 begins at the top of its box; elsewhere the box is three lines
// and a line spacing high and the text in its middle. Wrapped by words, anywhere where a word is wider than
// its area.
FreeTextBlock PlaceFreeText(const ScreenState& state, const QVector<QRect>& areas);

}  // namespace kivo
