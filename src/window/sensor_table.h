#pragma once

// What each live value says now, who says it, and what would help where nobody does: for the window's list,
// the read-out's tool tip and the command line. In the language of the translator that is installed. Any
// thread.

#include <QString>

#include <vector>

#include "compose/screen_state.h"
#include "telemetry/reading.h"

namespace kivo {

struct SensorRow {
    QString name;    // the item's caption
    QString now;     // its text, without blanks around it
    QString source;  // who says it; without a value, why there is none
    QString help;    // what a person can do for a value; empty where there is one or nothing helps
};

// A row for each live value, in their order. texts as MetricSnapshot makes them.
std::vector<SensorRow> SensorTable(const ItemTexts& texts, const SensorReadings& readings);

// Who measured a reading or why there is none, in a few words.
QString SensorPhrase(const Reading& reading);

// The name of a source: its maker's, or what it is.
QString SourceName(SourceId source);

// What a person can do on this platform where a quantity has no value; empty for a reading that has one, and
// where nothing but waiting helps.
QString SensorHelp(Quantity quantity, const Reading& reading);

// The table for a terminal: columns of equal width, a line each, ended by a line feed.
QString SensorTableText(const std::vector<SensorRow>& rows);

}  // namespace kivo
