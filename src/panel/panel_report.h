#pragma once

// The panel's record as a report for support tells of it. Pure; any thread.

#include <QPair>
#include <QString>
#include <QVector>

#include "panel/panel_memory.h"
#include "panel/panel_record.h"

namespace kivo {

// A name and its value each.
using PanelFacts = QVector<QPair<QString, QString>>;

// In a few words.
QString ConditionName(PanelCondition condition);

// What the panel is to show, has taken and is owed. Free texts are their user's own and only counted. now:
// the clock of frameTakenSince.
PanelFacts FactsOf(const PanelRecord& record, std::chrono::milliseconds now);

// What is kept of the real panel over the program's end; none where nothing is.
PanelFacts FactsOf(const std::optional<RememberedPanel>& remembered);

}  // namespace kivo
