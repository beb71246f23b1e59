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

struct Found {
    std::mutex mutex;
    std::optional<QString> folder;  // none: not looked for yet
};

Found& FoundOnce() {
    static Found found;
    return found;
}

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
    QString folder = QDir::cleanPath(applicationDir + QStringLiteral("/data"));
    if (!QDir().mkpath(folder) || !CanBeWritten(folder)) {
        WarnOnce(QStringLiteral("portable.txt asks for the settings to lie in %1, but nothing can be written "
                                "there; those of your own folders are used.")
                     .arg(QDir::toNativeSeparators(folder)));
        return QString();
    }
    return folder;
}

QString PortableFolder() {
    Found& found = FoundOnce();
    const std::lock_guard lock(found.mutex);
    if (!found.folder) {
        if (QCoreApplication::instance() == nullptr) {
            return QString();
        }
        found.folder = FindPortableFolder(QCoreApplication::applicationDirPath());
    }
    return *found.folder;
}

void SetPortableFolder(const QString& folder) {
    Found& found = FoundOnce();
    const std::lock_guard lock(found.mutex);
    found.folder = folder;
}

}  // namespace kivo
