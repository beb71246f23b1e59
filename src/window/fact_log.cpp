#include "window/fact_log.h"

#include <QLoggingCategory>

#include "panel/panel_report.h"
#include "window/sensor_table.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(screenLog, "kivo.screen")
Q_LOGGING_CATEGORY(sourceLog, "kivo.sources")

const char* NameOf(Quantity quantity) {
    switch (quantity) {
        case Quantity::Power:
            return "Power";
        case Quantity::Temperature:
            return "Temperature";
        case Quantity::FanSpeed:
            return "Fan";
    }
    return "";
}

}  // namespace

void FactLog::NotePanel(const PanelStatus& status) {
    const PanelCondition condition = status.condition;
    const bool isAfterFrame = condition == PanelCondition::Connected && m_condition == PanelCondition::Sent;
    if (condition == PanelCondition::Sending || m_condition == condition) {
        return;
    }
    m_condition = condition;
    if (!isAfterFrame) {
        qCInfo(screenLog, "Screen: %s.", qUtf8Printable(ConditionName(condition)));
    }
}

void FactLog::NoteReadings(const SensorReadings& readings) {
    for (const Quantity quantity : kQuantities) {
        const Reading& reading = readings[quantity];
        if (reading.gap == ReadingGap::NotRead) {
            continue;
        }
        QString& known = m_phrases.at(static_cast<std::size_t>(quantity));
        const QString phrase = SensorPhrase(reading);
        if (phrase != known) {
            known = phrase;
            qCInfo(sourceLog, "%s: %s.", NameOf(quantity), qUtf8Printable(phrase));
        }
    }
}

}  // namespace kivo
