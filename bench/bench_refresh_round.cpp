// What one refresh round costs besides drawing: reading the counters, making the texts, comparing them, the
// clock report. Beside it the two reads of /proc that any such program makes.

#include <benchmark/benchmark.h>

#include <QFile>

#include "bench_support.h"
#include "telemetry/cpu_usage_sampler.h"
#include "telemetry/memory_load.h"
#include "telemetry/metric_snapshot.h"

using namespace kivo;

namespace {

void Bookkeeping(benchmark::State& state) {
    bench::Link link;
    MetricSnapshot snapshot(InterfaceLanguage::Chinese);
    CpuUsageSampler sampler;
    sampler.SetMode(0);
    ItemTexts last;
    for (auto _ : state) {
        link.transfers.SendTimeSync();
        for (int index = 0; index < kLiveValueCount; ++index) {
            if (index == CpuUsage) {
                snapshot.SetCpuUsed(sampler.Sample());
            }
            const QString text = snapshot.GetValueText(index);
            if (!text.isEmpty() && text != last[size_t(index)]) {
                last[size_t(index)] = text;
            }
        }
    }
}

void TextsWithoutCounters(benchmark::State& state) {
    const MetricSnapshot snapshot(InterfaceLanguage::Chinese, {{}, [] { return 33; }});
    for (auto _ : state) {
        for (int index = 0; index < kLiveValueCount; ++index) {
            benchmark::DoNotOptimize(snapshot.GetValueText(index));
        }
    }
}

void ReadProcFiles(benchmark::State& state) {
    for (auto _ : state) {
        for (const QString& path : {QStringLiteral("/proc/stat"), QStringLiteral("/proc/meminfo")}) {
            QFile file(path);
            if (file.open(QIODevice::ReadOnly)) {
                benchmark::DoNotOptimize(file.readAll());
            }
        }
    }
}

}  // namespace

BENCHMARK(Bookkeeping);
BENCHMARK(TextsWithoutCounters);
BENCHMARK(ReadProcFiles);

KIVO_BENCHMARK_MAIN()
