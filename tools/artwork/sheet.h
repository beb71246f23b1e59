#pragma once

#include <QDir>
#include <QString>

namespace kivo::artwork {

// Contact sheet for the eye: the four themes in both orientations over one picture, as the panel shows them,
// enlarged three times. The skins are read from the folder. Prints the least contrast of white text in every
// theme and, for the picture, the figures that tell a banded sky. False when something cannot be read or
// written; the reason is printed.
bool MakeSheet(const QDir& folder, const QString& picturePath, const QString& sheetPath);

}  // namespace kivo::artwork
