// Opening the whole window with a library of 0, 100 and 1,000 photographs: from its construction to its first
// paint. Settings and screen are there, as in every start but the first.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWindow>
#include <memory>

#include "compose/panel_text.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "photographs.h"
#include "pictures/stored_pictures.h"
#include "resources/resources.h"
#include "virtualscreen/virtual_hid_api.h"
#include "widgets/toolkit_defaults.h"
#include "widgets/window_style.h"
#include "window/main_window.h"

using namespace kivo;
using namespace kivo::bench;

namespace {

std::unique_ptr<MainWindow> MakeWindow(HidApi& hid) {
    MainWindow::Parts parts{hid, nullptr, QCoreApplication::applicationDirPath()};
    parts.locale = QLocale(QStringLiteral("en_US"));
    parts.hasTray = [] { return true; };
    parts.makeSensors = [] { return MakeLibrarySensors(); };
    return std::make_unique<MainWindow>(parts);
}

void PaintFirst(MainWindow& window) {
    window.show();
    while (!window.windowHandle()->isExposed()) {
        QCoreApplication::processEvents();
    }
    window.repaint();
}

void OpenWindow(benchmark::State& state) {
    WriteStoredPictures(AllPhotographs().First(int(state.range(0))), {});
    for (auto _ : state) {
        VirtualHidApi panel;
        auto window = MakeWindow(panel);
        PaintFirst(*window);
        state.PauseTiming();
        window->Stop();
        window.reset();
        state.ResumeTiming();
    }
}

}  // namespace

BENCHMARK(OpenWindow)->Arg(0)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*.debug=false;*.warning=false");
    const QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", home.filePath(QStringLiteral("data")).toUtf8());
    qputenv("XDG_CONFIG_HOME", home.filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_CACHE_HOME", home.filePath(QStringLiteral("cache")).toUtf8());
    // No sensors, whatever the machine has.
    qputenv("IPG_Dir", home.path().toUtf8());
    qputenv("IPG_Ver", "3.6");
    ScaleAsTheDisplay();
    QApplication application(argc, argv);
    InitResources();
    InstallFontSubstitutes();
    ApplyWindowStyle(application);
    SeedDefaultProfile(QCoreApplication::applicationDirPath());
    MarkInitialized();
    configFolderCreated = 0;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
