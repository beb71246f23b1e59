#pragma once

#include <QtGlobal>

namespace kivo {

// The type of the result that Qt's readers of native events may fill (nativeEvent, nativeEventFilter): Qt 6
// made it as wide as the messages of 64-bit Windows.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
using NativeResult = long;
#else
using NativeResult = qintptr;
#endif

}  // namespace kivo
