#include "telemetry/hwinfo_values.h"

#include <array>
#include <map>
#include <optional>

#include "telemetry/labelled_sensors.h"
#include "telemetry/measured_text.h"

namespace kivo {
namespace {

constexpr int kMostDigits = 5;

struct Sensor {
    QString group;
    QString label;
    QString shown;
    QString number;
};

struct Column {
    const char* name;
    QString Sensor::*text;
};
constexpr std::array<Column, 4> kColumns{{
    {"Sensor", &Sensor::group},
    {"Label", &Sensor::label},
    {"Value", &Sensor::shown},
    {"ValueRaw", &Sensor::number},
}};

// The number at a name's end; nothing where the rest is not the column's name.
std::optional<int> NumberOf(const QString& name, const char* column) {
    const QLatin1String start(column);
    const int digits = name.size() - start.size();
    if (!name.startsWith(start) || digits < 1 || digits > kMostDigits) {
        return std::nullopt;
    }
    int number = 0;
    for (const QChar character : QStringView(name).mid(start.size())) {
        if (character < QLatin1Char('0') || character > QLatin1Char('9')) {
            return std::nullopt;
        }
        number = number * 10 + (character.unicode() - '0');
    }
    return number;
}

}  // namespace

SensorReadings ReadHwInfoValues(const std::vector<NamedText>& values) {
    std::map<int, Sensor> sensors;
    for (const NamedText& value : values) {
        for (const Column& column : kColumns) {
            if (const std::optional<int> number = NumberOf(value.name, column.name)) {
                sensors[*number].*column.text = value.text;
            }
        }
    }
    LabelledSensors chosen(SourceId::HwInfo);
    for (const auto& [number, sensor] : sensors) {
        // The plain number is in the unit that is shown, and has a fixed form: what is shown is grouped the
        // way the user asked for.
        if (const std::optional<Quantity> quantity = QuantityFromText(sensor.shown)) {
            chosen.Add(*quantity, sensor.group, sensor.label,
                       ValueFromTexts(*quantity, sensor.number, sensor.shown));
        }
    }
    return chosen.Readings();
}

}  // namespace kivo
