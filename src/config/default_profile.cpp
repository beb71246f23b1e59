#include "config/default_profile.h"

#include <QDir>
#include <QFileInfo>
#include <QtDebug>

#include <array>

#include "config/first_run_marker.h"
#include "config/folders.h"
#include "config/kept_settings.h"
#include "config/replace_file.h"

namespace kivo {
namespace {

constexpr const char* kConfig = "/Config.ini";
constexpr std::array kDefaultFiles{kConfig, "/whole.png"};

bool CopyDefaultFile(const QString& source, const QString& target) {
    const QString trouble = ReplaceFileByCopy(target, source);
    if (trouble.isEmpty()) {
        qDebug("File copied successfully.");
        return true;
    }
    qWarning("Failed to copy file.");
    qWarning().noquote() << QStringLiteral("%1 to %2: %3")
                                .arg(QDir::toNativeSeparators(source), QDir::toNativeSeparators(target),
                                     trouble);
    return false;
}

// Config.ini gives way to the default one, and lies beside it from then on.
void GiveWay(const QString& defaultConfig) {
    if (!KeepSettings(defaultConfig)) {
        return;
    }
    if (!CopyDefaultFile(defaultConfig, ConfigFilePath())) {
        TakeKeptCopyBack();
    }
}

}  // namespace

QString DefaultConfigFile(const QString& applicationDir) {
    return applicationDir + QLatin1String(kConfig);
}

void SeedDefaultProfile(const QString& applicationDir) {
    const QString settingsFolder = SettingsFolder();
    bool replace = false;
    if (IsFirstRun()) {
        MarkInitialized();
        configFolderCreated = 1;
        // Asked again instead of believing the code, which only tells of opening and closing. A mark that
        // cannot be set makes every start a first one, and none of them may take away what the user has made
        // since.
        replace = !IsFirstRun();
        if (!replace) {
            qWarning("The first-run mark cannot be set; existing settings are kept.");
        }
    }
    for (const char* const file : kDefaultFiles) {
        const QLatin1String name(file);
        const QString target = settingsFolder + name;
        const bool isThere = QFileInfo::exists(target);
        if (isThere && !replace) {
            continue;
        }
        if (!isThere) {
            configFolderCreated = 1;
        }
        if (isThere && target == ConfigFilePath()) {
            GiveWay(DefaultConfigFile(applicationDir));
        } else {
            CopyDefaultFile(applicationDir + name, target);
        }
    }
}

}  // namespace kivo
