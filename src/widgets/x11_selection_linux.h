#pragma once

#include <QByteArray>

namespace kivo {

// Whether some program owns the selection of that name for the display's screen, whose number is appended:
// that is how a desktop's panel and its compositor can be found. False without an X server. Over a connection
// of its own, for Qt does not hand its out.
bool IsScreenSelectionOwned(const QByteArray& prefix);

}  // namespace kivo
