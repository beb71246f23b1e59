// A whole frame: from the decoded picture to 27 reports, and its parts.

#include <benchmark/benchmark.h>

#include <cstring>

#include "bench_support.h"
#include "compose/background_picture.h"
#include "compose/frame_composer.h"
#include "compose/rgb565.h"
#include "panel/frame_store.h"
#include "pictures/picture_reader.h"

using namespace kivo;

namespace {

ItemTexts Texts() {
    return SampleTexts(InterfaceLanguage::Chinese);
}

void PictureToReports(benchmark::State& state) {
    bench::Link link;
    SkinCache skins;
    ScreenState screen = bench::ThemeOf(Theme(state.range(0)), Orientation(state.range(1)));
    const QImage picture = LoadPicture(BuiltInBackgrounds().at(0));
    for (auto _ : state) {
        const PanelBackground background = ComposeBackground(screen, picture, skins);
        const QImage frame = ComposeFrame(screen, background, Texts());
        const QByteArray pixels = WirePixels(frame, frame.rect(), screen.orientation);
        link.transfers.SendWholeImage(reinterpret_cast<const quint8*>(pixels.constData()), 0);
    }
}

// A photograph dimmed and blurred as a whole, its accent taken from it. blur in percent; 0: the accent alone.
void SoftPictureToReports(benchmark::State& state) {
    bench::Link link;
    SkinCache skins;
    ScreenState screen = bench::ThemeOf(Theme::Default, Orientation::Landscape);
    screen.layout.accentFromPicture = true;
    screen.layout.blur = int(state.range(0));
    screen.layout.dim = screen.layout.blur > 0 ? 30 : 0;
    const QImage picture = LoadPicture(BuiltInBackgrounds().at(0));
    for (auto _ : state) {
        const PanelBackground background = ComposeBackground(screen, picture, skins);
        const QImage frame = ComposeFrame(screen, background, Texts());
        const QByteArray pixels = WirePixels(frame, frame.rect(), screen.orientation);
        link.transfers.SendWholeImage(reinterpret_cast<const quint8*>(pixels.constData()), 0);
    }
}

// A step of the window's slider: another blur and with it another accent, in the preview's size.
void PreviewWhileSliding(benchmark::State& state) {
    SkinCache skins;
    ScreenState screen = bench::ThemeOf(Theme::Default, Orientation::Landscape);
    screen.layout.accentFromPicture = state.range(0) != 0;
    const QImage picture = LoadPicture(BuiltInBackgrounds().at(0));
    for (auto _ : state) {
        screen.layout.blur = screen.layout.blur % 100 + 10;
        benchmark::DoNotOptimize(ComposeMagnifiedBackground(screen, picture, skins, QSize(433, 230)));
    }
}

// What a picture of the panel's size costs to copy.
void CopyFrame(benchmark::State& state) {
    QImage from(CanvasSize(Orientation::Landscape), QImage::Format_RGB32);
    from.fill(Qt::white);
    QImage to = from.copy();
    for (auto _ : state) {
        std::memcpy(to.bits(), from.constBits(), size_t(from.sizeInBytes()));
        benchmark::ClobberMemory();
    }
}

void CustomPictureToReports(benchmark::State& state) {
    bench::Link link;
    SkinCache skins;
    ThemeState themes = FactoryThemeState(InterfaceLanguage::Chinese);
    themes.mode = 1;
    const ScreenState screen = MakeScreenState(themes, FactorySlotTable(), 2, InterfaceLanguage::Chinese);
    const QImage picture = LoadPicture(BuiltInBackgrounds().at(3));
    for (auto _ : state) {
        const PanelBackground background = ComposeBackground(screen, picture, skins);
        const QImage frame = ComposeFrame(screen, background, Texts());
        const QByteArray pixels = WirePixels(frame, frame.rect(), screen.orientation);
        link.transfers.SendWholeImage(reinterpret_cast<const quint8*>(pixels.constData()), 0);
    }
}

void DecodePicture(benchmark::State& state) {
    const QString path = BuiltInBackgrounds().at(0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(LoadPicture(path));
    }
}

void ScalePicture(benchmark::State& state) {
    const QImage picture = LoadPicture(BuiltInBackgrounds().at(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(PlacedPicture(picture, AreaFrameSize(Orientation::Landscape),
                                               Orientation::Landscape, LayoutRecord()));
    }
}

void SaveBackground(benchmark::State& state) {
    const QTemporaryDir folder;
    FrameStore store(folder.filePath(QStringLiteral("whole.png")));
    SkinCache skins;
    const ScreenState screen = bench::ThemeOf(Theme::Default, Orientation::Landscape);
    const SharedFrame frame =
        MakePanelFrame(screen, ComposeBackground(screen, LoadPicture(BuiltInBackgrounds().at(0)), skins));
    for (auto _ : state) {
        store.Save(frame);
    }
}

}  // namespace

BENCHMARK(PictureToReports)
    ->ArgNames({"theme", "portrait"})
    ->ArgsProduct({{0, 1, 2, 3}, {0, 1}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(SoftPictureToReports)->ArgName("blur")->Arg(0)->Arg(10)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(PreviewWhileSliding)->ArgName("accent")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(CopyFrame)->Unit(benchmark::kMicrosecond);
BENCHMARK(CustomPictureToReports)->Unit(benchmark::kMillisecond);
BENCHMARK(DecodePicture)->Unit(benchmark::kMillisecond);
BENCHMARK(ScalePicture)->Unit(benchmark::kMillisecond);
BENCHMARK(SaveBackground)->Unit(benchmark::kMillisecond);

KIVO_BENCHMARK_MAIN()
