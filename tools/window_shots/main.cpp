// Pictures of the window to look at: every page, state and dialog in one language, in a home of its own.
//
//     kivo-window-shots FOLDER [en_US|zh_CN|ru_RU]
//
// QT_SCALE_FACTOR=1.5 or 2 gives the scaled screens.

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>
#include <cstdio>

#include "app/main_window.h"
#include "app/nimb_process_dialog.h"
#include "compose/panel_text.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "editor/edit_bar.h"
#include "editor/zoom_widget.h"
#include "resources/resources.h"
#include "virtualscreen/virtual_hid_api.h"
#include "widgets/exit_message_box.h"
#include "widgets/window_style.h"

namespace {

class Photographer {
public:
    Photographer(kivo::MainWindow& window, QString folder) : m_window(window), m_folder(std::move(folder)) {}

    void Wait(int ms) const {
        QEventLoop loop;
        QTimer::singleShot(ms, &loop, &QEventLoop::quit);
        loop.exec();
    }

    // The window, and over it what stands in windows of its own.
    void Shoot(const QString& name, QWidget* over = nullptr) const {
        Wait(250);
        QPixmap picture = m_window.grab();
        if (over != nullptr) {
            QPainter(&picture).drawPixmap(over->mapToGlobal(QPoint()) - m_window.mapToGlobal(QPoint()),
                                          over->grab());
        }
        const QString path = QStringLiteral("%1/%2.png").arg(m_folder, name);
        if (!picture.save(path)) {
            std::fprintf(stderr, "Cannot write %s\n", qPrintable(path));
        }
    }

    template <typename Widget = QWidget>
    Widget* Find(const char* name) const {
        return m_window.findChild<Widget*>(QString::fromLatin1(name));
    }
    void Click(const char* name) const { Find<QAbstractButton>(name)->click(); }

private:
    kivo::MainWindow& m_window;
    const QString m_folder;
};

void ShootThemes(const Photographer& photographer) {
    for (int theme = 0; theme < kivo::kThemeCount; ++theme) {
        photographer.Find<QListWidget>("themeList")->setCurrentRow(theme);
        photographer.Shoot(QStringLiteral("theme_%1").arg(theme));
    }
    photographer.Click("btnPortrait");
    photographer.Shoot(QStringLiteral("theme_3_portrait"));
    photographer.Click("btnLandscape");
}

void ShootCustom(const Photographer& photographer, kivo::MainWindow& window) {
    photographer.Click("btnImage");
    photographer.Shoot(QStringLiteral("custom"));
    photographer.Click("btnEdit");
    photographer.Shoot(QStringLiteral("custom_editing"));
    window.slotShowColorbar(1);
    photographer.Shoot(QStringLiteral("custom_text"));
    window.slotShowColorbar(0);
    photographer.Find<kivo::ZoomWidget>("zoomwidget")->solteditingFinished();
    auto* size = window.findChild<QComboBox*>();
    size->showPopup();
    photographer.Shoot(QStringLiteral("custom_sizes"), size->view()->window());
    size->hidePopup();
    window.findChild<kivo::EditBar*>()->SetEditPressed(true);
    window.slotEdit(1);
    photographer.Shoot(QStringLiteral("custom_trim"));
    photographer.Click("btnEdit_cancel");
    photographer.Click("choiceSecond");
    photographer.Shoot(QStringLiteral("custom_one"));
    photographer.Click("choiceFirst");
    photographer.Click("btnPortrait");
    photographer.Click("btnEdit");
    photographer.Shoot(QStringLiteral("custom_portrait"));
    photographer.Click("btnEdit_cancel");
    photographer.Click("btnLandscape");
    photographer.Click("btnTheme");
}

void ShootReadOut(const Photographer& photographer, kivo::MainWindow& window) {
    photographer.Click("pushButton");
    photographer.Wait(100);
    photographer.Shoot(QStringLiteral("thermal_zone"));
    window.slotCpuPowClock(65, 48, 0, 0);
}

void ShootDialogs(const Photographer& photographer, kivo::MainWindow& window) {
    QTimer::singleShot(100, &window, [&] {
        photographer.Shoot(QStringLiteral("exit"), QApplication::activeModalWidget());
        static_cast<QDialog*>(QApplication::activeModalWidget())->reject();
    });
    window.slotExit();
    QTimer::singleShot(100, &window, [&] {
        photographer.Shoot(QStringLiteral("built_in"), QApplication::activeModalWidget());
        static_cast<QDialog*>(QApplication::activeModalWidget())->accept();
    });
    window.SlotDeletePix(1);
    QTimer::singleShot(300, &window, [&] {
        photographer.Shoot(QStringLiteral("progress"), QApplication::activeModalWidget());
    });
    window.slotApply();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("Usage: kivo-window-shots FOLDER [LOCALE]\n", stderr);
        return 2;
    }
    const QTemporaryDir home;
    for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"}) {
        qputenv(name, home.path().toUtf8());
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    kivo::InitResources();
    kivo::InstallFontSubstitutes();
    QFont font(kivo::FontFamily());
    font.setPointSize(12);
    QApplication::setFont(font);
    kivo::ApplyWindowStyle(application);
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);

    kivo::SeedDefaultProfile(QCoreApplication::applicationDirPath());
    kivo::MarkInitialized();
    kivo::configFolderCreated = 0;
    kivo::VirtualHidApi panel;
    kivo::MainWindow::Parts parts{panel, nullptr, QCoreApplication::applicationDirPath()};
    parts.locale = QLocale(QString::fromLatin1(argc > 2 ? argv[2] : "en_US"));
    parts.hasTray = [] { return true; };
    parts.readThermalZone = [](const kivo::StopAsked&) { return kivo::ThermalText(-10.5); };
    kivo::MainWindow window(parts);
    window.show();
    const Photographer photographer(window, folder);
    photographer.Wait(2000);
    ShootThemes(photographer);
    ShootCustom(photographer, window);
    ShootReadOut(photographer, window);
    ShootDialogs(photographer, window);
    return window.Stop() ? 0 : 1;
}
