#pragma once

// The free text of a custom layout: up to three rows to choose from, wrapped, in its own size and colour.
// Pure; any thread.

#include <QColor>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QVector>

#include "compose/screen_state.h"

class QPainter;

namespace kivo {

struct FreeTextLine {
    QString text;
    QPoint baseLine;
};

struct FreeTextBlock {
    QVector<FreeTextLine> lines;  // none where there is no free text
    QRect bounds;                 // of the lines and all their ink, canvas pixels
    int pixelSize = 0;
    QColor color;
};

// Exists only while a custom layout is shown and has a text. Wrapped by words, anywhere where a word is wider
// than the row; what does not fit on the canvas or is longer than its row may be ends in an ellipsis.
FreeTextBlock LayOutFreeText(const ScreenState& state);

// Draws it where it reaches into region (canvas pixels).
void DrawFreeText(QPainter& painter, const FreeTextBlock& block, const QRect& region);

}  // namespace kivo
