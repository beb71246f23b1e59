#pragma once

// Numbers as programs write them for people, in the locale and the units that a person chose there. Any
// thread.

#include <QString>

#include <optional>

#include "telemetry/reading.h"

namespace kivo {

// Of "46.9", "46,9", "4,243.8", "4.243,8" or "4 243,8", with a sign or without. Of two kinds of marks the
// last is the decimal one; a kind that comes more than once parts thousands. A mark alone is the decimal one,
// but for revolutions, of which nobody writes thousandths: "1,234" are more than a thousand. Nothing where
// the text is anything else.
std::optional<double> NumberFromText(Quantity quantity, QStringView text);

// That number in the quantity's unit; the unit is what stands behind the number in `unitText`, "84.2 °F",
// which may be the same text. Nothing where it is none of the quantity's units.
std::optional<double> ValueFromTexts(Quantity quantity, QStringView numberText, QStringView unitText);

// What the unit behind a number measures; nothing for any other unit.
std::optional<Quantity> QuantityFromText(QStringView text);

}  // namespace kivo
