#include <QStandardPaths>

#include "pictures/thumbnail_cache.h"

namespace kivo {

QString ThumbnailCache::UsersFolder() {
    // Qt's own location for caches is a folder "cache" in it, which no other program has.
    const QString parent = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return parent.isEmpty() ? QString() : parent + QStringLiteral("/Kivo Tool/thumbnails");
}

}  // namespace kivo
