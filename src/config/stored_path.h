#pragma once

#include <QString>

namespace kivo {

// How settings name a picture's file. A portable program comes along on a stick, whose drive letter or mount
// point is another one on the next computer: what lies in its own folder is named from there. Everywhere else
// a path is stored as it is. Any thread.

// The form for the settings.
QString PathToStore(const QString& path);

// The file that a stored path names now. One that was stored in full, when the program's folder had another
// place, is found in its data by its name there.
QString PathFromStore(const QString& stored);

}  // namespace kivo
