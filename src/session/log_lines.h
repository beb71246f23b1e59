#pragma once

// The program's log lines: the one place through which they go to standard error, into a ring of the last
// ones for a report, and on some systems into a file. Any thread.

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>
#include <mutex>

namespace kivo {

// The lines of a message, without blank ones and without blanks at their ends: whoever reads a log counts on
// a line being a fact.
QStringList LinesOfMessage(const QString& message);

// A line as a file and a report have it: "2026-11-23 04:36:55.120 text".
QString StampedLine(const QDateTime& at, const QString& line);

// The last lines, oldest first.
class LogRing {
public:
    static constexpr int kKept = 100;

    void Add(const QString& stampedLine);
    QStringList Lines() const;

private:
    mutable std::mutex m_mutex;
    QStringList m_lines;
};

// From now on everything that Qt's log functions are given is kept, and also goes where it went before, line
// by line. Debug lines are kept only where QT_LOGGING_RULES is set: else a listing of many devices would
// leave no room for anything else. file: where lines are appended too (LogFile); empty: nowhere. Once a
// process; a second call changes the file only. The first file gets what was kept before it, too.
void StartLog(const QString& file = QString());

// A line that is printed by other means than Qt's log functions: kept, and appended to the file.
void KeepLogLine(const QString& line);

// The lines kept so far; none before StartLog.
QStringList KeptLogLines();

}  // namespace kivo
