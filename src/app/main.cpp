#include <QApplication>
#include <QFont>
#include <QLocale>
#include <QTextStream>
#include <QTimer>
#include <QTranslator>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/command_line.h"
#include "app/console.h"
#include "app/display.h"
#include "app/language.h"
#include "app/live_session.h"
#include "app/quit_signals.h"
#include "compose/panel_text.h"
#include "compose/screen_state.h"
#include "compose/theme_state.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "config/settings_file.h"
#include "device/hid_api_hidapi.h"
#include "device/report_log.h"
#include "resources/resources.h"
#include "virtualscreen/panel_image_writer.h"
#include "virtualscreen/virtual_hid_api.h"
#include "virtualscreen/virtual_screen_window.h"

namespace {

constexpr int kBadArguments = 2;

// The command line is read with an application object of its own: help and version need no display.
kivo::CommandLine ReadCommandLine(int& argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return kivo::ParseCommandLine(QCoreApplication::arguments());
}

void Say(FILE* stream, const QString& text) {
    QTextStream(stream) << text;
}

// The screen behind the seam: hidapi's, or a software panel with its window and picture, and a log around
// either.
class Screen {
public:
    Screen(const kivo::Options& options, bool hasDisplay) {
        if (options.virtualScreen) {
            auto panel = std::make_unique<kivo::VirtualHidApi>();
            if (!options.panelImage.isEmpty()) {
                m_imageWriter = std::make_unique<kivo::PanelImageWriter>(*panel, options.panelImage);
            }
            if (hasDisplay) {
                m_window = std::make_unique<kivo::VirtualScreenWindow>(*panel);
                m_window->show();
            }
            m_hid = std::move(panel);
        } else {
            m_hid = std::make_unique<kivo::HidapiHidApi>();
        }
        if (!options.reportLog.isEmpty()) {
            m_log = std::make_unique<kivo::ReportLogHidApi>(*m_hid, options.reportLog);
        }
    }

    kivo::HidApi& Hid() { return m_log ? *m_log : *m_hid; }

private:
    // Window and writer look at the panel, so they go first.
    std::unique_ptr<kivo::HidApi> m_hid;
    std::unique_ptr<kivo::HidApi> m_log;
    std::unique_ptr<kivo::PanelImageWriter> m_imageWriter;
    std::unique_ptr<kivo::VirtualScreenWindow> m_window;
};

QString ValuesLine(const kivo::ItemTexts& texts) {
    const kivo::ItemTexts names = kivo::ItemCaptions();
    QStringList shown;
    for (size_t item = 0; item < texts.size(); ++item) {
        if (!texts[item].isEmpty()) {
            shown.append(names[item] + QLatin1Char(' ') + texts[item].trimmed());
        }
    }
    if (shown.isEmpty()) {
        return QStringLiteral("No screen took any value.\n");
    }
    return QStringLiteral("Live values sent last: %1\n").arg(shown.join(QStringLiteral(", ")));
}

// Loads the settings, uploads a first frame and refreshes from then on.
void StartHeadless(kivo::LiveSession& session, kivo::InterfaceLanguage language) {
    kivo::SeedDefaultProfile(QCoreApplication::applicationDirPath());
    kivo::ThemeState themes = kivo::LoadThemeState(language);
    const kivo::SlotTable slotTable = kivo::LoadSlotTable();
    kivo::TickPlacedItems(themes, slotTable);
    session.SetLoaded(kivo::MakeScreenState(themes, slotTable, kivo::LoadCurRectId(), language));
    session.OpenScreen();
    session.SendTimeSync();
    session.StartUpload();
    session.StartRefresh();  // when the upload is over
}

}  // namespace

int main(int argc, char** argv) {
    kivo::UseParentConsole();
    QCoreApplication::setApplicationVersion(QStringLiteral(KIVO_VERSION));
    const kivo::CommandLine line = ReadCommandLine(argc, argv);
    if (line.action == kivo::CommandLine::Action::ShowText) {
        Say(stdout, line.text);
        return 0;
    }
    if (line.action == kivo::CommandLine::Action::Refuse) {
        Say(stderr, QStringLiteral("kivo-screen: %1\n").arg(line.text));
        return kBadArguments;
    }

    const bool hasDisplay = kivo::HasDisplay();
    if (!hasDisplay) {
        qputenv("QT_QPA_PLATFORM", kivo::PlatformWithoutDisplay(qgetenv("QT_QPA_PLATFORM").constData()));
        Say(stderr, QStringLiteral("kivo-screen: no display, running without windows.\n"));
    }
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication application(argc, argv);
    kivo::InitResources();
    kivo::InstallFontSubstitutes();
    QFont font(kivo::FontFamily());
    font.setPointSize(12);
    QApplication::setFont(font);

    const kivo::InterfaceLanguage language = kivo::LanguageForLocale(QLocale::system());
    kivo::SetInterfaceLanguage(language);
    QTranslator translator;
    if (!kivo::InstallTranslation(translator, language, QCoreApplication::applicationDirPath())) {
        qWarning("The translations in %s/lang cannot be read; texts stay Chinese.",
                 qUtf8Printable(QCoreApplication::applicationDirPath()));
    }

    Screen screen(line.options, hasDisplay);
    kivo::LiveSession session(screen.Hid(), language);
    const kivo::QuitSignals quitSignals;
    QObject::connect(&quitSignals, &kivo::QuitSignals::quitRequested, &application, &QCoreApplication::quit);
    QObject::connect(&session, &kivo::LiveSession::uploadDone, &application, [](bool success) {
        kivo::MarkInitialized();
        kivo::configFolderCreated = 0;
        if (!success) {
            Say(stderr, QStringLiteral(
                            "kivo-screen: no screen took the first frame. --virtual-screen shows a software "
                            "panel instead.\n"));
        }
    });
    if (line.options.runSeconds) {
        QTimer::singleShot(std::chrono::milliseconds(qRound64(*line.options.runSeconds * 1000)), &application,
                           &QCoreApplication::quit);
    }
    StartHeadless(session, language);
    const int status = QApplication::exec();
    const bool stopped = session.Stop();
    if (line.options.runSeconds) {
        Say(stdout, ValuesLine(session.ShownTexts()));
    }
    if (!stopped) {
        // A worker hangs in a write to the screen and uses what lives here: nothing may be destroyed any
        // more.
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
