#pragma once

#include <QString>

class QIODevice;
class QSaveFile;

namespace kivo {

// Puts what `source` (open for reading) holds in the place of `target`, in one step: `target` is complete or
// as it was, whatever goes wrong. A read-only target is made writable first. The folder must exist. Returns
// what went wrong; empty on success.
QString ReplaceFile(const QString& target, QIODevice* source);

// The same with the file `source`. Not QFile::copy, which gives the copy of a read-only original its rights.
QString ReplaceFileByCopy(const QString& target, const QString& source);

// Puts the file in its place if all of it found room. QSaveFile::commit alone does not notice that the rest
// of its buffer found none, and would replace a good file with a part. The file's errorString says why not.
bool CommitWhole(QSaveFile& file);

}  // namespace kivo
