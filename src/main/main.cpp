#include <QApplication>
#include <QByteArrayList>
#include <QFont>
#include <QLoggingCategory>
#include <QTimer>
#include <QTranslator>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "compose/panel_text.h"
#include "compose/screen_state.h"
#include "config/first_run_marker.h"
#include "device/hid_api_hidapi.h"
#include "device/hotplug.h"
#include "device/report_log.h"
#include "main/command_line.h"
#include "main/console.h"
#include "main/program_report.h"
#include "main/sensor_report.h"
#include "main/version.h"
#include "panel/screen_lookup.h"
#include "pictures/picture_workers.h"
#include "resources/resources.h"
#include "session/autostart.h"
#include "session/away_watch.h"
#include "session/display.h"
#include "session/freed_memory.h"
#include "session/hand_over.h"
#include "session/helper_window.h"
#include "session/log_file.h"
#include "session/log_lines.h"
#include "session/outside_control.h"
#include "session/quit_at_once.h"
#include "session/quit_signals.h"
#include "session/single_instance.h"
#include "virtualscreen/panel_image_writer.h"
#include "virtualscreen/virtual_hid_api.h"
#include "virtualscreen/virtual_hotplug.h"
#include "virtualscreen/virtual_screen_window.h"
#include "widgets/toolkit_defaults.h"
#include "widgets/window_style.h"
#include "window/language.h"
#include "window/main_window.h"
#include "window/support_facts.h"

namespace {

Q_LOGGING_CATEGORY(startLog, "kivo.start")

constexpr int kCannotBeDone = 1;
constexpr int kBadArguments = 2;
// A person has started the program and waits for its window.
constexpr std::chrono::milliseconds kLongestLookup{1000};

// The command line is read with an application object of its own: help and version need no display.
kivo::CommandLine ReadCommandLine(int& argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return kivo::ParseCommandLine(QCoreApplication::arguments());
}

// UTF-8 on every platform: not every code page of Windows has a "℃".
void Say(FILE* stream, const QString& text) {
    std::fputs(text.toUtf8().constData(), stream);
    std::fflush(stream);
}

// Tells a person who looks at a console, and whoever reads the log later.
void Tell(const QString& line) {
    kivo::KeepLogLine(line);
    Say(stderr, QStringLiteral("kivo-screen: %1\n").arg(line));
}

// Not for the program that runs already: its menu asks anew each time it is opened.
int SwitchAutostart(int& argc, char** argv, bool on) {
    const QCoreApplication application(argc, argv);
    const QString trouble = kivo::SetStartsAtLogin(on);
    if (!trouble.isEmpty()) {
        Tell(QStringLiteral("the autostart cannot be changed. %1").arg(trouble));
        return kCannotBeDone;
    }
    Say(stdout, on ? QStringLiteral("Kivo Screen starts together with your session.\n")
                   : QStringLiteral("Kivo Screen does not start by itself.\n"));
    return 0;
}

// The user's language, for as long as the translator lives, without a window.
void UseSystemLanguage(QTranslator& translator) {
    const kivo::InterfaceLanguage language = kivo::LanguageForLocale(QLocale::system());
    kivo::SetInterfaceLanguage(language);
    kivo::InstallTranslation(translator, language, QCoreApplication::applicationDirPath());
}

int ShowSensors(int& argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QTranslator translator;
    UseSystemLanguage(translator);
    Say(stdout, kivo::ReadSensorReport());
    return 0;
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
            m_panel = panel.get();
            m_hasWindow = hasDisplay;
            m_hid = std::move(panel);
        } else {
            m_hid = std::make_unique<kivo::HidapiHidApi>();
        }
        if (!options.reportLog.isEmpty()) {
            m_log = std::make_unique<kivo::ReportLogHidApi>(*m_hid, options.reportLog);
        }
    }

    // The software panel's window, where there is one. After the translation has been installed.
    void ShowWindow() {
        if (m_hasWindow) {
            m_window = std::make_unique<kivo::VirtualScreenWindow>(*m_panel);
            m_window->show();
        }
    }

    // Whether every report so far stands in the log that was asked for.
    bool IsLogWhole() const { return !m_log || m_log->IsLogging(); }

    kivo::HidApi& Hid() { return m_log ? *m_log : *m_hid; }

    // Who tells when it comes and goes. The screen outlives it.
    std::unique_ptr<kivo::Hotplug> MakeHotplug() const {
        if (m_panel != nullptr) {
            return std::make_unique<kivo::VirtualHotplug>(*m_panel);
        }
        return kivo::MakeSystemHotplug();
    }

