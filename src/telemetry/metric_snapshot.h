#pragma once

#include <QString>

#include <array>
#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

#include "model/interface_language.h"
#include "model/item_table.h"
#include "telemetry/local_time.h"
#include "telemetry/reading.h"

namespace kivo {

// Where the snapshot reads what is not handed in; called on the thread that asks for a text or hands a
// reading in.
struct MetricSources {
    std::function<LocalTime()> now;                            // Default: ReadLocalTime.
    std::function<std::optional<int>()> memoryLoad;            // Percent. Default: ReadMemoryLoad.
    std::function<std::chrono::nanoseconds()> awakeTime = {};  // Default: SystemClocks::awake.
};

// The latest reading of every live value, and its text. Readings come in from the GUI thread (the sensors')
// and from the threads that send (utilisation); texts are asked for on all of these. A quantity that no
// sensor has measured, or renewed for ten seconds, has a text of dashes, and so have loads that could not be
// read for as long. A fan that is not measured follows the temperature; a load that nobody has handed in
// counts as 0.
class MetricSnapshot {
public:
    // Empty members of `sources` stand for the defaults.
    explicit MetricSnapshot(InterfaceLanguage language, MetricSources sources = {});

    // The text of a live value (LiveValue), freshly made; empty for OtherText, OtherText2 and any other
    // number.
    QString GetValueText(int index) const;
    // All of them, by live-value index.
    std::array<QString, kLiveValueCount> ValueTexts() const;

    void SetReadings(const SensorReadings& readings);
    // Values of sensors that are older than kLongestSilence are Silent.
    SensorReadings Readings() const;

    // Package power in watts and package temperature in degrees Celsius, for a quantity of which SetReadings
    // has brought nothing: neither a value nor the reason why there is none. Deliberate: the temperature
    // arrives in the argument that is named after a clock. Each is 0 where it is negative or above 998, and a
    // temperature of 0 is none.
    void SetCpuPowClock(qint32 iPow, qint32 iClock);

    // Percent, at most 100, as the sampler gives it: stored as it is.
    void SetCpuUsed(qint32 percent);
    // The counter could not be read, and counts as 0; after ten seconds of that there is no load.
    void SetCpuUnreadable();
    qint32 CpuUsed() const;

private:
    // Since when something could not be read; nothing while it can be.
    using Outage = std::optional<std::chrono::nanoseconds>;

    Reading Current(Quantity quantity) const;
    bool IsLong(const Outage& outage) const;
    QString TemperatureText() const;
    QString PowerText() const;
    QString FanText() const;
    QString LoadText() const;
    QString MemoryText() const;

    const InterfaceLanguage m_language;
    MetricSources m_sources;

    mutable std::mutex m_mutex;  // over all below
    SensorReadings m_readings;
    std::chrono::nanoseconds m_readAt{0};
    qint32 m_iCpuUsed = 0;
    Outage m_loadOutage;
    mutable int m_memoryLoad = 0;  // as it was read last
    mutable Outage m_memoryOutage;
};

}  // namespace kivo
