#pragma once

// The program's command line. Pure; parsed before there is a display.

#include <QString>
#include <QStringList>
#include <optional>

class QCommandLineParser;

namespace kivo {

struct Options {
    bool virtualScreen = false;        // a software panel instead of the USB one
    QString panelImage;                // PNG kept equal to the virtual panel, empty for none
    QString reportLog;                 // file that every report is appended to, empty for none
    std::optional<double> runSeconds;  // end by itself after that time
};

struct CommandLine {
    enum class Action { Run, ShowText, ShowSensors, SwitchAutostart, Refuse };
    Action action = Action::Run;
    Options options;
    bool autostart = false;  // SwitchAutostart: on or off
    QString text;  // ShowText: help or version, ends in a line feed; Refuse: one line that says what is wrong
};

// arguments begin with the program's name. Needs a QCoreApplication (for the help text).
CommandLine ParseCommandLine(const QStringList& arguments);

}  // namespace kivo
