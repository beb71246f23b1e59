#pragma once

// What a log of reports says, in lines for a person: runs of like reports become one line.

#include <QString>
#include <QStringList>
#include <optional>

#include "device/report_log.h"
#include "virtualscreen/panel_decoder.h"

namespace kivo {

class LogSummary {
public:
    // Replays one record through the panel's decoder.
    void Add(const LoggedReport& record);

    // The sequence so far, one line a run.
    QStringList Lines() const;
    // The counts, one line.
    QString Totals() const;

    const PanelState& State() const { return m_decoder.State(); }

private:
    struct Run {
        PanelReportKind kind = PanelReportKind::Invalid;
        QString first;
        QString last;
        int count = 0;
        int lastChunk = 0;
    };

    void AddReport(const PanelReport& report);
    void AddLine(const QString& line);
    bool Continues(const PanelReport& report) const;
    static QString TextOf(const Run& run);
    void EndRun();

    PanelDecoder m_decoder;
    QStringList m_lines;
    std::optional<Run> m_run;
    int m_failedWrites = 0;
};

}  // namespace kivo
