#include "telemetry/labelled_sensors.h"

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <iterator>

namespace kivo {
namespace {

// Of what is not wanted. A value that cannot be stands behind every other, in the order of the labels.
constexpr int kNoRank = INT_MAX;
constexpr int kUnbelievableRank = 1000;

// Letters and digits alone: "CPU (Tctl/Tdie)" is "cputctltdie".
QString Plain(const QString& label) {
    QString plain;
    for (const QChar character : label) {
        if (character.isLetterOrNumber()) {
            plain.append(character.toLower());
        }
    }
    return plain;
}

int PlaceIn(std::initializer_list<const char*> labels, const QString& label) {
    const auto found = std::find_if(labels.begin(), labels.end(),
                                    [&label](const char* known) { return label == QLatin1String(known); });
    return found == labels.end() ? kNoRank : static_cast<int>(std::distance(labels.begin(), found));
}

int TemperatureRank(const QString& label) {
    return PlaceIn({"cpupackage", "cputctltdie", "coretctltdie", "cputdie", "coretdie", "cputctl", "coretctl",
                    "cpudieaverage", "coremax", "cpu"},
                   label);
}

int PowerRank(const QString& label) {
    return PlaceIn({"cpupackagepower", "cpupackage", "package", "cpuppt"}, label);
}

bool IsAnothersCooler(const QString& device, const QString& label) {
    static const std::array<const char*, 4> kGraphicsDrivers{"radeon", "nouveau", "i915", "xe"};
    const bool isGraphics =
        std::any_of(kGraphicsDrivers.begin(), kGraphicsDrivers.end(),
                    [&device](const char* known) { return device == QLatin1String(known); });
    return isGraphics || device.contains(QLatin1String("gpu")) || device.contains(QLatin1String("psu")) ||
           label.startsWith(QLatin1String("gpu")) || label.contains(QLatin1String("pump"));
}

// "CPU_OPT" and "CPU Fan #2" are further headers of the processor's.
bool IsFurtherHeader(const QString& label) {
    const QChar last = label.back();
    return label.contains(QLatin1String("opt")) || (last.isDigit() && last != QLatin1Char('1'));
}

int FanRank(const NamedFan& fan) {
    const QString label = Plain(fan.label);
    const bool isBelievable = fan.speed && IsBelievable(Quantity::FanSpeed, *fan.speed);
    const bool isTurning = isBelievable && *fan.speed > 0;
    if (!label.contains(QLatin1String("cpu")) && !label.contains(QLatin1String("processor"))) {
        return isTurning ? 4 : kNoRank;
    }
    const int rank = (IsFurtherHeader(label) ? 1 : 0) + (isTurning ? 0 : 2);
    return isBelievable ? rank : rank + kUnbelievableRank;
}

}  // namespace

std::optional<std::size_t> ProcessorsFan(const std::vector<NamedFan>& fans) {
    std::vector<std::size_t> own;
    for (std::size_t place = 0; place < fans.size(); ++place) {
        if (!IsAnothersCooler(Plain(fans[place].device), Plain(fans[place].label))) {
            own.push_back(place);
        }
    }
    const auto best = std::min_element(own.begin(), own.end(), [&fans](std::size_t one, std::size_t other) {
        return FanRank(fans[one]) < FanRank(fans[other]);
    });
    if (best == own.end() || (own.size() > 1 && FanRank(fans[*best]) == kNoRank)) {
        return std::nullopt;
    }
    return *best;
}

LabelledSensors::LabelledSensors(SourceId source)
    : m_source(source), m_readings(SensorReadings::AllWithout(ReadingGap::NoSource, source)) {
    m_ranks.fill(kNoRank);
}

void LabelledSensors::Add(Quantity quantity, const QString& device, const QString& label,
                          std::optional<double> value) {
    if (quantity == Quantity::FanSpeed) {
        m_fans.push_back({device, label, value});
        return;
    }
    const QString plain = Plain(label);
    int rank = quantity == Quantity::Power ? PowerRank(plain) : TemperatureRank(plain);
    if (rank == kNoRank) {
        return;
    }
    const Reading reading = ReadingOf(quantity, value);
    if (!reading.value) {
        rank += kUnbelievableRank;
    }
    int& best = m_ranks[static_cast<std::size_t>(quantity)];
    if (rank < best) {
        best = rank;
        m_readings[quantity] = reading;
    }
}

Reading LabelledSensors::ReadingOf(Quantity quantity, std::optional<double> value) const {
    return value ? Checked(quantity, *value, m_source) : Reading::Without(ReadingGap::Unbelievable, m_source);
}

SensorReadings LabelledSensors::Readings() const {
    SensorReadings readings = m_readings;
    if (const auto fan = ProcessorsFan(m_fans)) {
        readings[Quantity::FanSpeed] = ReadingOf(Quantity::FanSpeed, m_fans[*fan].speed);
    }
    return readings;
}

}  // namespace kivo
