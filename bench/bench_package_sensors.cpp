// What the sensors' thread does once a second, over files made like the kernel's: one sample of power and
// temperature, or, on a machine without sensors, looking for them. Beside it the same two files read with
// QFile, and what the window asks of the energy library when it is built.

#include <benchmark/benchmark.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "telemetry/sysfs_sensors.h"

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
    }

    QString Counter() const { return Path("powercap/intel-rapl:0/energy_uj"); }
    QString Temperature() const { return Path("hwmon/hwmon3/temp1_input"); }
    SysfsPlaces Places() const { return {Path("powercap"), Path("hwmon")}; }
    // With all but the sensors of the processor.
    SysfsPlaces PlacesWithoutSensors() const {
        QDir(Path("hwmon/hwmon3")).removeRecursively();
        QDir(Path("powercap/intel-rapl:0")).removeRecursively();
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

void OneSample(benchmark::State& state) {
    const Machine machine;
    SysfsSensors sensors(machine.Places());
    if (!sensors.Load()) {
        qFatal("The machine has no sensors.");
    }
    for (auto _ : state) {
        sensors.ReadSample();
        benchmark::DoNotOptimize(sensors.Temperature());
        benchmark::DoNotOptimize(sensors.Power());
    }
    if (sensors.Temperature() != 45) {
        qFatal("The temperature is wrong.");
    }
}

void TheirTwoFilesWithQFile(benchmark::State& state) {
    const Machine machine;
    for (auto _ : state) {
        for (const QString& path : {machine.Counter(), machine.Temperature()}) {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly)) {
                benchmark::DoNotOptimize(file.readAll().trimmed().toLongLong());
            }
        }
    }
}

void LookingInVain(benchmark::State& state) {
    const Machine machine;
    SysfsSensors sensors(machine.PlacesWithoutSensors());
    for (auto _ : state) {
        if (sensors.Load()) {
            qFatal("The machine has sensors.");
        }
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
BENCHMARK(TheirTwoFilesWithQFile);
BENCHMARK(LookingInVain);
BENCHMARK(ProbingForTheLibrary);

BENCHMARK_MAIN();
