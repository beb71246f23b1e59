#include "telemetry/hardware_monitor_json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>

#include <optional>
#include <vector>

#include "telemetry/labelled_sensors.h"
#include "telemetry/measured_text.h"

namespace kivo {
namespace {

std::optional<Quantity> QuantityOf(const QString& type) {
    if (type == QLatin1String("Temperature")) {
        return Quantity::Temperature;
    }
    if (type == QLatin1String("Power")) {
        return Quantity::Power;
    }
    return type == QLatin1String("Fan") ? std::optional<Quantity>(Quantity::FanSpeed) : std::nullopt;
}

// "amdcpu" of "/amdcpu/0/temperature/2".
QString DeviceOf(const QString& sensorId) {
    return sensorId.section(QLatin1Char('/'), 1, 1);
}

std::optional<double> ValueOf(Quantity quantity, const QJsonObject& sensor) {
    const QJsonValue raw = sensor.value(QLatin1String("RawValue"));
    if (raw.isDouble()) {
        return raw.toDouble();
    }
    const QString text = raw.toString();
    if (const std::optional<double> value = ValueFromTexts(quantity, text, text)) {
        return value;
    }
    const QString shown = sensor.value(QLatin1String("Value")).toString();
    return ValueFromTexts(quantity, shown, shown);
}

void AddSensor(const QJsonObject& sensor, LabelledSensors& sensors) {
    const std::optional<Quantity> quantity = QuantityOf(sensor.value(QLatin1String("Type")).toString());
    const QString device = DeviceOf(sensor.value(QLatin1String("SensorId")).toString());
    if (!quantity || device.isEmpty()) {
        return;
    }
    // Graphics cards have a "Package" too.
    if (*quantity == Quantity::FanSpeed || device.endsWith(QLatin1String("cpu"))) {
        sensors.Add(*quantity, device, sensor.value(QLatin1String("Text")).toString(),
                    ValueOf(*quantity, sensor));
    }
}

}  // namespace

SensorReadings ReadHardwareMonitorPage(const QByteArray& json) {
    LabelledSensors sensors(SourceId::LibreHardwareMonitor);
    if (json.size() > kLongestMonitorPage) {
        return sensors.Readings();
    }
    // Depth first and in order, with a stack of its own: how deep the tree is, is another program's choice.
    std::vector<QJsonObject> left{QJsonDocument::fromJson(json).object()};
    while (!left.empty()) {
        const QJsonObject node = left.back();
        left.pop_back();
        AddSensor(node, sensors);
        const QJsonArray children = node.value(QLatin1String("Children")).toArray();
        for (int i = children.size() - 1; i >= 0; --i) {
            left.push_back(children.at(i).toObject());
        }
    }
    return sensors.Readings();
}

}  // namespace kivo
