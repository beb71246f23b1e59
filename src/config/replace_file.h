#pragma once

#include <QString>

class QIODevice;

namespace kivo {

// Puts what `source` (open for reading) holds in the place of `target`, in one step: `target` is complete or
// as it was, whatever goes wrong. A read-only target is made writable first. The folder must exist. Returns
// what went wrong; empty on success.
QString ReplaceFile(const QString& target, QIODevice* source);

// The same with the file `source`. Not QFile::copy, which gives the copy of a read-only original its rights.
QString ReplaceFileByCopy(const QString& target, const QString& source);

}  // namespace kivo
