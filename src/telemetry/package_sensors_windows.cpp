#include "telemetry/package_sensors.h"

namespace kivo {

std::unique_ptr<PackageSensors> MakePackageSensors(const TerminationGate& allowTermination) {
    return MakeLibrarySensors(allowTermination);
}

}  // namespace kivo
