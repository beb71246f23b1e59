#include "window/sensor_table.h"
#include "window/window_text.h"

#include <algorithm>
#include <array>

namespace kivo {

namespace {

QString GapText(ReadingGap gap) {
    switch (gap) {
        case ReadingGap::None:
            return {};
        case ReadingGap::NotRead:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "尚未读取"));
        case ReadingGap::NoSource:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "没有可用的传感器"));
        case ReadingGap::NoRight:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "没有读取权限"));
        case ReadingGap::NotRunning:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "未运行"));
        case ReadingGap::NotHandedOn:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "正在运行，但没有提供读数"));
        case ReadingGap::Silent:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "没有响应"));
        case ReadingGap::Unbelievable:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "读数不可信"));
    }
    return {};
}

// A sign of Chinese takes two places of a terminal.
int Width(const QString& text) {
    constexpr ushort kFirstWide = 0x2E80;
    return int(text.size() + std::count_if(text.begin(), text.end(),
                                           [](QChar sign) { return sign.unicode() >= kFirstWide; }));
}

SensorRow MeasuredRow(Quantity quantity, const Reading& reading) {
    return {{}, {}, SensorPhrase(reading), SensorHelp(quantity, reading)};
}

// A fan that nothing measures follows the temperature.
SensorRow FanRow(const SensorReadings& readings) {
    const Reading& fan = readings[Quantity::FanSpeed];
    if (fan.value || !readings[Quantity::Temperature].value) {
        return MeasuredRow(Quantity::FanSpeed, fan);
    }
    return {{},
            {},
            WindowText(QT_TRANSLATE_NOOP("MainWindow", "由温度推算")),
            SensorHelp(Quantity::FanSpeed, fan)};
}

// What a source does not tell, in one phrase.
QString GapPhrase(const QString& source, ReadingGap gap) {
    return WindowText(QT_TRANSLATE_NOOP("MainWindow", "%1：%2")).arg(source, GapText(gap));
}

SensorRow SystemRow(const QString& text) {
    const QString system = WindowText(QT_TRANSLATE_NOOP("MainWindow", "操作系统"));
    return {
        {}, {}, text.startsWith(QLatin1String("--")) ? GapPhrase(system, ReadingGap::Silent) : system, {}};
}

// The panel's text, with a unit as people write it. The panel has no room for a fan's.
QString NowText(int item, const QString& text) {
    if (item != CpuPower && item != FanSpeed) {
        return text;
    }
    QString number = text;
    while (!number.isEmpty() && !number.at(number.size() - 1).isDigit()) {
        number.chop(1);
    }
    if (number.isEmpty()) {
        return QStringLiteral("--");
    }
    return (item == CpuPower ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "%1 瓦"))
                             : WindowText(QT_TRANSLATE_NOOP("MainWindow", "%1 转/分")))
        .arg(number);
}

SensorRow Row(int item, const QString& text, const SensorReadings& readings) {
    switch (item) {
        case CpuTemperature:
            return MeasuredRow(Quantity::Temperature, readings[Quantity::Temperature]);
        case CpuPower:
            return MeasuredRow(Quantity::Power, readings[Quantity::Power]);
        case FanSpeed:
            return FanRow(readings);
        default:
            return SystemRow(text);
    }
}

}  // namespace

std::vector<SensorRow> SensorTable(const ItemTexts& texts, const SensorReadings& readings) {
    const ItemTexts names = ItemCaptions();
    std::vector<SensorRow> rows;
    for (const int item : kLiveItems) {
        SensorRow row = Row(item, texts[size_t(item)], readings);
        row.name = names[size_t(item)];
        row.now = NowText(item, texts[size_t(item)].trimmed());
        rows.push_back(row);
    }
    return rows;
}

QString SensorPhrase(const Reading& reading) {
    const QString name = SourceName(reading.source);
    if (reading.value) {
        return reading.isStuck ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "%1（十分钟没有变化）")).arg(name)
                               : name;
    }
    return name.isEmpty() ? GapText(reading.gap) : GapPhrase(name, reading.gap);
}

QString SourceName(SourceId source) {
    switch (source) {
        case SourceId::None:
            return {};
        case SourceId::EnergyLibrary:
            return QStringLiteral("Intel Power Gadget");
        case SourceId::PowerCap:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "内核能耗计数器"));
        case SourceId::EnergyDriver:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "处理器能耗驱动"));
        case SourceId::HardwareMonitor:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "内核硬件监控"));
        case SourceId::ProcessorZone:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "处理器温区"));
        case SourceId::BoardMonitor:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "主板传感器"));
        case SourceId::EnergyMeterCounters:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "Windows 能耗计数器"));
        case SourceId::EnergyMeterInterface:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "Windows 能耗表"));
        case SourceId::HwInfo:
            return QStringLiteral("HWiNFO");
        case SourceId::LibreHardwareMonitor:
            return QStringLiteral("LibreHardwareMonitor");
        case SourceId::CoreTemp:
            return QStringLiteral("Core Temp");
        case SourceId::FirmwareZone:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "主板温区"));
    }
    return {};
}

QString SensorTableText(const std::vector<SensorRow>& rows) {
    std::array<int, 2> widths{};
    for (const SensorRow& row : rows) {
        widths[0] = std::max(widths[0], Width(row.name));
        widths[1] = std::max(widths[1], Width(row.now));
    }
    constexpr int kGap = 2;
    const auto padded = [](const QString& text, int width) {
        return text + QString(width - Width(text) + kGap, QLatin1Char(' '));
    };
    QString table;
    for (const SensorRow& row : rows) {
        table += padded(row.name, widths[0]) + padded(row.now, widths[1]) + row.source + QLatin1Char('\n');
        if (!row.help.isEmpty()) {
            table +=
                QString(widths[0] + widths[1] + 2 * kGap, QLatin1Char(' ')) + row.help + QLatin1Char('\n');
        }
    }
    return table;
}

}  // namespace kivo
