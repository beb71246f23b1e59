#pragma once

#include <QString>

namespace kivo {

// A program that takes along what it keeps, on a stick for example: where a file "portable.txt" lies beside
// it, settings, record of the panel, thumbnails and the mark of the first run lie in the folder "data" there
// and not in the user's folders. Any thread.

// The folder "data" in applicationDir, made when missing, if portable.txt asks for it; without a slash at the
// end. Empty: the user's folders are used. One log line tells where the file asks in vain, for the folder
// cannot be made or written.
QString FindPortableFolder(const QString& applicationDir);

// That of this program; empty before there is a QCoreApplication. Decided at the first call and for as long
// as the program runs, so that its settings never come from two places.
QString PortableFolder();

// From now on this one instead, or none. For tests.
void SetPortableFolder(const QString& folder);

}  // namespace kivo
