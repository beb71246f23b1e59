#include "pictures/picture_files.h"

#include <QImageReader>
#include <QMimeData>
#include <QUrl>

namespace kivo {

QStringList PictureSuffixes() {
    QStringList suffixes{QStringLiteral("jfif"), QStringLiteral("gif"),  QStringLiteral("bmp"),
                         QStringLiteral("jpg"),  QStringLiteral("jpeg"), QStringLiteral("png")};
    // Qt reads this one with a plugin that not every system has; nobody is offered what would not open.
    if (QImageReader::supportedImageFormats().contains("webp")) {
        suffixes.prepend(QStringLiteral("webp"));
    }
    return suffixes;
}

QStringList PictureFilesOf(const QMimeData* data) {
    const QStringList suffixes = PictureSuffixes();
    QStringList paths;
    const QList<QUrl> urls = data != nullptr ? data->urls() : QList<QUrl>();
    for (const QUrl& url : urls) {
        const QString path = url.toLocalFile();
        const QString suffix = path.mid(path.lastIndexOf(QLatin1Char('.')) + 1).toLower();
        if (!path.isEmpty() && suffixes.contains(suffix)) {
            paths.append(path);
        }
    }
    return paths;
}

}  // namespace kivo
