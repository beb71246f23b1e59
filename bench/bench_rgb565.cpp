// A frame to wire order, in both orientations, beside a plain copy of as many bytes and beside turning it
// with Qt.

#include <benchmark/benchmark.h>

#include <QTransform>
#include <cstring>
#include <vector>

#include "bench_support.h"
#include "compose/rgb565.h"

using namespace kivo;

namespace {

QImage Frame(Orientation orientation) {
    QImage image(CanvasSize(orientation), QImage::Format_RGB16);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            image.setPixel(x, y, uint(x * 7 + y * 13));
        }
    }
    return image;
}

void CountBytes(benchmark::State& state) {
    state.SetBytesProcessed(int64_t(state.iterations()) * kFrameBytes);
}

void Convert(benchmark::State& state) {
    const auto orientation = Orientation(state.range(0));
    const QImage frame = Frame(orientation);
    std::vector<quint8> out(kFrameBytes);
    for (auto _ : state) {
        WriteWirePixels(frame, frame.rect(), orientation, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountBytes(state);
}

void TurnWithQtThenSwap(benchmark::State& state) {
    const QImage frame = Frame(Orientation::Portrait);
    const QTransform turn = QTransform().rotate(270);
    std::vector<quint8> out(kFrameBytes);
    for (auto _ : state) {
        const QImage turned = frame.transformed(turn);
        WriteWirePixels(turned, turned.rect(), Orientation::Landscape, out.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountBytes(state);
}

void Memcpy(benchmark::State& state) {
    const QImage frame = Frame(Orientation::Landscape);
    std::vector<quint8> out(kFrameBytes);
    for (auto _ : state) {
        std::memcpy(out.data(), frame.constBits(), kFrameBytes);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    CountBytes(state);
}

}  // namespace

BENCHMARK(Memcpy);
BENCHMARK(Convert)->Arg(0)->Arg(1)->ArgName("portrait");
BENCHMARK(TurnWithQtThenSwap);

KIVO_BENCHMARK_MAIN()
