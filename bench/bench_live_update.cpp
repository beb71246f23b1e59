// One live update, from a new text to its finished reports, for each theme; beside it what the text costs
// alone.

#include <benchmark/benchmark.h>

#include <QPainter>

#include "bench_support.h"
#include "compose/background_picture.h"
#include "compose/frame_composer.h"
#include "compose/free_text.h"
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

void UpdateOn(benchmark::State& state, const ScreenState& screen, int item) {
    Live live(screen);
    const quint64 before = live.link.hid.reports;
    size_t turn = 0;
    for (auto _ : state) {
        live.sender.RenderLiveItem(TextsOf(item)[turn ^= 1], item);
    }
    state.counters["reports"] =
        benchmark::Counter(double(live.link.hid.reports - before), benchmark::Counter::kAvgIterations);
}

void Update(benchmark::State& state) {
    UpdateOn(state, bench::ThemeOf(Theme(state.range(0)), Orientation(state.range(1))), int(state.range(2)));
}

// None, one that stands in its row, one that fits nowhere.
const std::array<QString, 3> kFreeTexts{QString(), QStringLiteral("Hello desk"),
                                        QStringLiteral("人人生而自由在尊严和权利上一律平等").repeated(4)};

void CustomUpdate(benchmark::State& state) {
    UpdateOn(state, bench::CustomOf(kFreeTexts[size_t(state.range(0))], 2, Orientation(state.range(1))),
             int(state.range(2)));
}

// As it is typed: each text is another one.
void PlaceFreeText(benchmark::State& state) {
    ScreenState screen = bench::CustomOf(kFreeTexts[size_t(state.range(0))], 2, Orientation(state.range(1)));
    const QString typed = screen.layout.freeText;
    int turn = 0;
    for (auto _ : state) {
        screen.layout.freeText = typed + QString::number(100 + ++turn % 900);
        benchmark::DoNotOptimize(LayOutFreeText(screen));
    }
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

void CustomArguments(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"text", "portrait", "item"});
    for (const int portrait : {0, 1}) {
        for (const int text : {0, 1, 2}) {
            benchmark->Args({text, portrait, CpuUsage});
        }
        benchmark->Args({1, portrait, Time});
    }
}

}  // namespace

BENCHMARK(TextAlone);
BENCHMARK(CustomUpdate)->Apply(CustomArguments);
BENCHMARK(PlaceFreeText)->ArgNames({"text", "portrait"})->ArgsProduct({{1, 2}, {0, 1}});
BENCHMARK(Update)->Apply(Arguments);

KIVO_BENCHMARK_MAIN()
