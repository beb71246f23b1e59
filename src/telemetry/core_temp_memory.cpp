#include "telemetry/core_temp_memory.h"

#include <algorithm>
#include <optional>

#include "telemetry/byte_fields.h"

namespace kivo {
namespace {

constexpr int kTjMax = 1024;
constexpr int kCores = 1536;
constexpr int kTemperatures = 1544;
constexpr int kIsFahrenheit = 2684;
constexpr int kIsDistance = 2685;
constexpr int kVersion = 2688;
constexpr int kSizeOfFirstVersion = 2692;
constexpr quint32 kMostCores = 256;

constexpr double kFahrenheitOfFreezing = 32;
constexpr double kCelsiusOfFahrenheit = 5.0 / 9.0;

bool IsWhole(const QByteArray& memory) {
    if (memory.size() < kSizeOfFirstVersion) {
        return false;
    }
    const auto version = NumberAt<quint32>(memory, kVersion);
    return version == 1 || (version > 1 && memory.size() >= kCoreTempMemorySize);
}

Reading ReadTemperature(const QByteArray& memory) {
    const Reading none = Reading::Without(ReadingGap::NoSource, SourceId::CoreTemp);
    if (!IsWhole(memory)) {
        return none;
    }
    const auto cores = NumberAt<quint32>(memory, kCores);
    const auto tjMax = NumberAt<quint32>(memory, kTjMax);
    const bool isFahrenheit = memory[kIsFahrenheit] != 0;
    const bool isDistance = memory[kIsDistance] != 0;
    if (cores == 0 || cores > kMostCores || (isDistance && (isFahrenheit || tjMax == 0))) {
        return none;
    }
    std::optional<double> hottest;
    for (int core = 0; core < static_cast<int>(cores); ++core) {
        const auto number =
            static_cast<double>(FloatAt(memory, kTemperatures + core * static_cast<int>(sizeof(float))));
        double degrees = number;
        if (isDistance) {
            degrees = tjMax - number;
        } else if (isFahrenheit) {
            degrees = (number - kFahrenheitOfFreezing) * kCelsiusOfFahrenheit;
        }
        // A core that sleeps may tell 0.
        if (IsBelievable(Quantity::Temperature, degrees)) {
            hottest = std::max(hottest.value_or(degrees), degrees);
        }
    }
    return hottest ? Reading::Of(*hottest, SourceId::CoreTemp)
                   : Reading::Without(ReadingGap::Unbelievable, SourceId::CoreTemp);
}

}  // namespace

SensorReadings ReadCoreTempMemory(const QByteArray& memory) {
    SensorReadings readings = SensorReadings::AllWithout(ReadingGap::NoSource, SourceId::CoreTemp);
    readings[Quantity::Temperature] = ReadTemperature(memory);
    return readings;
}

}  // namespace kivo
