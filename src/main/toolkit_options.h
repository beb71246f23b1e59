#pragma once

// The options that Qt takes from every program's command line: a session manager adds one when it restores a
// session. They are parted from the program's own. Pure.

#include <QString>
#include <QStringList>

namespace kivo {

struct ToolkitOptions {
    QStringList others;  // the arguments without them, the program's name first
    QStringList taken;   // Qt's, with their values
    QString platform;    // Qt's platform that was asked for; empty: none was
    QString trouble;     // one sentence where an option lacks its value; else empty
};

// arguments begin with the program's name. withValue: the program's own options that have one, without
// dashes; it is theirs, whatever it looks like.
ToolkitOptions TakeToolkitOptions(const QStringList& arguments, const QStringList& withValue);

// A line for each, indented as Qt's own parser does it, each ends in a line feed.
QString ToolkitOptionsHelp();

}  // namespace kivo
