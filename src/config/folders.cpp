#include "config/folders.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include "config/log_once.h"
#include "config/portable_folder.h"

namespace kivo {
namespace {

QString FolderName() {
    return QStringLiteral("/Kivo Tool");
}

// The root folder ends in a slash already.
QString Inside(const QString& parent) {
    return QDir::cleanPath(parent + FolderName());
}

QString UsersSettingsFolder() {
    // One level up, whether or not the location exists (QDir::cdUp would refuse).
    const QString own = QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    return Inside(QFileInfo(own).path());
}

QString SettingsPath() {
    const QString portable = PortableFolder();
    return portable.isEmpty() ? UsersSettingsFolder() : portable + QStringLiteral("/settings");
}

// What the working folder lies in.
QString WorkingParent() {
    const QString portable = PortableFolder();
    return portable.isEmpty() ? QDir::homePath() : portable;
}

// Not beside the documents: those may lie in a cloud's folder, where two computers would share a panel's
// picture.
QString WorkingPath() {
    return PortableFolder().isEmpty() ? Inside(WorkingParent())
                                      : WorkingParent() + QStringLiteral("/working");
}

QString IfThere(const QString& path) {
    return QFileInfo(path).isDir() ? path : QString();
}

enum class Folder { Existed, Created, Missing };

Folder Provide(const QString& path) {
    if (QFileInfo(path).isDir()) {
        return Folder::Existed;
    }
    return QDir().mkpath(path) ? Folder::Created : Folder::Missing;
}

}  // namespace

std::atomic<quint8> configFolderCreated{0};

QString SettingsFolder() {
    QString path = SettingsPath();
    switch (Provide(path)) {
        case Folder::Existed:
            break;
        case Folder::Created:
            configFolderCreated = 1;
            break;
        case Folder::Missing:
            // The flag stays: nothing was made, and every later call would raise it anew.
            WarnOnce(QStringLiteral("The settings folder %1 cannot be created; settings will not be kept.")
                         .arg(QDir::toNativeSeparators(path)));
            break;
    }
    return path;
}

QString WorkingFolder() {
    QString path = WorkingPath();
    if (Provide(path) != Folder::Missing) {
        return path;
    }
    QString parent = WorkingParent();
    WarnOnce(QStringLiteral("The working folder %1 cannot be created; %2 is used instead.")
                 .arg(QDir::toNativeSeparators(path), QDir::toNativeSeparators(parent)));
    return parent;
}

QString ExistingSettingsFolder() {
    return IfThere(SettingsPath());
}

QString ExistingWorkingFolder() {
    return IfThere(WorkingPath());
}

QString ConfigFilePath() {
    return SettingsFolder() + QStringLiteral("/Config.ini");
}

}  // namespace kivo
