#pragma once

// What other programs and devices hand on, made up: one of each that is whole. For tests of what reads it,
// also of what is damaged.

#include <QByteArray>
#include <QString>
#include <QtEndian>

#include <cstring>
#include <initializer_list>
#include <vector>

#include "telemetry/hwinfo_values.h"

namespace kivo::test {

template <typename Number>
void PutNumber(QByteArray& bytes, int offset, Number number) {
    qToLittleEndian<Number>(number, bytes.data() + offset);
}

// Core Temp's memory: one processor at 41, 57.5 and 43 degrees, TjMax 100.
class CoreTempBytes {
public:
    CoreTempBytes() : bytes(4740, '\0') {
        PutNumber<quint32>(bytes, 1024, 100);
        PutNumber<quint32>(bytes, 1540, 1);
        PutNumber<quint32>(bytes, 2688, 2);
        std::memcpy(bytes.data() + 2584, "Made Up Processor", 17);
        SetCores({41.0F, 57.5F, 43.0F});
    }
    void SetCores(std::initializer_list<float> temperatures) {
        PutNumber<quint32>(bytes, 1536, static_cast<quint32>(temperatures.size()));
        int offset = 1544;
        for (const float temperature : temperatures) {
            quint32 bits = 0;
            std::memcpy(&bits, &temperature, sizeof(bits));
            PutNumber(bytes, offset, bits);
            offset += 4;
        }
    }
    QByteArray bytes;
};

inline QByteArray Utf16Bytes(const QString& text) {
    QByteArray bytes(text.size() * 2, '\0');
    for (int i = 0; i < text.size(); ++i) {
        PutNumber<quint16>(bytes, 2 * i, text[i].unicode());
    }
    return bytes;
}

struct MadeUpChannel {
    QString name;
    quint32 unit = 0;
};

// An energy meter's metadata, version 1: one channel. `tail` stands behind the name, as bytes of it.
inline QByteArray MeterMetadata1(const MadeUpChannel& channel, const QByteArray& tail = {}) {
    const QByteArray name = Utf16Bytes(channel.name) + tail;
    QByteArray bytes(72, '\0');
    PutNumber<quint32>(bytes, 0, channel.unit);
    PutNumber<quint16>(bytes, 70, static_cast<quint16>(name.size()));
    return bytes + name;
}

// Version 2: a channel follows the name of the one before without a gap. Each tail stands behind a name.
inline QByteArray MeterMetadata2(const std::vector<MadeUpChannel>& channels,
                                 const QByteArray& tail = QByteArray(2, '\0')) {
    QByteArray bytes(68, '\0');
    PutNumber<quint16>(bytes, 66, static_cast<quint16>(channels.size()));
    for (const MadeUpChannel& channel : channels) {
        const QByteArray name = Utf16Bytes(channel.name) + tail;
        QByteArray head(6, '\0');
        PutNumber<quint32>(head, 0, channel.unit);
        PutNumber<quint16>(head, 4, static_cast<quint16>(name.size()));
        bytes += head + name;
    }
    return bytes;
}

struct MadeUpMeasurement {
    quint64 picowattHours = 0;
    quint64 time = 0;
};
inline QByteArray MeterMeasurements(const std::vector<MadeUpMeasurement>& measurements) {
    QByteArray bytes;
    for (const MadeUpMeasurement& measurement : measurements) {
        QByteArray one(16, '\0');
        PutNumber(one, 0, measurement.picowattHours);
        PutNumber(one, 8, measurement.time);
        bytes += one;
    }
    return bytes;
}

// HWiNFO's texts of one sensor.
inline void AddHwInfo(std::vector<NamedText>& values, int number, const char* group, const char* label,
                      const char* shown, const char* plain) {
    const QString n = QString::number(number);
    values.push_back({QStringLiteral("Sensor") + n, QString::fromUtf8(group)});
    values.push_back({QStringLiteral("Label") + n, QString::fromUtf8(label)});
    values.push_back({QStringLiteral("Value") + n, QString::fromUtf8(shown)});
    values.push_back({QStringLiteral("ValueRaw") + n, QString::fromUtf8(plain)});
    values.push_back({QStringLiteral("Color") + n, QStringLiteral("00ff00")});
}

// A machine's: 46.9 degrees, 65.25 watts, 1234 revolutions.
inline std::vector<NamedText> HwInfoOfAMachine() {
    std::vector<NamedText> values;
    AddHwInfo(values, 0, "CPU [#0]: Made Up", "Core 0 Clock", "4,243.8 MHz", "4243.8");
    AddHwInfo(values, 3, "CPU [#0]: Made Up", "CPU (Tctl/Tdie)", "46.9 °C", "46.9");
    AddHwInfo(values, 4, "CPU [#0]: Made Up", "CPU Package Power", "65.250 W", "65.250");
    AddHwInfo(values, 9, "GPU [#0]: Made Up", "GPU Fan", "2,100 RPM", "2100");
    AddHwInfo(values, 12, "Board", "Chassis1", "870 RPM", "870");
    AddHwInfo(values, 13, "Board", "CPU", "1,234 RPM", "1234");
    AddHwInfo(values, 700, "Board", "Chassis Intrusion", "No", "0");
    return values;
}

// A sensor of LibreHardwareMonitor's page. The raw value is JSON, nothing: a release that has none.
inline QByteArray MonitorLeaf(const char* type, const char* id, const char* text, const char* value,
                              const char* raw = nullptr) {
    QByteArray leaf = QByteArray("{\"id\":7,\"Text\":\"") + text + "\",\"Min\":\"-\",\"Value\":\"" + value +
                      "\",\"Max\":\"-\",\"SensorId\":\"" + id + "\",\"Type\":\"" + type + "\"";
    if (raw != nullptr) {
        leaf += QByteArray(",\"RawValue\":") + raw;
    }
    return leaf + ",\"ImageURL\":\"images/transparent.png\",\"Children\":[]}";
}

inline QByteArray MonitorPage(const std::vector<QByteArray>& leaves) {
    QByteArray list;
    for (const QByteArray& leaf : leaves) {
        list += (list.isEmpty() ? "" : ",") + leaf;
    }
    return "{\"id\":0,\"Text\":\"Sensor\",\"Value\":\"Value\",\"Children\":[{\"id\":1,\"Text\":\"PC\","
           "\"Children\":[" +
           list + "]}]}";
}

// The same machine's page: 46.9 degrees, 65.2 watts, 1234 revolutions.
inline QByteArray MonitorPageOfAMachine() {
    return MonitorPage({
        MonitorLeaf("Fan", "/gpu-nvidia/0/fan/1", "GPU Fan", "2100 RPM"),
        MonitorLeaf("Power", "/gpu-nvidia/0/power/0", "GPU Package", "200,0 W"),
        MonitorLeaf("Fan", "/lpc/nct6798d/0/fan/0", "Fan #1", "870 RPM"),
        MonitorLeaf("Fan", "/lpc/nct6798d/0/fan/1", "CPU Fan", "1234 RPM"),
        MonitorLeaf("Load", "/amdcpu/0/load/0", "CPU Total", "12,5 %"),
        MonitorLeaf("Power", "/amdcpu/0/power/0", "Package", "65,2 W"),
        MonitorLeaf("Temperature", "/amdcpu/0/temperature/2", "Core (Tctl/Tdie)", "46,9 °C"),
    });
}

}  // namespace kivo::test
