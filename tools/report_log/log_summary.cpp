#include "log_summary.h"

#include <utility>

namespace kivo {

namespace {

QString AreaText(const QRect& area) {
    return QStringLiteral("%1,%2 %3x%4").arg(area.x()).arg(area.y()).arg(area.width()).arg(area.height());
}

QString ErrorText(const PanelReport& report) {
    QStringList names;
    for (const PanelError error : report.errors) {
        names.append(PanelErrorName(error));
    }
    return names.join(QLatin1String(", "));
}

QString KindText(PanelReportKind kind) {
    switch (kind) {
        case PanelReportKind::Area:
            return QStringLiteral("area");
        case PanelReportKind::Fill:
            return QStringLiteral("fill");
        case PanelReportKind::Chunk:
            return QStringLiteral("frame chunks");
        case PanelReportKind::Orientation:
            return QStringLiteral("orientation");
        case PanelReportKind::TimeSync:
            return QStringLiteral("time sync");
        case PanelReportKind::TimeShow:
            return QStringLiteral("time show");
        case PanelReportKind::Probe:
            return QStringLiteral("probe");
        case PanelReportKind::Invalid:
            break;
    }
    return QStringLiteral("ERROR");
}

// What tells a report from another one of its kind.
QString DetailText(const PanelReport& report) {
    switch (report.kind) {
        case PanelReportKind::Area:
        case PanelReportKind::Fill:
            return AreaText(report.area);
        case PanelReportKind::Chunk:
            return QString::number(report.chunkNumber);
        case PanelReportKind::Orientation:
            return QString::number(report.orientation);
        case PanelReportKind::TimeSync:
        case PanelReportKind::TimeShow:
            return report.time.toString(Qt::ISODate);
        case PanelReportKind::Probe:
            return {};
        case PanelReportKind::Invalid:
            break;
    }
    return ErrorText(report);
}

}  // namespace

void LogSummary::Add(const LoggedReport& record) {
    switch (record.kind) {
        case LoggedKind::StartMark:
            m_decoder.AbandonFrame();
            return AddLine(QStringLiteral("log begins"));
        case LoggedKind::FeatureReport:
            return AddLine(QStringLiteral("feature report of %1 bytes").arg(record.bytes.size()));
        case LoggedKind::OutputReport:
            break;
    }
    if (record.result < 0) {
        // The panel never saw it, and whoever was sending a frame gives up at the first chunk that fails.
        constexpr int kCommandAt = 2;
        constexpr quint8 kFrameCommand = 0xA3;
        if (record.bytes.size() > kCommandAt &&
            static_cast<quint8>(record.bytes.at(kCommandAt)) == kFrameCommand) {
            m_decoder.AbandonFrame();
        }
        ++m_failedWrites;
        return AddLine(QStringLiteral("write of %1 bytes failed").arg(record.bytes.size()));
    }
    const QByteArray& bytes = record.bytes;
    std::vector<quint8> data(bytes.begin(), bytes.end());
    AddReport(m_decoder.Decode(data.data(), data.size()));
}

bool LogSummary::Continues(const PanelReport& report) const {
    if (!m_run || m_run->kind != report.kind) {
        return false;
    }
    switch (report.kind) {
        case PanelReportKind::Chunk:
            return report.chunkNumber == m_run->lastChunk + 1;
        case PanelReportKind::TimeSync:
        case PanelReportKind::TimeShow:
            return true;
        default:
            return DetailText(report) == m_run->last;
    }
}

void LogSummary::AddReport(const PanelReport& report) {
    if (!Continues(report)) {
        EndRun();
        m_run = Run{report.kind, DetailText(report), {}, 0, 0};
    }
    m_run->last = DetailText(report);
    m_run->lastChunk = report.chunkNumber;
    ++m_run->count;
}

QString LogSummary::TextOf(const Run& run) {
    QString text = KindText(run.kind);
    if (!run.first.isEmpty()) {
        text += QLatin1Char(' ') + run.first;
    }
    if (run.last != run.first) {
        text += QLatin1String("..") + run.last;
    }
    if (run.count > 1 && run.kind != PanelReportKind::Chunk) {
        text += QStringLiteral(" (%1 times)").arg(run.count);
    }
    return text;
}

void LogSummary::EndRun() {
    if (m_run) {
        m_lines.append(TextOf(*std::exchange(m_run, std::nullopt)));
    }
}

void LogSummary::AddLine(const QString& line) {
    EndRun();
    m_lines.append(line);
}

QStringList LogSummary::Lines() const {
    QStringList lines = m_lines;
    if (m_run) {
        lines.append(TextOf(*m_run));
    }
    return lines;
}

QString LogSummary::Totals() const {
    const PanelCounts& counts = m_decoder.State().counts;
    return QStringLiteral(
               "reports %1, bytes %2, frames %3, areas %4, commands %5, failed writes %6, errors %7")
        .arg(counts.reports)
        .arg(counts.bytes)
        .arg(counts.frames)
        .arg(counts.areas)
        .arg(counts.commands)
        .arg(m_failedWrites)
        .arg(counts.errors);
}

}  // namespace kivo
