#pragma once

#include <QString>
#include <QtGlobal>

namespace kivo {

// The mark of the first run as a file: the key "isInitialized" of an INI file. first_run_marker.h says what
// it means.

// True where the file has exactly the mark.
bool HasMark(const QString& path);

// Makes the file, and folders above it. 0 on success, else the status code that Windows has for the trouble.
qint32 WriteMark(const QString& path);

}  // namespace kivo
