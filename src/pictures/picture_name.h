#pragma once

// What a person calls a picture of their own, in place of its file's name. GUI thread.

#include <QString>

namespace kivo {

inline constexpr int kLongestPictureName = 24;  // UTF-16 code units, as a line edit counts them

// A name as it is kept, of what was typed or stands in the settings: without control characters, line breaks
// and blanks at its ends, cut where it is too long, but never inside a pair. Empty: there is none.
QString CleanPictureName(const QString& text);

}  // namespace kivo
