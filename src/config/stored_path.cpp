#include "config/stored_path.h"

#include <QDir>
#include <QFileInfo>

#include "config/portable_folder.h"

namespace kivo {
namespace {

// A part of the program, ":/picture.png", lies in no folder. A path with a drive is a whole one on each
// system, for a stick goes from one to another.
bool IsWhole(const QString& path) {
    return path.startsWith(QLatin1Char(':')) || path.indexOf(QLatin1Char(':')) == 1 ||
           QDir::isAbsolutePath(path);
}

bool IsInside(const QString& relativePath) {
    return !IsWhole(relativePath) && relativePath != QLatin1String("..") &&
           !relativePath.startsWith(QLatin1String("../"));
}

// Where a stored path's file would lie in the data, were its folder that of the program at another place.
QString InData(const QString& data, const QString& stored) {
    QString mark = QLatin1Char('/') + QFileInfo(data).fileName() + QLatin1Char('/');
    if (const QString program = QFileInfo(QFileInfo(data).path()).fileName(); !program.isEmpty()) {
        mark.prepend(QLatin1Char('/') + program);
    }
    const int at = stored.lastIndexOf(mark);
    return at < 0 ? QString() : data + QLatin1Char('/') + stored.mid(at + mark.size());
}

}  // namespace

QString PathToStore(const QString& path) {
    const QString data = PortableFolder();
    if (data.isEmpty() || path.isEmpty() || path.startsWith(QLatin1Char(':'))) {
        return path;
    }
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(path));
    const QString relative = QDir(QFileInfo(data).path()).relativeFilePath(clean);
    return IsInside(relative) ? relative : path;
}

QString PathFromStore(const QString& stored) {
    const QString data = PortableFolder();
    if (data.isEmpty() || stored.isEmpty()) {
        return stored;
    }
    const QString clean = QDir::cleanPath(QDir::fromNativeSeparators(stored));
    if (!IsWhole(clean)) {
        return QDir::cleanPath(QFileInfo(data).path() + QLatin1Char('/') + clean);
    }
    // Only the program's own folder is looked at: another drive may take its time.
    const QString moved = InData(data, clean);
    return !moved.isEmpty() && QFileInfo(moved).isFile() ? moved : stored;
}

}  // namespace kivo
