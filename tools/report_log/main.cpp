// kivo-report-log FILE: replays a log of reports through the panel's decoder and says what is in it.
// Exit status 0: every report was right; 1: there were errors; 2: bad arguments, or a file that is no log.

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include "log_summary.h"

namespace {

constexpr int kAllRight = 0;
constexpr int kErrors = 1;
constexpr int kBadArguments = 2;

int Complain(const QString& line) {
    QTextStream(stderr) << line << '\n';
    return kBadArguments;
}

int WriteImage(const QImage& image, const QString& fileName) {
    if (image.save(fileName)) {
        return kAllRight;
    }
    QTextStream(stderr) << fileName << ": the picture cannot be written\n";
    return kErrors;
}

int Replay(const QString& fileName, const QString& imageFile) {
    kivo::ReportLogReader reader(fileName);
    if (!reader.Error().isEmpty()) {
        return Complain(fileName + QLatin1String(": ") + reader.Error());
    }
    kivo::LogSummary summary;
    while (const auto record = reader.Next()) {
        summary.Add(*record);
    }

    QTextStream out(stdout);
    const QStringList lines = summary.Lines();
    for (const QString& line : lines) {
        out << line << '\n';
    }
    out << summary.Totals() << '\n';
    out.flush();

    int status = summary.State().counts.errors == 0 ? kAllRight : kErrors;
    if (!reader.Error().isEmpty()) {
        Complain(fileName + QLatin1String(": ") + reader.Error());
        status = kErrors;
    }
    if (!imageFile.isEmpty()) {
        status = qMax(status, WriteImage(summary.State().image, imageFile));
    }
    return status;
}

}  // namespace

int main(int argc, char* argv[]) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kivo-report-log"));
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Says what is in a log of the reports sent to the screen."));
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The log."));
    const QCommandLineOption imageOption(QStringLiteral("image"),
                                         QStringLiteral("Write the final picture of the panel to <file>."),
                                         QStringLiteral("file"));
    parser.addOption(imageOption);
    const QCommandLineOption helpOption = parser.addHelpOption();
    if (!parser.parse(QCoreApplication::arguments())) {
        return Complain(parser.errorText());
    }
    if (parser.isSet(helpOption)) {
        QTextStream(stdout) << parser.helpText();
        return kAllRight;
    }
    if (parser.positionalArguments().size() != 1) {
        return Complain(QStringLiteral("Exactly one log file is needed."));
    }

    return Replay(parser.positionalArguments().constFirst(), parser.value(imageOption));
}
