#include "telemetry/metric_snapshot.h"

#include <QLoggingCategory>

#include <utility>

#include "telemetry/memory_load.h"
#include "telemetry/value_texts.h"

namespace kivo {
namespace {

// Silent unless asked for (QT_LOGGING_RULES="kivo.telemetry.debug=true"): it would speak twice a second.
Q_LOGGING_CATEGORY(telemetryLog, "kivo.telemetry", QtInfoMsg)

constexpr quint32 kHighestBelievable = 998;

// Negative numbers are beyond the limit too once they are taken as unsigned.
qint32 Believable(qint32 value) {
    return static_cast<quint32>(value) > kHighestBelievable ? 0 : value;
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
}

QString MetricSnapshot::GetValueText(int index) const {
    switch (index) {
        case CpuTemperature:
            return FormatTemperature(CpuTemp());
        case CpuUsage: {
            QString text = FormatCpuUsage(CpuUsed());
            qCDebug(telemetryLog) << "m_iCpuUsed" << text;
            return text;
        }
        case MemoryUsage:
            return FormatMemoryUsage(m_sources.memoryLoad());
        case Time:
            return FormatTime(m_sources.now().time);
        case CpuPower:
            return FormatPower(CpuPow(), m_language);
        case Date:
            return FormatDate(m_sources.now().date, m_language);
        case FanSpeed:
            return FormatFanSpeed(CpuTemp());
        default:
            return {};
    }
}

void MetricSnapshot::SetCpuPowClock(qint32 iPow, qint32 iClock) {
    m_iCpuPow.store(Believable(iPow), std::memory_order_relaxed);
    m_iCpuTemp.store(Believable(iClock), std::memory_order_relaxed);
}

void MetricSnapshot::SetCpuUsed(qint32 percent) {
    m_iCpuUsed.store(percent, std::memory_order_relaxed);
}

}  // namespace kivo
