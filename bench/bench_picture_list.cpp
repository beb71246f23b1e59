// Opening a picture library: reading its settings, filling its rows and showing them, up to the first paint;
// and from there to the icons. The pictures are JPEGs of twelve megapixels.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QWidget>

#include <cstdlib>
#include <memory>
#include <utility>

#include "photographs.h"
#include "pictures/picture_list.h"
#include "pictures/picture_reader.h"
#include "pictures/stored_pictures.h"
#include "pictures/thumbnail_cache.h"
#include "pictures/thumbnail_picture.h"
#include "resources/resources.h"
#include "widgets/my_list_widget.h"

using namespace kivo;
using namespace kivo::bench;

namespace {

constexpr QRect kListAt(524, 286, 390, 240);

// This program once more, as the one that is measured.
constexpr char kOpenOnce[] = "--open-once";

void StoreAsManyAsTold(const benchmark::State& state) {
    WriteStoredPictures(AllPhotographs().First(int(state.range(0))), {});
}

struct Opened {
    explicit Opened(PictureSource::Readers readers = FileReaders())
        : view(new MyListWidget(&window)), source(std::move(readers)), list(view, source) {
        window.setFixedSize(960, 588);
        view->setGeometry(kListAt);
        list.LoadPictureList();
        list.SelectPicture(list.PathAt(1));  // the list opens at its top
        window.show();
        QCoreApplication::processEvents();
    }

    bool HasIconsInView() const {
        for (int row = 0; row < 12; ++row) {
            if (view->item(row)->icon().isNull()) {
                return false;
            }
        }
        return true;
    }

    QWidget window;
    MyListWidget* view;
    PictureSource source;
    PictureList list;
};

// The list alone, in a program that runs.
void OpenList(benchmark::State& state) {
    StoreAsManyAsTold(state);
    for (auto _ : state) {
        auto opened = std::make_unique<Opened>();
        benchmark::DoNotOptimize(opened->view->count());
        state.PauseTiming();
        opened.reset();
        state.ResumeTiming();
    }
}

// A program of nothing but this list, from its start to its first paint.
void OpenProgram(benchmark::State& state) {
    StoreAsManyAsTold(state);
    for (auto _ : state) {
        QElapsedTimer timer;
        timer.start();
        const int status =
            QProcess::execute(QCoreApplication::applicationFilePath(), {QLatin1String(kOpenOnce)});
        state.SetIterationTime(double(timer.nsecsElapsed()) / 1e9);
        if (status != 0) {
            state.SkipWithError("The program to be measured does not run.");
            break;
        }
    }
}

// Until the eleven photographs in view have their icons.
void FirstIcons(benchmark::State& state) {
    const bool isCached = state.range(0) != 0;
    WriteStoredPictures(AllPhotographs().First(1000), {});
    const QTemporaryDir folder;
    int run = 0;
    const auto open = [&] {
        auto cache = std::make_shared<ThumbnailCache>(folder.filePath(QString::number(run)));
        auto opened = std::make_unique<Opened>(PictureSource::Readers{
            ReadPicture, [cache](const QString& path, QSize pixels, const PictureWork& work) {
                return CachedThumbnail(*cache, path, pixels, work);
            }});
        while (!opened->HasIconsInView()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return opened;
    };
    open();
    for (auto _ : state) {
        run += isCached ? 0 : 1;
        auto opened = open();
        state.PauseTiming();
        opened.reset();
        state.ResumeTiming();
    }
}

}  // namespace

BENCHMARK(OpenList)->Arg(0)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(OpenProgram)->Arg(0)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK(FirstIcons)->ArgName("cached")->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc == 2 && qstrcmp(argv[1], kOpenOnce) == 0) {
        const QApplication application(argc, argv);
        InitResources();
        const Opened opened;
        std::_Exit(0);
    }
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toUtf8());
    qputenv("XDG_CACHE_HOME", home.filePath(QStringLiteral("cache")).toUtf8());
    const QApplication application(argc, argv);
    InitResources();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
