#include <QDir>

#include <algorithm>
#include <array>
#include <map>

#include "telemetry/labelled_sensors.h"
#include "telemetry/small_file.h"
#include "telemetry/sysfs_sources.h"

namespace kivo {
namespace {

// The drivers that know the package's temperature, and the labels it may have there, the best one first.
// Tctl may be shifted for the fan control's sake, Tdie never is. Without such a label there are the cores
// alone, or a single sensor.
struct Driver {
    const char* name;
    std::array<const char*, 2> labels;
};
constexpr std::array<Driver, 3> kDrivers{{
    {"coretemp", {"Package id 0", "Physical id 0"}},
    {"k10temp", {"Tdie", "Tctl"}},
    {"zenpower", {"Tdie", "Tctl"}},
}};

// Boards' and laptops' chips name a sensor after the processor too.
constexpr std::array<const char*, 2> kBoardLabels{"CPU Package", "CPU"};

struct Chip {
    QString folder;
    QByteArray name;
};

std::vector<Chip> ListChips(const QString& hwmon) {
    std::vector<Chip> chips;
    const QStringList folders = NumberedFolders(hwmon, QStringLiteral("hwmon"));
    for (const QString& folder : folders) {
        chips.push_back({folder, ReadSmallFile(folder + QLatin1String("/name")).value_or(QByteArray())});
    }
    return chips;
}

// The end of the list for a chip that is not the processor's.
const Driver* DriverOf(const Chip& chip) {
    return std::find_if(kDrivers.begin(), kDrivers.end(),
                        [&chip](const Driver& known) { return chip.name == known.name; });
}

struct Input {
    QString file;
    QByteArray label;  // empty: none
};

// The chip's inputs of a kind ("temp", "fan"), in the order of their numbers.
std::vector<Input> ListInputs(const Chip& chip, const QString& kind) {
    const QString suffix = QStringLiteral("_input");
    std::map<int, Input> found;
    const QStringList names = QDir(chip.folder).entryList({kind + QLatin1Char('*') + suffix}, QDir::Files);
    for (const QString& name : names) {
        const QString path = chip.folder + QLatin1Char('/') + name;
        const QString label = path.left(path.size() - suffix.size()) + QLatin1String("_label");
        bool isNumber = false;
        const int number =
            QStringView(name).mid(kind.size(), name.size() - kind.size() - suffix.size()).toInt(&isNumber);
        if (isNumber) {
            found[number] = {path, ReadSmallFile(label).value_or(QByteArray())};
        }
    }
    std::vector<Input> inputs;
    inputs.reserve(found.size());
    for (const auto& [number, input] : found) {
        inputs.push_back(input);
    }
    return inputs;
}

template <typename Labels>
QString InputWithLabel(const std::vector<Input>& inputs, const Labels& labels) {
    for (const char* label : labels) {
        const auto found = std::find_if(inputs.begin(), inputs.end(),
                                        [label](const Input& input) { return input.label == label; });
        if (found != inputs.end()) {
            return found->file;
        }
    }
    return {};
}

QStringList FilesOf(const std::vector<Input>& inputs) {
    QStringList files;
    for (const Input& input : inputs) {
        files.append(input.file);
    }
    return files;
}

}  // namespace

QStringList FindTemperatureFiles(const QString& hwmon) {
    QStringList unnamed;
    for (const Chip& chip : ListChips(hwmon)) {
        const auto* const driver = DriverOf(chip);
        const std::vector<Input> inputs = ListInputs(chip, QStringLiteral("temp"));
        if (driver != kDrivers.end()) {
            const QString input = InputWithLabel(inputs, driver->labels);
            if (!input.isEmpty()) {
                return {input};
            }
        }
        if (unnamed.isEmpty() && (driver != kDrivers.end() || IsProcessorZone(chip.name))) {
            unnamed = FilesOf(inputs);
        }
    }
    return unnamed;
}

QStringList FindBoardTemperatureFiles(const QString& hwmon) {
    for (const Chip& chip : ListChips(hwmon)) {
        if (DriverOf(chip) != kDrivers.end()) {
            continue;  // the processor's own, with many cores to look through
        }
        const QString input = InputWithLabel(ListInputs(chip, QStringLiteral("temp")), kBoardLabels);
        if (!input.isEmpty()) {
            return {input};
        }
    }
    return {};
}

QStringList FindFanFiles(const QString& hwmon) {
    std::vector<NamedFan> fans;
    QStringList files;
    for (const Chip& chip : ListChips(hwmon)) {
        for (const Input& input : ListInputs(chip, QStringLiteral("fan"))) {
            const auto speed = ReadNumberFile(input.file);
            fans.push_back({QString::fromUtf8(chip.name), QString::fromUtf8(input.label),
                            speed ? std::make_optional(double(*speed)) : std::nullopt});
            files.append(input.file);
        }
    }
    const auto fan = ProcessorsFan(fans);
    return fan ? QStringList(files[int(*fan)]) : QStringList();
}

}  // namespace kivo