private:
    // Window and writer look at the panel, so they go first.
    std::unique_ptr<kivo::HidApi> m_hid;
    kivo::VirtualHidApi* m_panel = nullptr;  // m_hid, if it is a software panel
    bool m_hasWindow = false;
    std::unique_ptr<kivo::ReportLogHidApi> m_log;
    std::unique_ptr<kivo::PanelImageWriter> m_imageWriter;
    std::unique_ptr<kivo::VirtualScreenWindow> m_window;
};

// Asked by a second copy that would use the screen: one that shows a software panel meanwhile stands in the
// way of a screen that is there.
kivo::InstanceRequest RequestFor(const kivo::Options& options) {
    if (options.virtualScreen) {
        return kivo::InstanceRequest::ComeToFront;
    }
    const std::optional<bool> isPluggedIn =
        kivo::IsScreenPluggedIn([] { return std::make_unique<kivo::HidapiHidApi>(); }, kLongestLookup);
    return isPluggedIn.value_or(false) ? kivo::InstanceRequest::GiveWay : kivo::InstanceRequest::ComeToFront;
}

QString AnswerLine(kivo::InstanceAnswer answer) {
    switch (answer) {
        case kivo::InstanceAnswer::Stays:
            return QStringLiteral(
                "already running on a software panel, with something unfinished in its window. "
                "Finish that and start once more to use the screen.");
        case kivo::InstanceAnswer::None:
            return QStringLiteral("already running, but that copy does not answer.");
        default:
            return QStringLiteral("already running; its window comes to the front.");
    }
}

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

// What Qt gets to see of the command line: its own options, and the platforms to try as the last word. It
// keeps what they point to.
class ToolkitArguments {
public:
    ToolkitArguments(const char* program, const kivo::CommandLine& line, const QByteArray& platforms) {
        m_texts.append(program);
        for (const QString& option : line.toolkit) {
            m_texts.append(option.toLocal8Bit());
        }
        if (!platforms.isEmpty()) {
            m_texts += QByteArrayList{"-platform", platforms};
        }
        for (QByteArray& text : m_texts) {
            m_words.push_back(text.data());
        }
        m_count = int(m_words.size());
        m_words.push_back(nullptr);
    }
    int& Count() { return m_count; }
    char** Words() { return m_words.data(); }

private:
    QByteArrayList m_texts;
    std::vector<char*> m_words;
    int m_count = 0;
};

// The platforms for Qt to try, one after the other; empty: its own choice.
QByteArray PlatformsFor(const kivo::CommandLine& line) {
    const QByteArray asked =
        line.platform.isEmpty() ? qgetenv("QT_QPA_PLATFORM") : line.platform.toLocal8Bit();
    return kivo::HasDisplay() ? kivo::PlatformsWithDisplay(asked) : kivo::PlatformWithoutDisplay(asked);
}

