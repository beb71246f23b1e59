#include "main/sensor_report.h"

#include <QThread>

#include "telemetry/cpu_counter.h"
#include "telemetry/cpu_usage_sampler.h"
#include "telemetry/metric_snapshot.h"
#include "window/sensor_table.h"

namespace kivo {

namespace {

constexpr int kSamples = 3;  // one to begin with, one for whoever answers late
constexpr unsigned long kBetweenMs = 1000;

}  // namespace

QString ReadSensorReport(const PackageSensorsFactory& makeSensors) {
    MetricSnapshot snapshot(CurrentInterfaceLanguage());
    CpuUsageSampler load(MakeCpuCounter);
    load.SetMode(0);
    const std::unique_ptr<PackageSensors> sensors = makeSensors();
    for (int sample = 0; sample < kSamples; ++sample) {
        if (sample > 0) {
            QThread::msleep(kBetweenMs);
        }
        sensors->Load();
        sensors->ReadSample();
        snapshot.SetCpuUsed(load.Sample());
    }
    if (!load.HasRead()) {
        snapshot.SetCpuUnreadable();
    }
    snapshot.SetReadings(sensors->Readings());
    return SensorTableText(SensorTable(snapshot.ValueTexts(), snapshot.Readings()));
}

}  // namespace kivo
