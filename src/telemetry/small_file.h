#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace kivo {

// The first line of a file the kernel makes up when it is read, at most 255 bytes, without blanks around it.
// Nothing where it cannot be read; errno then says why. A plain read: these are read every second. Linux
// only.
std::optional<QByteArray> ReadSmallFile(const QString& path);

// The first line of a text, without blanks around it.
QByteArray FirstLine(const QByteArray& text);

// Such a line as a whole number; nothing where it is none.
std::optional<qint64> WholeNumber(const QByteArray& line);

// Both in one. errno says nothing here.
std::optional<qint64> ReadNumberFile(const QString& path);

// Folders called prefix and a number, in the order of their numbers; paths. What else begins with the prefix
// is left out.
enum class NumberBase { Decimal = 10, Hexadecimal = 16 };
QStringList NumberedFolders(const QString& folder, const QString& prefix,
                            NumberBase base = NumberBase::Decimal);

// The names of all that stands in a folder, in the system's order; empty where it cannot be read. Much
// cheaper than a search through it.
QByteArray FolderEntries(const QString& folder);

}  // namespace kivo
