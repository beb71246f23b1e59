// What the sensors' thread does once a second, over files made like the kernel's: one sample of power,
// temperature and fan, or, on a machine without sensors, looking for them. Beside it all sources read at
// once, the files read with QFile, and what the window asks of the energy library when it is built.

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "telemetry/package_sensors.h"
#include "telemetry/sysfs_sources.h"

using namespace kivo;

namespace {

// A processor with a package and eight cores among the usual other sensors.
class Machine {
public:
    Machine() {
        const QString counter = QStringLiteral("powercap/intel-rapl:0");
        Write(counter, "name", "package-0");
        Write(counter, "max_energy_range_uj", "262143328850");
        Write(counter, "energy_uj", "123456789012");
        Write(counter + QStringLiteral(":0"), "name", "core");
        int number = 0;
        for (const char* driver : {"acpitz", "nvme", "iwlwifi_1", "coretemp"}) {
            const QString folder = QStringLiteral("hwmon/hwmon%1").arg(number++);
            Write(folder, "name", driver);
            Write(folder, "temp1_input", "45000");
        }
        Write(QStringLiteral("hwmon/hwmon3"), "temp1_label", "Package id 0");
        for (int core = 0; core < 8; ++core) {
            Write(QStringLiteral("hwmon/hwmon3"), qPrintable(QStringLiteral("temp%1_input").arg(core + 2)),
                  "41000");
        }
        Write(QStringLiteral("hwmon/hwmon4"), "name", "nct6775");
        for (int fan = 1; fan <= 7; ++fan) {
            Write(QStringLiteral("hwmon/hwmon4"), qPrintable(QStringLiteral("fan%1_input").arg(fan)),
                  fan == 2 ? "1184" : "0");
        }
        Write(QStringLiteral("thermal/thermal_zone0"), "type", "x86_pkg_temp");
        Write(QStringLiteral("thermal/thermal_zone0"), "temp", "45000");
    }

    QString Counter() const { return Path("powercap/intel-rapl:0/energy_uj"); }
    QString Temperature() const { return Path("hwmon/hwmon3/temp1_input"); }
    QString Fan() const { return Path("hwmon/hwmon4/fan2_input"); }
    SysfsPlaces Places() const { return {Path("powercap"), Path("hwmon"), Path("thermal")}; }
    // With all but the sensors of the processor.
    SysfsPlaces PlacesWithoutSensors() const {
        QDir(Path("hwmon/hwmon3")).removeRecursively();
        QDir(Path("hwmon/hwmon4")).removeRecursively();
        QDir(Path("powercap/intel-rapl:0")).removeRecursively();
        QDir(Path("thermal/thermal_zone0")).removeRecursively();
        return Places();
    }

private:
    QString Path(const char* relative) const { return m_folder.filePath(QLatin1String(relative)); }

    void Write(const QString& folder, const char* name, const QByteArray& line) const {
        const QString path = m_folder.filePath(folder);
        QFile file(path + QLatin1Char('/') + QLatin1String(name));
        if (!QDir().mkpath(path) || !file.open(QIODevice::WriteOnly) || file.write(line + '\n') < 0) {
            qFatal("Cannot write %s.", qUtf8Printable(file.fileName()));
        }
    }

    const QTemporaryDir m_folder;
};

// Sensors of these places, with a clock that goes on a second with each sample.
std::unique_ptr<PackageSensors> MakeSensors(const SysfsPlaces& places) {
    SensorParts parts;
    parts.sources = MakeSysfsSources(places);
    parts.clocks = [now = std::chrono::seconds(1000)]() mutable {
        now += std::chrono::seconds(1);
        return SystemClocks{now, std::chrono::seconds(0)};
    };
    return MakeSensorsFrom(std::move(parts));
}

void OneSample(benchmark::State& state) {
    const Machine machine;
    const auto sensors = MakeSensors(machine.Places());
    for (auto _ : state) {
        sensors->Load();
        sensors->ReadSample();
        benchmark::DoNotOptimize(sensors->Readings());
    }
    if (sensors->Numbers().value_or(PackageNumbers{}).degreesCelsius != 45) {
        qFatal("The temperature is wrong.");
    }
}

void AllSources(benchmark::State& state) {
    const Machine machine;
    const SensorSources sources = MakeSysfsSources(machine.Places());
    SampleMoment moment;
    for (auto _ : state) {
        moment.now += std::chrono::seconds(1);
        for (const auto& source : sources) {
            benchmark::DoNotOptimize(source->Read(moment));
        }
    }
}

void TheirFilesWithQFile(benchmark::State& state) {
    const Machine machine;
    for (auto _ : state) {
        for (const QString& path : {machine.Counter(), machine.Temperature(), machine.Fan()}) {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly)) {
                benchmark::DoNotOptimize(file.readAll().trimmed().toLongLong());
            }
        }
    }
}

void LookingInVain(benchmark::State& state) {
    const Machine machine;
    const auto sensors = MakeSensors(machine.PlacesWithoutSensors());
    for (auto _ : state) {
        sensors->Load();
        sensors->ReadSample();
        benchmark::DoNotOptimize(sensors->Readings());
    }
    if (sensors->Numbers()) {
        qFatal("The machine has sensors.");
    }
}

// What the window's constructor does where no library is installed.
void ProbingForTheLibrary(benchmark::State& state) {
    for (auto _ : state) {
        EnergyLibrary library;
        if (library.Load()) {
            qFatal("The machine has the library.");
        }
        library.Release();
    }
}

}  // namespace

BENCHMARK(OneSample);
BENCHMARK(AllSources);
BENCHMARK(TheirFilesWithQFile);
BENCHMARK(LookingInVain);
BENCHMARK(ProbingForTheLibrary);

BENCHMARK_MAIN();
