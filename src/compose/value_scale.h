#pragma once

// The nine ticks under a value of a theme that has them: as many are lit as the value has of its range. Pure
// but for the painter; any thread.

#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

namespace kivo {

// The ticks under a value, inside the value's own text rectangle, so that they travel in its report.
struct ValueScale {
    QRect rect;  // of all nine, in canvas pixels; empty: there is none
    QRgb accent = 0;
};

// Whether the item's value has a range of its own.
bool HasScaleRange(int item);

// Where the ticks stand: at the foot of the text rectangle, in the middle of the item's card as far as they
// stay in that rectangle. Empty where it is too small for them and a text.
QRect ScaleRect(const QRect& textRect, const QRect& tile);

// The share of its range that a value has, 0 to 1; 0 without a number in the text.
double RangeShare(int item, const QString& text);

// How many of the nine are lit at that share, 0 to 9.
int LitTicks(double share);

// The colour of the lit ones: the accent, from nine tenths of the range on a colour that warns.
QRgb TickColour(double share, QRgb accent);

// Draws all nine where there are some, those that are not lit in a faint white.
void DrawValueScale(QPainter& painter, const ValueScale& scale, int item, const QString& text);

}  // namespace kivo
