#pragma once

// Draws what is written on the panel. The whole frame, the live update and the editor's magnified preview all
// draw by this. Any thread.

#include <QRect>
#include <QVector>

#include "compose/panel_layout.h"

class QPainter;

namespace kivo {

// Draws, in white, the runs that reach into region (canvas pixels). Each text is fitted into its rectangle
// and never leaves it.
void DrawTexts(QPainter& painter, const QVector<TextRun>& runs, const QRect& region);

// Draws all texts, and the ticks under the values, where they reach into region (canvas pixels).
void DrawPanelTexts(QPainter& painter, const PanelTexts& texts, const QRect& region);

}  // namespace kivo
