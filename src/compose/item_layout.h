#pragma once

// Which of the items' texts stands where: values, times, dates and captions. Pure; any thread.

#include <QRect>
#include <QString>
#include <QVector>
#include <optional>

#include "compose/panel_text.h"
#include "compose/screen_state.h"
#include "compose/value_scale.h"

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
    std::optional<int> axis{};  // what it is centred on where that is not the middle of rect
    ValueScale scale{};         // under a value that has one
};

// The run as it is drawn.
FittedLine FitRun(const TextRun& run);

// The values and captions of everything the state shows, in drawing order, the values without their texts. A
// custom layout's free text is not among them (compose/free_text.h).
QVector<TextRun> LayOutItems(const ScreenState& state);

// The text of an item as its value is written.
QString WrittenValue(const ScreenState& state, int item, const QString& text);

// Whether an update of the item goes to the panel as two halves of its rectangle. Its text then stays in the
// part that both halves cover (EvenPart), so that nothing is left behind at an odd edge.
bool IsSentInHalves(const ScreenState& state, int item);

// A long Chinese date in the form of the English interface ("2019年12月31日": "2019.12.31"); any other text
// as it is.
QString EnglishDate(const QString& date);

}  // namespace kivo
