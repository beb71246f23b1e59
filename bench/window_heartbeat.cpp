// How long the window's thread stands still while pictures are chosen and scrolled: on a share that is gone,
// a PNG of sixty megapixels and a list of a thousand rows. A timer beats meanwhile; printed are the median
// and the longest pause between two beats, and the longest that the thread itself worked in one, which other
// programs do not make longer; for each step and for all.
//
//     LD_PRELOAD=libslow_share.so window_heartbeat

#include <QApplication>
#include <QElapsedTimer>
#include <QListWidget>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <time.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "compose/panel_text.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "photographs.h"
#include "resources/resources.h"
#include "virtualscreen/virtual_hid_api.h"
#include "widgets/exit_message_box.h"
#include "widgets/window_style.h"
#include "window/main_window.h"

using namespace kivo;

namespace {

constexpr int kBeatMs = 5;
constexpr int kRows = 1000;
constexpr int kDeadRow = 1;
constexpr int kLargeRow = 2;

void WriteLargePng(const QString& path) {
    constexpr QSize kSixtyMegapixels(10000, 5990);
    QImage image(kSixtyMegapixels, QImage::Format_RGB32);
    quint32 noise = 1;
    for (int y = 0; y < image.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            noise = noise * 1664525 + 1013904223;
            line[x] = qRgb((x / 40) & 255, (y / 24 + int(noise >> 30)) & 255, ((x + y) / 60) & 255);
        }
    }
    image.save(path, "PNG", 80);
}

// The list: one file on a dead share, a large one, photographs.
void StorePictures(const QTemporaryDir& folder) {
    QSettings settings(ConfigFilePath(), QSettings::IniFormat);
    settings.setValue(QStringLiteral("ImageList/Count"), kRows);
    const QString large = folder.filePath(QStringLiteral("large.png"));
    WriteLargePng(large);
    const QString photograph = folder.filePath(QStringLiteral("photograph.jpg"));
    QFile file(photograph);
    if (!file.open(QIODevice::WriteOnly) || file.write(bench::Photograph()) < 0) {
        std::abort();
    }
    file.close();
    for (int n = 0; n < kRows; ++n) {
        QString path = folder.filePath(QStringLiteral("photograph %1.jpg").arg(n));
        if (n + 1 == kDeadRow) {
            path = QStringLiteral("/dead-share/picture.png");
        } else if (n + 1 == kLargeRow) {
            path = large;
        } else {
            QFile::link(photograph, path);
        }
        settings.setValue(QStringLiteral("ImageList/%1").arg(n), path);
    }
}

// The processor time of this thread, in milliseconds.
double WorkedMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
}

struct Pause {
    double ms;
    double workedMs;
};

class Heart {
public:
    Heart() {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(kBeatMs);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { Beat(); });
        m_timer.start();
        m_since.start();
        m_worked = WorkedMs();
    }
    // Begins a new count.
    std::vector<Pause> TakePauses() {
        Beat();
        return std::exchange(m_pauses, {});
    }

private:
    void Beat() {
        const double worked = WorkedMs();
        m_pauses.push_back({double(m_since.nsecsElapsed()) / 1e6, worked - m_worked});
        m_since.restart();
        m_worked = worked;
        if (auto* box = qobject_cast<ExitMessageBox*>(QApplication::activeModalWidget())) {
            box->reject();
        }
    }
    QTimer m_timer;
    QElapsedTimer m_since;
    double m_worked = 0;
    std::vector<Pause> m_pauses;
};

void Print(const char* step, std::vector<Pause> pauses) {
    double mostWorked = 0;
    for (const Pause& pause : pauses) {
        mostWorked = std::max(mostWorked, pause.workedMs);
    }
    std::sort(pauses.begin(), pauses.end(), [](const Pause& a, const Pause& b) { return a.ms < b.ms; });
    std::printf("%-40s beats %6zu   median %6.1f ms   longest %8.1f ms   of it worked at most %7.1f ms\n",
                step, pauses.size(), pauses[pauses.size() / 2].ms, pauses.back().ms, mostWorked);
    std::fflush(stdout);
}

void Wait(int ms) {
    QEventLoop loop;
    QTimer::singleShot(ms, &loop, &QEventLoop::quit);
    loop.exec();
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"}) {
        qputenv(name, home.path().toUtf8());
    }
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    InitResources();
    InstallFontSubstitutes();
    QApplication::setFont(QFont(FontFamily(), 12));
    ApplyWindowStyle(application);
    SeedDefaultProfile(QCoreApplication::applicationDirPath());
    MarkInitialized();
    configFolderCreated = 0;
    StorePictures(home);

    VirtualHidApi panel;
    MainWindow::Parts parts{panel, nullptr, QCoreApplication::applicationDirPath()};
    parts.panel = LiveSession::PanelKind::Software;
    MainWindow window(parts);
    window.show();
    auto* list = window.findChild<QListWidget*>(QStringLiteral("pictureList"));
    auto* themes = window.findChild<QListWidget*>(QStringLiteral("themeList"));
    Wait(3000);

    Heart heart;
    std::vector<Pause> all;
    const auto step = [&](const char* name, int repeats, int ms, const std::function<void(int)>& act) {
        heart.TakePauses();
        for (int n = 0; n < repeats; ++n) {
            act(n);
            Wait(ms);
        }
        std::vector<Pause> pauses = heart.TakePauses();
        Print(name, pauses);
        all.insert(all.end(), pauses.begin(), pauses.end());
    };
    const auto pick = [&](int row) { window.itemClickedImage(list->model()->index(row, 0)); };
    step("at rest", 1, 3000, [](int) {});
    step("the large PNG is chosen", 1, 15000, [&](int) { pick(kLargeRow); });
    step("themes are changed, and back to it", 12, 700, [&](int n) { themes->setCurrentRow(n % 4); });
    step("a picture on the dead share is chosen", 3, 6000, [&](int) { pick(kDeadRow); });
    step("themes are changed after that", 8, 700, [&](int n) { themes->setCurrentRow(n % 4); });
    step("a thousand rows are scrolled", 120, 50, [&](int n) { list->scrollToItem(list->item(n * 8)); });
    step("photographs are chosen", 10, 600, [&](int n) { pick(10 + n); });
    step("applied", 1, 6000, [&](int) { QTimer::singleShot(0, &window, &MainWindow::slotApply); });
    Print("all", all);
    std::fflush(stdout);
    std::_Exit(0);
}
