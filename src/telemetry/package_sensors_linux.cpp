#include "telemetry/package_sensors_linux.h"

#include <utility>

namespace kivo {
namespace {

// The energy library if there is one, which takes an environment that names it; else the kernel's sensors.
// While there are neither both are looked for.
class LibraryElseSysfs final : public PackageSensors {
public:
    LibraryElseSysfs(const TerminationGate& allowTermination, EnvironmentReader environment,
                     SysfsPlaces places)
        : m_library(MakeLibrarySensors(allowTermination, std::move(environment))),
          m_sysfs(std::move(places)) {}

    bool Load() override {
        for (PackageSensors* sensors : {m_library.get(), static_cast<PackageSensors*>(&m_sysfs)}) {
            if (sensors->Load()) {
                m_chosen = sensors;
                return true;
            }
        }
        return false;
    }
    QString ErrorString() const override {
        return m_library->ErrorString() + QLatin1Char(' ') + m_sysfs.ErrorString();
    }

    void ReadSample() override { m_chosen->ReadSample(); }
    int Temperature() override { return m_chosen->Temperature(); }
    double Power() override { return m_chosen->Power(); }

private:
    const std::unique_ptr<PackageSensors> m_library;
    SysfsSensors m_sysfs;
    PackageSensors* m_chosen = &m_sysfs;
};

}  // namespace

std::unique_ptr<PackageSensors> MakeLibraryElseSysfs(const TerminationGate& allowTermination,
                                                     EnvironmentReader environment, SysfsPlaces places) {
    return std::make_unique<LibraryElseSysfs>(allowTermination, std::move(environment), std::move(places));
}

std::unique_ptr<PackageSensors> MakePackageSensors(const TerminationGate& allowTermination) {
    return MakeLibraryElseSysfs(allowTermination, {}, {});
}

}  // namespace kivo
