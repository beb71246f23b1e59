#pragma once

#include <QByteArray>
#include <QtGlobal>

namespace kivo {

// The mark that this user's profile has been set up. Windows: registry, HKEY_CURRENT_USER\Software\Kivo
// Tool\Kivo Config, value "isInitialized". Linux: the key "isInitialized" in "<XDG config folder>/Kivo
// Tool/Kivo Config.ini". A program with a portable folder has the latter file there, on every system.

// True unless the mark stands with exactly the expected type and data. What cannot be read counts as a first
// run.
bool IsFirstRun();

// Sets the mark. 0 on success, else a Windows status code (5: access denied). Setting it twice does no harm.
qint32 MarkInitialized();

// Type number of a plain text in the registry (REG_SZ); Linux gives a plain text in the INI file this
// number, any other value 0.
inline constexpr quint32 kMarkerTextType = 1;

// "true" with its closing zero.
const QByteArray& MarkerBytes();

// Whether a value of this type and these bytes is the mark: a text, "true" in small letters, closing zero,
// no more.
bool MeansInitialized(quint32 type, const QByteArray& bytes);

}  // namespace kivo
