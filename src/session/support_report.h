#pragma once

// The report that a person sends to whoever helps: what program, on what system, with what screen, and what
// it did last. Facts in, text out; pure. English, as strangers read it; texts of the window that are handed
// in stay in its language.

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

#include "session/personal_names.h"

namespace kivo {

struct SupportFact {
    QString name;
    QString value;
};
using SupportFactList = QVector<SupportFact>;

struct SupportFacts {
    // Who writes the report.
    enum class Teller {
        RunningCopy,  // of itself
        OnItsOwn,     // from the command line, while no copy runs
        BesideACopy,  // from the command line: of the copy that runs it knows what lies on disk
    };

    Teller teller = Teller::RunningCopy;
    QDateTime at;
    QString version;         // with its commit
    SupportFactList system;  // Qt, platform, session, displays, fonts
    QStringList hidNodes;    // a line each; none: no HID devices
    SupportFactList panel;   // what it has and is owed
    QString sensors;         // a table, its lines ended by line feeds
    QStringList settings;    // a line each
    QStringList log;         // the last lines, oldest first
};

// The whole report, its lines ended by line feeds, without the names.
QString SupportReport(const SupportFacts& facts, const PersonalNames& names);

// Under what name it is kept if its user has no other wish: "kivo-screen-report-20261123-0436.txt".
QString SupportReportName(const QDateTime& at);

// Puts it in the place of the file in one step. Returns what went wrong; empty on success.
QString SaveSupportReport(const QString& report, const QString& file);

}  // namespace kivo
