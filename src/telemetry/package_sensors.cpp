#include "telemetry/package_sensors.h"

#include <array>
#include <utility>

namespace kivo {
namespace {

constexpr int kFirstPackage = 0;
constexpr int kPackageMeter = 1;

// Deliberate: nothing asks whether a call succeeded. The temperature of a failed one is 0, its power what the
// call before left behind.
class LibrarySensors final : public PackageSensors {
public:
    explicit LibrarySensors(EnergyLibrary::Parts parts) : m_library(std::move(parts)) {}

    bool Load() override { return m_library.Load(); }
    QString ErrorString() const override { return m_library.errorString; }

    void ReadSample() override { m_library.ReadSample(); }

    int Temperature() override {
        int degreesCelsius = 0;
        m_library.GetTemperature(kFirstPackage, &degreesCelsius);
        return degreesCelsius;
    }

    double Power() override {
        int count = 0;
        m_library.GetPowerData(kFirstPackage, kPackageMeter, m_power.data(), &count);
        return m_power[0];
    }

private:
    EnergyLibrary m_library;
    std::array<double, 3> m_power{};
};

}  // namespace

std::unique_ptr<PackageSensors> MakeLibrarySensors(const TerminationGate& allowTermination,
                                                   EnvironmentReader environment,
                                                   const QString& defaultFolder) {
    EnergyLibrary::Parts parts;
    parts.defaultFolder = defaultFolder;
    parts.environment = std::move(environment);
    parts.allowTermination = allowTermination;
    return std::make_unique<LibrarySensors>(std::move(parts));
}

}  // namespace kivo
