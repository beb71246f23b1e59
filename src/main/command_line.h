#pragma once

// The program's command line. Pure; parsed before there is a display.

#include <QString>
#include <QStringList>
#include <optional>

#include "session/outside_commands.h"

namespace kivo {

struct Options {
    bool virtualScreen = false;        // a software panel instead of the USB one
    QString panelImage;                // PNG kept equal to the virtual panel, empty for none
    QString reportLog;                 // file that every report is appended to, empty for none
    std::optional<double> runSeconds;  // end by itself after that time
};

struct CommandLine {
    enum class Action { Run, ShowText, ShowSensors, SwitchAutostart, Report, Refuse };
    Action action = Action::Run;
    Options options;
    QStringList toolkit;       // Qt's own options and their values
    QString platform;          // Qt's platform among them, empty for none
    OutsideCommands commands;  // for the copy that runs, else for this one
    bool autostart = false;    // SwitchAutostart: on or off
    QString reportFile;        // Report: where to; empty: standard output
    QString text;  // ShowText: help or version, ends in a line feed; Refuse: one line that says what is wrong
};

// arguments begin with the program's name; Qt's own options among them are passed over. Needs a
// QCoreApplication (for the help text). Of an option that is given twice the last value counts. A file's
// path becomes an absolute one, and has to name a file that is there.
CommandLine ParseCommandLine(const QStringList& arguments);

}  // namespace kivo
