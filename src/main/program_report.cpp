#include "main/program_report.h"

#include "config/folders.h"
#include "main/sensor_report.h"
#include "panel/panel_memory.h"
#include "panel/panel_report.h"
#include "session/log_file.h"
#include "session/log_lines.h"
#include "window/support_facts.h"

namespace kivo {

namespace {

SupportFactList PanelOnDisk() {
    if (ExistingWorkingFolder().isEmpty()) {
        return {};
    }
    return ToSupportFacts(FactsOf(PanelMemory().Read()));
}

// Those of other processes before this one's own.
QStringList LogLines(SupportFacts::Teller teller, const QStringList& own) {
    const QString file = LogFilePath();
    if (!file.isEmpty()) {
        return LogFile(file).LastLines(LogRing::kKept) + own;
    }
    // A session without a folder for it.
    if (teller == SupportFacts::Teller::BesideACopy) {
        return QStringList{QStringLiteral("(Those of the copy that runs are in its own report, and where its "
                                          "standard error goes.)")} +
               own;
    }
    return own;
}

}  // namespace

QString WriteProgramReport(SupportFacts::Teller teller, const QString& applicationDir,
                           const PackageSensorsFactory& makeSensors) {
    const QString sensors = ReadSensorReport(makeSensors);
    GatheredFacts gathered = GatherSupportFacts(applicationDir);
    gathered.facts.teller = teller;
    gathered.facts.panel = PanelOnDisk();
    gathered.facts.sensors = sensors;
    gathered.facts.log = LogLines(teller, gathered.facts.log);
    return SupportReport(gathered.facts, gathered.names);
}

}  // namespace kivo
