#pragma once

#include <QByteArray>
#include <QString>

namespace kivo {

// What stands where a settings file is expected.
enum class SettingsFileState {
    Usable,      // Every line can be read; also: no file yet.
    Damaged,     // Text in which some lines cannot be read; the others count.
    NotText,     // Holds a zero byte: noise, UTF-16, or what a power cut left behind. Nothing in it counts.
    TooLarge,    // Beyond kLargestSettingsFile; not looked into.
    NotAFile,    // A folder, a pipe, a device.
    Unreadable,  // A file that may not be opened or read.
};

SettingsFileState InspectSettingsFile(const QString& filePath);

// Whether every line is blank, a comment, a section or "key=value" (the key may be empty: QSettings writes
// such lines back) with its quotes closed. Stricter than the reader needs: at worst a copy too many is
// kept.
bool IsWellFormedIni(const QByteArray& content);

// The end of the sentence "<file> ...".
QString Describe(SettingsFileState state);

// Makes room for a write. What cannot be carried over into the new file is kept first, as "<file>.broken"
// (then ".broken.2" to ".broken.9", of which the last is reused): a damaged file as a copy, what is useless
// by renaming. A lock that a killed copy of the program left goes, too. False, with one log line, where
// nothing must be written: the file may not be read, could not be kept, or is locked for good. May wait for
// about three seconds then.
bool PrepareForWriting(const QString& filePath);

// Whether the disk takes the file once more, grown by so many bytes, beside the one that is there: found out
// by writing as much. QSettings does not notice where the end of its new file finds no room, and would put
// what there is of it in the old one's place. True also where nothing can be written at all, which it does
// notice.
bool HasRoom(const QString& filePath, qint64 growth);

}  // namespace kivo
