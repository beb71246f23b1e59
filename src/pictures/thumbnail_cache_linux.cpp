#include <QStandardPaths>

#include "pictures/thumbnail_cache.h"

namespace kivo {

QString ThumbnailCache::UsersFolder() {
    const QString parent = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return parent.isEmpty() ? QString() : parent + QStringLiteral("/Kivo Tool/thumbnails");
}

}  // namespace kivo
