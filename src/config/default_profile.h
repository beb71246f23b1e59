#pragma once

#include <QString>

namespace kivo {

// Puts the default "Config.ini" and "whole.png" of the application's folder into the settings folder, and
// sets the first-run mark. First run: both files are replaced. Later: only what is missing is copied. Both
// cases set configFolderCreated when they had to act. "File copied successfully." or "Failed to copy file."
// is logged per copy.
//
// Nothing is ever lost: a file is replaced in one step by a complete copy or not at all; where the mark
// cannot be set, what the user has is kept, as every start would look like the first one; a Config.ini that
// is replaced is kept beside it (kept_settings.h), and one that cannot be kept is not replaced. Copies are
// writable, also those of read-only originals. Call before any theme key is read, on the main thread.
void SeedDefaultProfile(const QString& applicationDir);

// The default "Config.ini" of the application's folder.
QString DefaultConfigFile(const QString& applicationDir);

}  // namespace kivo