// Before the application object.
void SetUpToolkit() {
    kivo::LeaveOutOpenGl();
    kivo::ScaleAsTheDisplay();
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void SetUpFonts() {
    kivo::InstallFontSubstitutes();
    QFont font(kivo::FontFamily());
    font.setPointSize(12);
    QApplication::setFont(font);
}

// What a person who reads the log later asks first.
void LogStart(const kivo::Options& options) {
    const QStringList lines = kivo::StartLines();
    for (const QString& line : lines) {
        qCInfo(startLog, "%s", qUtf8Printable(line));
    }
    if (options.virtualScreen) {
        qCInfo(startLog, "A software panel stands in for the screen.");
    }
    if (!options.reportLog.isEmpty()) {
        qCInfo(startLog, "Reports are appended to %s", qUtf8Printable(options.reportLog));
    }
}

// Whether another copy runs, without asking it for anything.
bool DoesACopyRun() {
    kivo::SingleInstance instance;
    return !instance.BecomeFirstWhereNoneRuns();
}

// With windows' platform, for it tells of displays and fonts as the program has them; shows none.
int WriteReport(char** argv, const kivo::CommandLine& line) {
    ToolkitArguments arguments(argv[0], line, PlatformsFor(line));
    SetUpToolkit();
    const QApplication application(arguments.Count(), arguments.Words());
    SetUpFonts();
    QTranslator translator;
    UseSystemLanguage(translator);
    const auto teller =
        DoesACopyRun() ? kivo::SupportFacts::Teller::BesideACopy : kivo::SupportFacts::Teller::OnItsOwn;
    const QString report = kivo::WriteProgramReport(teller, QCoreApplication::applicationDirPath());
    if (line.reportFile.isEmpty()) {
        Say(stdout, report);
        return 0;
    }
    const QString trouble = kivo::SaveSupportReport(report, line.reportFile);
    if (!trouble.isEmpty()) {
        Tell(QStringLiteral("the report cannot be written to %1. %2").arg(line.reportFile, trouble));
        return kCannotBeDone;
    }
    return 0;
}

// For what this start itself was told; the program goes on, whatever comes of it.
kivo::OutsideReply OnConsole() {
    return {[] { return true; },
            [](const kivo::OutsideAnswer& answer) {
                if (!answer.isTaken) {
                    Tell(answer.line);
                }
            }};
}

// Before there is an application object with windows: a second start needs no display.
std::optional<int> HandOver(int& argc, char** argv, kivo::SingleInstance& instance,
                            const kivo::OutsideCommands& commands) {
    const QCoreApplication application(argc, argv);
    const kivo::HandOver handed = kivo::HandOverCommands(instance, commands);
    switch (handed.outcome) {
        case kivo::HandOver::Outcome::IsFirst:
            return std::nullopt;
        case kivo::HandOver::Outcome::Taken:
            return 0;
        case kivo::HandOver::Outcome::NotTaken:
            break;
    }
    Tell(handed.line);
    return kCannotBeDone;
}

}  // namespace

