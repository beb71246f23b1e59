#pragma once

// Whether the program starts together with the user's session. Linux: an entry in the desktop's autostart
// folder; Windows: a value under the user's Run key. The system's own tools may switch it off too; nothing
// but the user's own wish sets it. Any thread.

#include <QByteArray>
#include <QString>

namespace kivo {

// True where an entry stands that is switched on and whose program exists.
bool StartsAtLogin();

// Switches it on, for the program that is running, or off. Returns what went wrong; empty on success.
QString SetStartsAtLogin(bool on);

// The desktop entry that starts `program` (an absolute path), after the Desktop Entry Specification 1.5.
QByteArray AutostartEntry(const QString& program);

// `former`, an entry that somebody may have edited, switched on for that program: its other keys, groups and
// comments stay, and so does a command that names the program already. What is no entry is replaced as a
// whole.
QByteArray SwitchedOnEntry(const QByteArray& former, const QString& program);

// The program a desktop entry would start by itself; empty where it is switched off, by a desktop's own
// tool for example, or names no program.
QString ProgramOfEntry(const QByteArray& entry);

// The command for the Run key, and the program that such a command starts (empty where there is none).
QString RunCommand(const QString& program);
QString ProgramOfCommand(const QString& command);

}  // namespace kivo
