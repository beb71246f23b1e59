#pragma once

namespace kivo {

// Whether the desktop has a place for a tray icon at this moment. GUI thread; may be asked once a second, for
// it waits 25 ms for an answer at most, at first half a second.
//
// Deliberate: not QSystemTrayIcon's own question. Qt looks once a process how icons are to be shown, when it
// is first asked or the first icon is made. On a desktop that starts its panel after the program no icon
// would ever come. So no QSystemTrayIcon is made before this says yes.
bool IsTrayThere();

}  // namespace kivo