int main(int argc, char** argv) {
    kivo::ShareMemoryPool();
    kivo::UseParentConsole();
    QCoreApplication::setApplicationVersion(
        kivo::VersionText(QStringLiteral(KIVO_VERSION), kivo::SourceCommit()));
    const kivo::CommandLine line = ReadCommandLine(argc, argv);
    if (line.action == kivo::CommandLine::Action::ShowText) {
        Say(stdout, line.text);
        return 0;
    }
    if (line.action == kivo::CommandLine::Action::Refuse) {
        Tell(line.text);
        return kBadArguments;
    }
    if (line.action == kivo::CommandLine::Action::SwitchAutostart) {
        return SwitchAutostart(argc, argv, line.autostart);
    }
    if (line.action == kivo::CommandLine::Action::ShowSensors) {
        return ShowSensors(argc, argv);
    }

    if (line.action == kivo::CommandLine::Action::Report) {
        kivo::StartLog();
        return WriteReport(argv, line);
    }

    kivo::StartLog();
    kivo::SingleInstance instance;
    const bool isTold = kivo::IsAnyAsked(line.commands);
    if (isTold) {
        if (const std::optional<int> status = HandOver(argc, argv, instance, line.commands)) {
            return *status;
        }
    }
    const QByteArray platforms = PlatformsFor(line);
    ToolkitArguments arguments(argv[0], line, platforms);
    SetUpToolkit();
    // By this name a desktop finds the program's entry, and with it the icon of its windows.
    QGuiApplication::setDesktopFileName(QStringLiteral("kivo-screen"));
    QApplication application(arguments.Count(), arguments.Words());
    kivo::StartLog(kivo::LogFilePath());  // where it lies depends on where the program does
    // A display that was named may have refused.
    const bool hasDisplay = kivo::HasDisplay() &&
                            (platforms.isEmpty() || platforms.startsWith(kivo::kPlatformWithoutWindows) ||
                             QGuiApplication::platformName() != QLatin1String(kivo::kPlatformWithoutWindows));
    if (!hasDisplay) {
        Tell(QStringLiteral("no display, running without windows."));
    }
    kivo::InitResources();
    SetUpFonts();

    kivo::ApplyWindowStyle(application);
    // The program lives in the tray; it ends when a person has confirmed it, not when a window closes.
    QApplication::setQuitOnLastWindowClosed(false);
    kivo::LeaveWindowsAtSessionEnd();
    const kivo::QuitAtOnce quitAtOnce;

    // Before there is anything to end. A loop that begins to run knows nothing of a request that was there
    // before, so that is remembered here; a session that ends is told by aboutToQuit alone.
    bool endRequested = false;
    bool hasWindow = false;
    QObject::connect(&application, &QCoreApplication::aboutToQuit, &application,
                     [&endRequested] { endRequested = true; });
    kivo::OutsideControl control;
    const kivo::QuitSignals quitSignals;
    QObject::connect(&quitSignals, &kivo::QuitSignals::quitRequested, &application,
                     [&endRequested, &hasWindow, &instance, &control] {
                         endRequested = true;
                         control.Close();
                         // The window may have the screen darkened, and that is to be over when another copy
                         // takes this one's place.
                         if (!hasWindow) {
                             instance.LetGo();
                         }
                         QCoreApplication::quit();
                     });

    if (!isTold && !instance.Start([&line] { return RequestFor(line.options); })) {
        const kivo::InstanceAnswer answer = instance.AwaitAnswer();
        if (answer != kivo::InstanceAnswer::TookPlace) {
            if (!endRequested) {
                Tell(AnswerLine(answer));
            }
            return 0;
        }
    }

    Screen screen(line.options, hasDisplay);
    if (!screen.IsLogWhole()) {
        return kCannotBeDone;  // the log has said why
    }
    LogStart(line.options);
    kivo::MainWindow::Parts parts{screen.Hid(), &instance, QCoreApplication::applicationDirPath(),
                                  line.options.virtualScreen ? kivo::LiveSession::PanelKind::Software
                                                             : kivo::LiveSession::PanelKind::Real};
    parts.makeHotplug = [&screen] { return screen.MakeHotplug(); };
    parts.makeAwayWatch = &kivo::MakeSystemAwayWatch;
    parts.isWanted = kivo::ValueOf(line.commands, kivo::OutsideKind::Show).has_value();
    auto window = std::make_unique<kivo::MainWindow>(parts);
    hasWindow = true;
    screen.ShowWindow();
    QObject::connect(&window->Session(), &kivo::LiveSession::screensListed, window.get(), [](bool isThere) {
        if (!isThere) {
            Tell(QStringLiteral("no screen found. --virtual-screen shows a software panel instead."));
        }
    });
    if (kivo::IsFirstRun()) {
        window->show();
    } else if (!kivo::IsAskedAlone(line.commands, kivo::OutsideKind::Show)) {
        window->PutAway();
    }
    if (isTold) {
        window->TakeFromOutside(line.commands, OnConsole());
    }
    control.Open([&window](const kivo::OutsideCommands& commands, const kivo::OutsideReply& reply) {
        window->TakeFromOutside(commands, reply);
    });
    if (line.options.runSeconds) {
        QTimer::singleShot(std::chrono::milliseconds(qRound64(*line.options.runSeconds * 1000)), &application,
                           &QCoreApplication::quit);
    } else {
        kivo::LeaveParentConsole();
    }
    int status = endRequested ? 0 : QApplication::exec();
    // Before the wait for the workers: a start that comes now takes this copy's place.
    control.Close();
    instance.LetGo();
    const bool stopped = window->Stop();
    if (line.options.runSeconds) {
        Say(stdout, ValuesLine(window->Session().ShownTexts()));
    }
    if (status == 0 && !screen.IsLogWhole()) {
        status = kCannotBeDone;
    }
    if (!stopped) {
        // A worker hangs in a write to the screen and uses what lives here: nothing may be destroyed any
        // more.
        kivo::CloseHelperWindow();
        std::fflush(nullptr);
        std::_Exit(status);
    }
    window.reset();
    if (!kivo::PictureWorkers::EverythingEnded()) {
        // One hangs in a picture's file; it may wake up while Qt is being taken down.
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
