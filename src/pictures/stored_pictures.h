#pragma once

// The user's pictures as Config.ini keeps them: "ImageList/Count" and, from 0 on, their paths. Main thread,
// as all settings.

#include <QString>
#include <QStringList>

#include "config/folders.h"

namespace kivo {

// The paths in list order; ones whose file has disappeared are among them. Where the count cannot be
// believed (no number, negative, more than a person adds), every path that stands in the file counts.
QStringList ReadStoredPictures(const QString& settingsFile = ConfigFilePath());

// Puts these paths in the place of the stored ones. True when they are on disk.
bool WriteStoredPictures(const QStringList& paths, const QString& settingsFile = ConfigFilePath());

// Whether a list can be stored so that it is read again: settings files have a greatest size, beyond which
// they are taken for noise, and so has the count.
bool CanBeStored(const QStringList& paths);

}  // namespace kivo
