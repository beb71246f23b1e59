#pragma once

// The user's pictures as Config.ini keeps them: "ImageList/Count" and, from 0 on, their paths; beside these,
// under "ImageNames" and a picture's path, what its user calls it; paths as PathToStore makes them. Main
// thread, as all settings.

#include <QHash>
#include <QString>
#include <QStringList>

#include "config/folders.h"

namespace kivo {

// By the picture's path in its clean form (CleanPicturePath). A picture without a name is not in it.
using PictureNames = QHash<QString, QString>;

// The paths in list order; ones whose file has disappeared are among them. Where the count cannot be
// believed (no number, negative, more than a person adds), every path that stands in the file counts.
QStringList ReadStoredPictures(const QString& settingsFile = ConfigFilePath());

// The names of these pictures, as CleanPictureName keeps them.
PictureNames ReadPictureNames(const QStringList& paths, const QString& settingsFile = ConfigFilePath());

// Puts these paths, and the names of theirs, in the place of the stored ones; a name of any other picture
// goes. True when they are on disk.
bool WriteStoredPictures(const QStringList& paths, const PictureNames& names,
                         const QString& settingsFile = ConfigFilePath());

// Whether a list can be stored so that it is read again: settings files have a greatest size, beyond which
// they are taken for noise, and so has the count.
bool CanBeStored(const QStringList& paths);
// The same for names, which have a share of their own: the longest list leaves it free.
bool CanNamesBeStored(const PictureNames& names);

}  // namespace kivo
