#include "window/support_facts.h"

#include <QDir>
#include <QFontInfo>
#include <QGuiApplication>
#include <QLocale>
#include <QScreen>
#include <QSysInfo>

#include "compose/panel_text.h"
#include "compose/screen_state.h"
#include "config/default_profile.h"
#include "config/folders.h"
#include "config/settings_report.h"
#include "device/hid_node_list.h"
#include "session/autostart.h"
#include "session/log_lines.h"
#include "window/tray_host.h"

namespace kivo {

namespace {

QString YesOrNo(bool yes) {
    return yes ? QStringLiteral("yes") : QStringLiteral("no");
}

QString SystemName() {
    return QStringLiteral("%1, %2 %3, %4")
        .arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
             QSysInfo::currentCpuArchitecture());
}

QString DisplayText(const QScreen& screen) {
    const QRect place = screen.geometry();
    return QStringLiteral("%1, %2x%3 at %4,%5, scale %6, %7 dpi")
        .arg(screen.name().isEmpty() ? QStringLiteral("without a name") : screen.name())
        .arg(place.width())
        .arg(place.height())
        .arg(place.x())
        .arg(place.y())
        .arg(screen.devicePixelRatio())
        .arg(qRound(screen.logicalDotsPerInch()));
}

// The family that is drawn with, and the one that was asked for where that is another.
QString FontText(const QFont& font) {
    const QString drawn = QFontInfo(font).family();
    return drawn == font.family() ? drawn : QStringLiteral("%1, for %2").arg(drawn, font.family());
}

void AddVariables(SupportFactList& facts, std::initializer_list<const char*> names) {
    for (const char* name : names) {
        if (!qEnvironmentVariableIsEmpty(name)) {
            facts.append({QString::fromLatin1(name), qEnvironmentVariable(name)});
        }
    }
}

// What the program keeps there, nothing else that a user has in the same place.
QString FilesOf(const QString& folder) {
    if (folder.isEmpty()) {
        return QStringLiteral("not there");
    }
    QStringList files;
    const QFileInfoList found =
        QDir(folder).entryInfoList({QStringLiteral("Config.ini*"), QStringLiteral("whole.*")}, QDir::Files);
    for (const QFileInfo& file : found) {
        files.append(QStringLiteral("%1 %2 bytes of %3")
                         .arg(file.fileName())
                         .arg(file.size())
                         .arg(file.lastModified().toString(QStringLiteral("yyyy-MM-dd HH:mm"))));
    }
    return folder + QStringLiteral(": ") +
           (files.isEmpty() ? QStringLiteral("empty") : files.join(QStringLiteral("; ")));
}

}  // namespace

SupportFactList SystemFacts() {
    SupportFactList facts{
        {QStringLiteral("system"), SystemName()},
        {QStringLiteral("Qt"), QStringLiteral("%1, built with %2, platform %3")
                                   .arg(QLatin1String(qVersion()), QStringLiteral(QT_VERSION_STR),
                                        QGuiApplication::platformName())},
    };
    AddVariables(facts, {"XDG_SESSION_TYPE", "XDG_CURRENT_DESKTOP", "QT_QPA_PLATFORM", "QT_SCALE_FACTOR",
                         "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI", "QT_STYLE_OVERRIDE"});
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        facts.append({QStringLiteral("display"), DisplayText(*screen)});
    }
    facts.append({QStringLiteral("window's font"), FontText(QGuiApplication::font())});
    facts.append({QStringLiteral("panel's font"), FontText(PanelFont(kBasePixelSize))});
    facts.append({QStringLiteral("locale"), QLocale::system().name()});
    facts.append({QStringLiteral("tray"), YesOrNo(IsTrayThere())});
    facts.append({QStringLiteral("starts at login"), YesOrNo(StartsAtLogin())});
    facts.append({QStringLiteral("settings folder"), FilesOf(ExistingSettingsFolder())});
    facts.append({QStringLiteral("working folder"), FilesOf(ExistingWorkingFolder())});
    return facts;
}

QStringList StartLines() {
    QStringList lines{QStringLiteral("Kivo Screen %1 with Qt %2 on %3, platform %4")
                          .arg(QCoreApplication::applicationVersion(), QLatin1String(qVersion()),
                               SystemName(), QGuiApplication::platformName())};
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        lines.append(QStringLiteral("Display ") + DisplayText(*screen));
    }
    lines.append(QStringLiteral("Fonts: window %1; panel %2")
                     .arg(FontText(QGuiApplication::font()), FontText(PanelFont(kBasePixelSize))));
    return lines;
}

SupportFactList ToSupportFacts(const PanelFacts& facts) {
    SupportFactList list;
    for (const auto& [name, value] : facts) {
        list.append({name, value});
    }
    return list;
}

GatheredFacts GatherSupportFacts(const QString& applicationDir) {
    GatheredFacts gathered;
    gathered.names = NamesOfThisUser();
    SupportFacts& facts = gathered.facts;
    facts.at = QDateTime::currentDateTime();
    facts.version = QCoreApplication::applicationVersion();
    facts.system = SystemFacts();
    facts.hidNodes = ListHidNodes();
    if (!ExistingSettingsFolder().isEmpty()) {
        const SettingsSummary settings =
            DescribeSettings(ConfigFilePath(), DefaultConfigFile(applicationDir));
        facts.settings = settings.lines;
        gathered.names.pictures = settings.pictures;
    }
    // Last: what was gathered may have logged something.
    facts.log = KeptLogLines();
    return gathered;
}

}  // namespace kivo
