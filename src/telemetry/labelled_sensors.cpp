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

int FanRank(const QString& device, const QString& label, bool isTurning) {
    if (device.startsWith(QLatin1String("gpu")) || device.contains(QLatin1String("psu")) ||
        label.startsWith(QLatin1String("gpu")) || label.contains(QLatin1String("pump"))) {
        return kNoRank;
    }
    const bool isProcessors =
        label.startsWith(QLatin1String("cpu")) || label.startsWith(QLatin1String("processor"));
    if (isProcessors) {
        // The header that is meant for the processor before a further one, such as "CPU_OPT".
        const bool isFirst = PlaceIn({"cpu", "cpu1", "cpufan", "cpufan1", "processorfan"}, label) != kNoRank;
        const int rank = isFirst ? 0 : 1;
        return isTurning ? rank : rank + 2;
    }
    return isTurning ? 4 : 5;
}

}  // namespace

LabelledSensors::LabelledSensors(SourceId source) : m_source(source) {
    m_ranks.fill(kNoRank);
    for (const Quantity quantity : {Quantity::Power, Quantity::Temperature, Quantity::FanSpeed}) {
        m_readings[quantity] = Reading::Without(ReadingGap::NoSource, source);
    }
}

void LabelledSensors::Add(Quantity quantity, const QString& device, const QString& label,
                          std::optional<double> value) {
    const QString plain = Plain(label);
    int rank = kNoRank;
    switch (quantity) {
        case Quantity::Power:
            rank = PowerRank(plain);
            break;
        case Quantity::Temperature:
            rank = TemperatureRank(plain);
            break;
        case Quantity::FanSpeed:
            rank = FanRank(Plain(device), plain, value && *value > 0);
            break;
    }
    if (rank == kNoRank) {
        return;
    }
    const Reading reading =
        value ? Checked(quantity, *value, m_source) : Reading::Without(ReadingGap::Unbelievable, m_source);
    if (!reading.value) {
        rank += kUnbelievableRank;
    }
    int& best = m_ranks[static_cast<std::size_t>(quantity)];
    if (rank < best) {
        best = rank;
        m_readings[quantity] = reading;
    }
}

}  // namespace kivo
