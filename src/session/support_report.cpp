#include "session/support_report.h"

#include <QSaveFile>

#include "config/replace_file.h"

namespace kivo {

namespace {

const QString& Nothing() {
    static const QString text = QStringLiteral("(none)");
    return text;
}

QString Headed(const char* heading, const QStringList& lines) {
    QString section = QLatin1Char('\n') + QLatin1String(heading) + QLatin1Char('\n') +
                      QString(int(qstrlen(heading)), QLatin1Char('-')) + QLatin1Char('\n');
    const QStringList shown = lines.isEmpty() ? QStringList{Nothing()} : lines;
    for (const QString& line : shown) {
        section += line + QLatin1Char('\n');
    }
    return section;
}

// Values stand below one another.
QStringList Table(const SupportFactList& facts) {
    int width = 0;
    for (const SupportFact& fact : facts) {
        width = qMax(width, fact.name.size());
    }
    QStringList lines;
    for (const SupportFact& fact : facts) {
        lines.append(fact.name.leftJustified(width + 2) + fact.value.simplified());
    }
    return lines;
}

QString TellerLine(SupportFacts::Teller teller) {
    switch (teller) {
        case SupportFacts::Teller::RunningCopy:
            return QStringLiteral("by the copy that runs");
        case SupportFacts::Teller::OnItsOwn:
            return QStringLiteral("from the command line; no copy runs");
        case SupportFacts::Teller::BesideACopy:
            break;
    }
    return QStringLiteral(
        "from the command line, beside a copy that runs: its own menu (Save report...) tells more");
}

QStringList ReplayHints() {
    return {QStringLiteral(
                "What the panel shows can be sent along: start the program with --report-log FILE, let "
                "it happen again, and"),
            QStringLiteral(
                "send FILE too. \"kivo-report-log --image PANEL.png FILE\" draws the panel from it. It "
                "holds your picture.")};
}

}  // namespace

QString SupportReport(const SupportFacts& facts, const PersonalNames& names) {
    const SupportFactList head{
        {QStringLiteral("version"), facts.version},
        {QStringLiteral("written"),
         facts.at.toString(Qt::ISODate) + QStringLiteral(", ") + TellerLine(facts.teller)}};
    QString text = QStringLiteral("Kivo Screen, report for support\n") + Table(head).join(QLatin1Char('\n')) +
                   QLatin1Char('\n');
    text += Headed("System", Table(facts.system));
    text += Headed("HID devices", facts.hidNodes);
    text += Headed("Panel", Table(facts.panel));
    text += Headed("Sensors", facts.sensors.split(QLatin1Char('\n'), Qt::SkipEmptyParts));
    text += Headed("Settings", facts.settings);
    text += Headed("Last log lines", facts.log);
    text += Headed("To show what the panel showed", ReplayHints());
    return WithoutPersonalNames(text, names);
}

QString SupportReportName(const QDateTime& at) {
    return at.toString(QStringLiteral("'kivo-screen-report-'yyyyMMdd-HHmm'.txt'"));
}

QString SaveSupportReport(const QString& report, const QString& file) {
    QSaveFile saved(file);
    const QByteArray bytes = report.toUtf8();
    if (!saved.open(QIODevice::WriteOnly) || saved.write(bytes) != bytes.size() || !CommitWhole(saved)) {
        return saved.errorString();
    }
    return {};
}

}  // namespace kivo
