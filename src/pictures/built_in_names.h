#pragma once

// What the program's own backgrounds are called, so that they can be told apart by name. GUI thread.

#include <QString>

namespace kivo {

// In the interface language; empty for any other path.
QString BuiltInPictureName(const QString& path);

}  // namespace kivo
