#pragma once

// A log file that never grows over its bound: it is kept in two halves, of which the older one goes when the
// newer one is full. Not held open, so that several copies of the program may append to one file. One thread
// at a time.

#include <QString>
#include <QStringList>

namespace kivo {

// Of both halves together.
inline constexpr qint64 kLargestLog = qint64{1024} * 1024;

// Where this system has the program's log file; empty where the session has no folder for it.
QString LogFilePath();

class LogFile {
public:
    // path: the newer half, in a folder that is made when missing; the older one is "<path>.old".
    explicit LogFile(QString path, qint64 largest = kLargestLog);

    // Appends the line and a line feed; a new file is its user's alone. Where that cannot be, the line is
    // lost: there is nowhere to tell it.
    void Append(const QString& line);

    // The last lines of both halves, oldest first; none where there is no file.
    QStringList LastLines(int count) const;

    QString OlderHalf() const { return m_path + QStringLiteral(".old"); }

private:
    bool MakeRoom(qint64 bytes) const;

    const QString m_path;
    const qint64 m_largest;
};

}  // namespace kivo
