#pragma once

// What is written on the panel: LayOutTexts says which text stands where, DrawTexts draws it. The whole
// frame, the live update and the editor's magnified preview all go through these two, so they cannot
// disagree. Pure; any thread.

#include <QRect>
#include <QString>
#include <QVector>

#include "compose/free_text.h"
#include "compose/panel_text.h"
#include "compose/screen_state.h"

class QPainter;

namespace kivo {

enum class TextRole { Value, Caption };

// One line of text in its rectangle, in canvas pixels. The text is fitted when it is drawn and never leaves
// rect.
struct TextRun {
    int item = 0;
    TextRole role = TextRole::Value;
    QString text;
    QRect rect;
    int pixelSize = 0;
    TextAlign align = TextAlign::Centre;
};

// The values and captions of everything the state shows, in drawing order. A custom layout's free text is not
// among them (compose/free_text.h).
QVector<TextRun> LayOutTexts(const ScreenState& state, const ItemTexts& texts);

// Draws, in white, the runs that reach into region (canvas pixels).
void DrawTexts(QPainter& painter, const QVector<TextRun>& runs, const QRect& region);

// All that is written on a panel.
struct PanelTexts {
    QVector<TextRun> runs;
    FreeTextBlock freeText;
};
PanelTexts LayOutPanelTexts(const ScreenState& state, const ItemTexts& texts);

// Draws them in the order in which they lie over each other, where they reach into region (canvas pixels).
void DrawPanelTexts(QPainter& painter, const PanelTexts& texts, const QRect& region);

// Whether an update of the item goes to the panel as two halves of its rectangle. Its text then stays in the
// part that both halves cover (EvenPart), so that nothing is left behind at an odd edge.
bool IsSentInHalves(const ScreenState& state, int item);

// A long Chinese date in the form of the English interface ("2019年12月31日": "2019.12.31"); any other text
// as it is.
QString EnglishDate(const QString& date);

}  // namespace kivo
