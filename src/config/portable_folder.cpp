#include "config/portable_folder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>

#include <mutex>
#include <optional>

#include "config/log_once.h"

namespace kivo {
namespace {

std::mutex foundMutex;
std::optional<QString> found;

// By trying: the rights that a system reports are not all that may stand in the way.
bool CanBeWritten(const QString& folder) {
    QTemporaryFile probe(folder + QStringLiteral("/XXXXXX.probe"));
    return probe.open();
}

}  // namespace

QString FindPortableFolder(const QString& applicationDir) {
    if (!QFileInfo(applicationDir + QStringLiteral("/portable.txt")).isFile()) {
        return QString();
    }
    const QString folder = QDir::cleanPath(applicationDir + QStringLiteral("/data"));
    if (!QDir().mkpath(folder) || !CanBeWritten(folder)) {
        WarnOnce(QStringLiteral("portable.txt asks for the settings to lie in %1, but nothing can be written "
                                "there; those of your own folders are used.")
                     .arg(QDir::toNativeSeparators(folder)));
        return QString();
    }
    return folder;
}

QString PortableFolder() {
    const std::lock_guard lock(foundMutex);
    if (!found) {
        if (QCoreApplication::instance() == nullptr) {
            return QString();
        }
        found = FindPortableFolder(QCoreApplication::applicationDirPath());
    }
    return *found;
}

void SetPortableFolder(const QString& folder) {
    const std::lock_guard lock(foundMutex);
    found = folder;
}

}  // namespace kivo
