#include "main/command_line.h"

#include <QCommandLineParser>
#include <QFileInfo>

#include "main/toolkit_options.h"

namespace kivo {

namespace {

// Eleven days; in milliseconds still far below what a timer holds.
constexpr double kLongestRunSeconds = 1000000;

CommandLine Refused(const QString& why) {
    CommandLine line;
    line.action = CommandLine::Action::Refuse;
    line.text = why.simplified();  // one line, whatever was typed
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

QList<QCommandLineOption> CommandOptions() {
    QList<QCommandLineOption> options;
    for (const OutsideOption& option : OutsideOptions()) {
        const QString name = QLatin1String(option.name);
        const QString help = QLatin1String(option.help);
        options.append(option.valueName == nullptr
                           ? QCommandLineOption(name, help)
                           : QCommandLineOption(name, help, QLatin1String(option.valueName)));
    }
    return options;
}

// Files are found from where the person stands, not from where the running copy was started.
OutsideCommands CommandsOf(const QCommandLineParser& parser) {
    OutsideCommands commands;
    for (const OutsideOption& option : OutsideOptions()) {
        const QString name = QLatin1String(option.name);
        if (!parser.isSet(name)) {
            continue;
        }
        QString value = option.valueName == nullptr ? QString() : parser.value(name);
        if (NamesFile(option.kind) && !value.isEmpty()) {
            value = QFileInfo(value).absoluteFilePath();
        }
        commands[size_t(option.kind)] = value;
    }
    return commands;
}

// Which file is missing, as one sentence.
QString MissingFile(const OutsideCommands& commands) {
    for (const auto& [kind, what] : {std::pair(OutsideKind::Picture, QStringLiteral("picture")),
                                     std::pair(OutsideKind::Apply, QStringLiteral("layout"))}) {
        const std::optional<QString>& file = ValueOf(commands, kind);
        if (file && !QFileInfo(*file).isFile()) {
            return QStringLiteral("There is no %1 file '%2'.").arg(what, *file);
        }
    }
    return {};
}

QString HelpText(const QCommandLineParser& parser, bool withToolkit) {
    const QString text = parser.helpText();
    return withToolkit ? text + QStringLiteral("\nOptions of Qt's own:\n") + ToolkitOptionsHelp() : text;
}

QStringList NamesWithValue(const QList<QCommandLineOption>& options) {
    QStringList names;
    for (const QCommandLineOption& option : options) {
        if (!option.valueName().isEmpty()) {
            names += option.names();
        }
    }
    return names;
}

// The program's own, but for the commands.
struct KnownOptions {
    const QCommandLineOption virtualScreen{QStringLiteral("virtual-screen"),
                                           QStringLiteral("Use a software panel instead of the USB screen.")};
    const QCommandLineOption panelImage{
        QStringLiteral("panel-image"),
        QStringLiteral("Keep <file> (PNG) equal to what the virtual panel shows."), QStringLiteral("file")};
    const QCommandLineOption runFor{QStringLiteral("run-for"), QStringLiteral("End after <seconds>."),
                                    QStringLiteral("seconds")};
    const QCommandLineOption reportLog{QStringLiteral("report-log"),
                                       QStringLiteral("Append every report sent to the screen to <file>."),
                                       QStringLiteral("file")};
    const QCommandLineOption autostart{
        QStringLiteral("autostart"),
        QStringLiteral("Start together with your session from now on, or no longer (<on|off>), and end."),
        QStringLiteral("on|off")};
    const QCommandLineOption sensors{
        QStringLiteral("sensors"),
        QStringLiteral("Show what each value says, who measures it and what would help, and end.")};
    const QCommandLineOption report{
        QStringLiteral("report"),
        QStringLiteral("Write a report for support to <file>, or print it where none is named, and end.")};
    // Not Qt's own: only a parser that ends the process by itself tells its longer help.
    const QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                                  QStringLiteral("Show the options.")};
    const QCommandLineOption helpAll{QStringLiteral("help-all"),
                                     QStringLiteral("Show the options, and those that Qt takes.")};

    QList<QCommandLineOption> All() const {
        return QList<QCommandLineOption>{virtualScreen, panelImage, runFor, reportLog, autostart,
                                         sensors,       report,     help,   helpAll} +
               CommandOptions();
    }
};

// Beside Qt's own options it stands alone too; the file is no value of it, as it may be left out.
CommandLine ReportLine(const QStringList& files, bool alone) {
    if (!alone) {
        return Refused(QStringLiteral("Option '--report' goes with no other option."));
    }
    if (files.size() > 1) {
        return Refused(QStringLiteral("Unexpected argument '%1'.").arg(files.at(1)));
    }
    if (!files.isEmpty() && files.constFirst().isEmpty()) {
        return Refused(QStringLiteral("Option '--report' needs a file name, or none at all."));
    }
    CommandLine line;
    line.action = CommandLine::Action::Report;
    line.reportFile = files.value(0);
    return line;
}

CommandLine StartLine(const QCommandLineParser& parser, const KnownOptions& known) {
    CommandLine line;
    line.options.virtualScreen = parser.isSet(known.virtualScreen);
    for (const auto& [option, target] : {std::pair(&known.panelImage, &line.options.panelImage),
                                         std::pair(&known.reportLog, &line.options.reportLog)}) {
        *target = parser.value(*option);
        if (parser.isSet(*option) && target->isEmpty()) {
            return Refused(
                QStringLiteral("Option '--%1' needs a file name.").arg(option->names().constFirst()));
        }
    }
    if (!line.options.panelImage.isEmpty() && !line.options.virtualScreen) {
        return Refused(QStringLiteral("Option '--panel-image' needs '--virtual-screen'."));
    }
    if (parser.isSet(known.runFor)) {
        bool isNumber = false;
        const QString value = parser.value(known.runFor);
        const double seconds = value.toDouble(&isNumber);
        if (!isNumber || !(seconds > 0) || seconds > kLongestRunSeconds) {
            return Refused(
                QStringLiteral("Option '--run-for' needs a number of seconds, not '%1'.").arg(value));
        }
        line.options.runSeconds = seconds;
    }
    line.commands = CommandsOf(parser);
    const QString trouble = TroubleOf(line.commands);
    if (!trouble.isEmpty()) {
        return Refused(trouble);
    }
    const QString missing = MissingFile(line.commands);
    return missing.isEmpty() ? line : Refused(missing);
}

}  // namespace

CommandLine ParseCommandLine(const QStringList& arguments) {
    const KnownOptions known;
    const QList<QCommandLineOption> options = known.All();
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Shows this PC's live values on a 320 x 170 USB screen, over a picture of your choice."));
    parser.addOptions(options);
    parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("Where --report writes to."),
                                 QStringLiteral("[file]"));
    const QCommandLineOption version = parser.addVersionOption();

