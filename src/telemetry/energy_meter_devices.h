#pragma once

// The package's power from Windows' devices of energy meters, for systems that have those without the
// performance counters.

#include <QByteArray>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "telemetry/energy_meter_interface.h"
#include "telemetry/sample_interval.h"
#include "telemetry/sensor_source.h"

namespace kivo {

// An open device. Used on one thread.
class EnergyMeterDevice {
public:
    EnergyMeterDevice() = default;
    EnergyMeterDevice(const EnergyMeterDevice&) = delete;
    EnergyMeterDevice& operator=(const EnergyMeterDevice&) = delete;
    virtual ~EnergyMeterDevice() = default;

    // Up to `size` bytes; nothing where the device does not answer.
    virtual std::optional<QByteArray> Ask(EnergyMeterQuestion question, int size) = 0;
};

// The seam to the system: the devices' paths, and a device by its path.
struct EnergyMeterSystem {
    struct Opened {
        std::unique_ptr<EnergyMeterDevice> device;
        bool isDenied = false;  // it is there, and this user may not open it
    };
    std::function<std::vector<QString>()> list;
    std::function<Opened(const QString& path)> open;
};

// This system's; there is one on Windows only.
EnergyMeterSystem SystemEnergyMeters();

class EnergyMeterDevices final : public SensorSource {
public:
    explicit EnergyMeterDevices(EnergyMeterSystem system);

    SourceId Id() const override { return SourceId::EnergyMeterInterface; }
    SensorReadings Read(const SampleMoment& moment) override;

private:
    // A channel of a device, once that is the package's.
    struct Meter {
        std::unique_ptr<EnergyMeterDevice> device;
        int channel = 0;
        int channelCount = 0;
        int rank = 0;
    };

    // AMD's processors have a device for each core, and one of them has the package: all are looked at.
    void FindMeter();
    std::optional<Meter> OpenMeter(const QString& path);
    Reading ReadPower(const SampleMoment& moment);
    Reading ReadMeter(const SampleMoment& moment, const EnergyMeasurement& measurement);

    const EnergyMeterSystem m_system;
    std::optional<Meter> m_meter;
    bool m_isDenied = false;
    SeldomSearch m_search;

    SampleInterval m_interval;
    std::optional<EnergyMeasurement> m_before;
    std::chrono::nanoseconds m_measuredAt{0};
    Reading m_last;
};

}  // namespace kivo
