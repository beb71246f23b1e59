// One live update, from a new text to its finished reports, for each theme; beside it what the text costs
// alone.

#include <benchmark/benchmark.h>

#include <QPainter>

#include "bench_support.h"
#include "compose/background_picture.h"
#include "compose/frame_composer.h"
#include "panel/frame_store.h"
#include "panel/panel_sender.h"
#include "pictures/picture_reader.h"

using namespace kivo;

namespace {

// A screen that has been composed once and then lives on.
struct Live {
    bench::Link link;
    QTemporaryDir folder;
    FrameStore frames{folder.filePath(QStringLiteral("whole.png"))};
    PanelSender sender{
        {link.session, link.transfers, frames, nullptr, [](int) { return QStringLiteral("20%"); },
         [](const ScreenState& state) { return FramePicture{LoadPicture(PicturePath(state))}; }}};

    explicit Live(const ScreenState& state) {
        sender.SetLoaded(state);
        sender.ComposeWholeFrame();
    }
};

const std::array<QString, 2>& TextsOf(int item) {
    static const std::array<QString, 2> loads{QStringLiteral("37%"), QStringLiteral("100%")};
    static const std::array<QString, 2> times{QStringLiteral("18:46"), QStringLiteral("18:47")};
    static const std::array<QString, 2> dates{QStringLiteral("2026.11.21"), QStringLiteral("2026.11.22")};
    static const std::array<QString, 2> powers{QStringLiteral("15w"), QStringLiteral("125w")};
    return item == Time ? times : item == Date ? dates : item == CpuPower ? powers : loads;
}

void Update(benchmark::State& state) {
    Live live(bench::ThemeOf(Theme(state.range(0)), Orientation(state.range(1))));
    const auto item = int(state.range(2));
    const quint64 before = live.link.hid.reports;
    size_t turn = 0;
    for (auto _ : state) {
        live.sender.RenderLiveItem(TextsOf(item)[turn ^= 1], item);
    }
    state.counters["reports"] =
        benchmark::Counter(double(live.link.hid.reports - before), benchmark::Counter::kAvgIterations);
}

void TextAlone(benchmark::State& state) {
    QImage canvas(48, 24, QImage::Format_RGB16);
    canvas.fill(Qt::black);
    for (auto _ : state) {
        QPainter painter(&canvas);
        painter.setPen(Qt::white);
        painter.setFont(PanelFont(18));
        painter.drawText(canvas.rect(), Qt::AlignCenter, QStringLiteral("37%"));
    }
}

void Arguments(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"theme", "portrait", "item"});
    for (const int portrait : {0, 1}) {
        benchmark->Args({0, portrait, CpuUsage});
        benchmark->Args({0, portrait, Time});
        benchmark->Args({0, portrait, Date});
        benchmark->Args({1, portrait, Time});
        benchmark->Args({1, portrait, Date});
        benchmark->Args({2, portrait, CpuPower});
        benchmark->Args({3, portrait, Time});
    }
}

}  // namespace

BENCHMARK(TextAlone);
BENCHMARK(Update)->Apply(Arguments);

KIVO_BENCHMARK_MAIN()
