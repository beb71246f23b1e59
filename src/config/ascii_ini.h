#pragma once

#include <QByteArray>
#include <QString>

namespace kivo {

// An INI file as Qt 5 writes it, out of one as any Qt writes it: texts beyond ASCII as the escapes ("\x4e2d")
// that Qt 5 and Qt 6 read alike. Qt 6 writes them as UTF-8, which Qt 5 reads as Latin-1.
QByteArray AsciiIni(const QByteArray& content);

// Does that to a file. Gives the trouble, or nothing. A file that is ASCII already is left alone.
QString MakeIniAscii(const QString& filePath);

}  // namespace kivo
