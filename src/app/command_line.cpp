#include "app/command_line.h"

#include <QCommandLineParser>
#include <cmath>

namespace kivo {

namespace {

// Eleven days; in milliseconds still far below what a timer holds.
constexpr double kLongestRunSeconds = 1000000;

CommandLine Refused(const QString& why) {
    CommandLine line;
    line.action = CommandLine::Action::Refuse;
    line.text = why;
    return line;
}

CommandLine Shown(const QString& text) {
    CommandLine line;
    line.action = CommandLine::Action::ShowText;
    line.text = text;
    return line;
}

// Deliberate: it stands alone. Together with the others it could be taken for a way to have them at login.
CommandLine AutostartLine(const QStringList& values, bool alone) {
    const QString& value = values.constLast();
    if (!alone) {
        return Refused(QStringLiteral("Option '--autostart' goes with no other option."));
    }
    if (value != QLatin1String("on") && value != QLatin1String("off")) {
        return Refused(QStringLiteral("Option '--autostart' needs 'on' or 'off', not '%1'.").arg(value));
    }
    CommandLine line;
    line.action = CommandLine::Action::SwitchAutostart;
    line.autostart = value == QLatin1String("on");
    return line;
}

}  // namespace

CommandLine ParseCommandLine(const QStringList& arguments) {
    const QCommandLineOption virtualScreen(QStringLiteral("virtual-screen"),
                                           QStringLiteral("Use a software panel instead of the USB screen."));
    const QCommandLineOption panelImage(
        QStringLiteral("panel-image"),
        QStringLiteral("Keep <file> (PNG) equal to what the virtual panel shows."), QStringLiteral("file"));
    const QCommandLineOption runFor(QStringLiteral("run-for"), QStringLiteral("End after <seconds>."),
                                    QStringLiteral("seconds"));
    const QCommandLineOption reportLog(QStringLiteral("report-log"),
                                       QStringLiteral("Append every report sent to the screen to <file>."),
                                       QStringLiteral("file"));
    const QCommandLineOption autostart(
        QStringLiteral("autostart"),
        QStringLiteral("Start together with your session from now on, or no longer (<on|off>), and end."),
        QStringLiteral("on|off"));
    const QCommandLineOption sensors(
        QStringLiteral("sensors"),
        QStringLiteral("Show what each value says, who measures it and what would help, and end."));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Shows this PC's live values on a 320 x 170 USB screen, over a picture of your choice."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    parser.addOptions({virtualScreen, panelImage, runFor, reportLog, autostart, sensors});

    if (!parser.parse(arguments)) {
        return Refused(parser.errorText());
    }
    if (parser.isSet(help)) {
        return Shown(parser.helpText());
    }
    if (parser.isSet(version)) {
        return Shown(QStringLiteral("Kivo Screen %1\n").arg(QCoreApplication::applicationVersion()));
    }
    if (!parser.positionalArguments().isEmpty()) {
        return Refused(
            QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst()));
    }
    if (parser.isSet(autostart)) {
        return AutostartLine(parser.values(autostart), parser.optionNames().size() == 1);
    }
    CommandLine line;
    if (parser.isSet(sensors)) {
        if (parser.optionNames().size() != 1) {
            return Refused(QStringLiteral("Option '--sensors' goes with no other option."));
        }
        line.action = CommandLine::Action::ShowSensors;
        return line;
    }
    line.options.virtualScreen = parser.isSet(virtualScreen);
    for (const auto& [option, target] :
         {std::pair(&panelImage, &line.options.panelImage), std::pair(&reportLog, &line.options.reportLog)}) {
        *target = parser.value(*option);
        if (parser.isSet(*option) && target->isEmpty()) {
            return Refused(
                QStringLiteral("Option '--%1' needs a file name.").arg(option->names().constFirst()));
        }
    }
    if (!line.options.panelImage.isEmpty() && !line.options.virtualScreen) {
        return Refused(QStringLiteral("Option '--panel-image' needs '--virtual-screen'."));
    }
    if (parser.isSet(runFor)) {
        bool isNumber = false;
        const double seconds = parser.value(runFor).toDouble(&isNumber);
        if (!isNumber || !(seconds > 0) || seconds > kLongestRunSeconds) {
            return Refused(QStringLiteral("Option '--run-for' needs a number of seconds, not '%1'.")
                               .arg(parser.value(runFor)));
        }
        line.options.runSeconds = seconds;
    }
    return line;
}

}  // namespace kivo