    const ToolkitOptions toolkit = TakeToolkitOptions(arguments, NamesWithValue(options));
    if (!toolkit.trouble.isEmpty()) {
        return Refused(toolkit.trouble);
    }
    if (!parser.parse(toolkit.others)) {
        return Refused(parser.errorText());
    }
    if (parser.isSet(known.help) || parser.isSet(known.helpAll)) {
        return Shown(HelpText(parser, parser.isSet(known.helpAll)));
    }
    if (parser.isSet(version)) {
        return Shown(QStringLiteral("Kivo Screen %1\n").arg(QCoreApplication::applicationVersion()));
    }
    const bool isAlone = parser.optionNames().size() == 1;
    if (parser.isSet(known.report)) {
        CommandLine line = ReportLine(parser.positionalArguments(), isAlone);
        line.toolkit = toolkit.taken;
        line.platform = toolkit.platform;
        return line;
    }
    if (!parser.positionalArguments().isEmpty()) {
        return Refused(
            QStringLiteral("Unexpected argument '%1'.").arg(parser.positionalArguments().constFirst()));
    }
    if (parser.isSet(known.autostart)) {
        return AutostartLine(parser.values(known.autostart), isAlone);
    }
    if (parser.isSet(known.sensors)) {
        if (!isAlone) {
            return Refused(QStringLiteral("Option '--sensors' goes with no other option."));
        }
        CommandLine line;
        line.action = CommandLine::Action::ShowSensors;
        return line;
    }
    CommandLine line = StartLine(parser, known);
    line.toolkit = toolkit.taken;
    line.platform = toolkit.platform;
    return line;
}

}  // namespace kivo
