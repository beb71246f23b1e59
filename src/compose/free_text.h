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
    QRect bounds;                 // of all their ink, canvas pixels
    int pixelSize = 0;            // the chosen size, or a smaller one at which it fits
    QColor color;
    bool isCut = false;  // some of the text is not shown; an ellipsis stands for it
};

// Exists only while a custom layout is shown and has a text. It keeps away from everything else on the panel
// (compose/free_text_placing.h).
FreeTextBlock LayOutFreeText(const ScreenState& state);

// Draws it where it reaches into region (canvas pixels).
void DrawFreeText(QPainter& painter, const FreeTextBlock& block, const QRect& region);

}  // namespace kivo
