#include "telemetry/metric_snapshot.h"

#include <QLoggingCategory>

#include <utility>

#include "model/item_table.h"
#include "telemetry/memory_load.h"
#include "telemetry/system_clocks.h"
#include "telemetry/value_texts.h"

namespace kivo {
namespace {

// Silent unless asked for (QT_LOGGING_RULES="kivo.telemetry.debug=true"): it would speak twice a second.
Q_LOGGING_CATEGORY(telemetryLog, "kivo.telemetry", QtInfoMsg)

// Negative numbers are beyond the limit too once they are taken as unsigned.
qint32 Believable(qint32 value) {
    return static_cast<quint32>(value) > quint32(kMostWatts) ? 0 : value;
}

// Whether no sensor has said anything of it, neither a value nor why there is none.
bool IsUntouched(const Reading& reading) {
    return reading.source == SourceId::None &&
           (reading.gap == ReadingGap::None || reading.gap == ReadingGap::NotRead);
}

// A number where no sensor has spoken.
void Fill(Reading& reading, std::optional<double> value) {
    if (IsUntouched(reading)) {
        reading = value ? Reading::Of(*value, SourceId::None) : Reading::Without(ReadingGap::NotRead);
    }
}

// Cut off, as power always was; what is measured is in range.
int Whole(const Reading& reading) {
    return static_cast<int>(*reading.value);
}

}  // namespace

MetricSnapshot::MetricSnapshot(InterfaceLanguage language, MetricSources sources)
    : m_language(language), m_sources(std::move(sources)) {
    if (!m_sources.now) {
        m_sources.now = ReadLocalTime;
    }
    if (!m_sources.memoryLoad) {
        m_sources.memoryLoad = ReadMemoryLoad;
    }
    if (!m_sources.awakeTime) {
        m_sources.awakeTime = [] { return ReadSystemClocks().awake; };
    }
}

QString MetricSnapshot::GetValueText(int index) const {
    // Without a default, so that the compiler asks for a new item.
    switch (static_cast<LiveValue>(index)) {
        case CpuTemperature:
            return TemperatureText();
        case CpuUsage: {
            QString text = LoadText();
            qCDebug(telemetryLog) << "m_iCpuUsed" << text;
            return text;
        }
        case MemoryUsage:
            return MemoryText();
        case Time:
            return FormatTime(m_sources.now().time);
        case CpuPower:
            return PowerText();
        case Date:
            return FormatDate(m_sources.now().date, m_language);
        case FanSpeed:
            return FanText();
        case OtherText:
        case OtherText2:
            break;
    }
    return {};
}

std::array<QString, kLiveValueCount> MetricSnapshot::ValueTexts() const {
    std::array<QString, kLiveValueCount> texts;
    for (int index = 0; index < kLiveValueCount; ++index) {
        texts[size_t(index)] = GetValueText(index);
    }
    return texts;
}

QString MetricSnapshot::TemperatureText() const {
    const Reading temperature = Current(Quantity::Temperature);
    return temperature.value ? FormatTemperature(Whole(temperature)) : NoTemperatureText();
}

QString MetricSnapshot::PowerText() const {
    const Reading power = Current(Quantity::Power);
    return power.value ? FormatPower(Whole(power), m_language) : NoPowerText(m_language);
}

QString MetricSnapshot::FanText() const {
    if (const Reading fan = Current(Quantity::FanSpeed); fan.value) {
        return FormatMeasuredFan(Whole(fan));
    }
    const Reading temperature = Current(Quantity::Temperature);
    return temperature.value ? FormatFanSpeed(Whole(temperature)) : NoFanText();
}

QString MetricSnapshot::LoadText() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return IsLong(m_loadOutage) ? NoPercentText() : FormatCpuUsage(m_iCpuUsed);
}

QString MetricSnapshot::MemoryText() const {
    const std::optional<int> load = m_sources.memoryLoad();
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (load) {
        m_memoryLoad = *load;
        m_memoryOutage.reset();
    } else if (!m_memoryOutage) {
        m_memoryOutage = m_sources.awakeTime();
    }
    return IsLong(m_memoryOutage) ? NoPercentText() : FormatMemoryUsage(m_memoryLoad);
}

bool MetricSnapshot::IsLong(const Outage& outage) const {
    return outage && m_sources.awakeTime() - *outage >= kLongestSilence;
}

void MetricSnapshot::SetReadings(const SensorReadings& readings) {
    const auto now = m_sources.awakeTime();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_readings = readings;
    m_readAt = now;
}

SensorReadings MetricSnapshot::Readings() const {
    SensorReadings readings;
    for (const Quantity quantity : kQuantities) {
        readings[quantity] = Current(quantity);
    }
    return readings;
}

Reading MetricSnapshot::Current(Quantity quantity) const {
    const auto now = m_sources.awakeTime();
    const std::lock_guard<std::mutex> lock(m_mutex);
    const Reading& reading = m_readings[quantity];
    // A number that SetCpuPowClock brought alone has no source, and stands until the next one.
    const bool isRead = reading.value && reading.source != SourceId::None;
    const bool isOld = isRead && now - m_readAt >= kLongestSilence;
    return isOld ? Reading::Without(ReadingGap::Silent, reading.source) : reading;
}

void MetricSnapshot::SetCpuPowClock(qint32 iPow, qint32 iClock) {
    const qint32 watts = Believable(iPow);
    const qint32 degrees = Believable(iClock);
    const std::lock_guard<std::mutex> lock(m_mutex);
    Fill(m_readings[Quantity::Power], watts);
    Fill(m_readings[Quantity::Temperature], degrees == 0 ? std::nullopt : std::optional<double>(degrees));
}

void MetricSnapshot::SetCpuUsed(qint32 percent) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_iCpuUsed = percent;
    m_loadOutage.reset();
}

void MetricSnapshot::SetCpuUnreadable() {
    const auto now = m_sources.awakeTime();
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_iCpuUsed = 0;
    if (!m_loadOutage) {
        m_loadOutage = now;
    }
}

qint32 MetricSnapshot::CpuUsed() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_iCpuUsed;
}

}  // namespace kivo
