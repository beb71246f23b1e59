#include "pictures/thumbnail_picture.h"

#include <QFile>
#include <QFileInfo>

#include "compose/picture_decoder.h"
#include "pictures/thumbnail_cache.h"
#include "widgets/sharp_picture.h"

namespace kivo {

namespace {

// Stops giving data as soon as it is told to, so that a long decode ends with the program.
class StoppableFile final : public QFile {
public:
    StoppableFile(const QString& path, const std::atomic<bool>& stop) : QFile(path), m_stop(stop) {}

protected:
    qint64 readData(char* data, qint64 length) override {
        return m_stop ? -1 : QFile::readData(data, length);
    }

private:
    const std::atomic<bool>& m_stop;
};

// The artwork comes in two sizes; files of the user's do not.
QString SharpestSource(const QString& path, QSize pixels) {
    if (!IsResource(path) || pixels.width() <= kThumbnailSize.width()) {
        return path;
    }
    QString twice = DoublePicturePath(path);
    return QFile::exists(twice) ? twice : path;
}

QImage ThumbnailOf(QFile& file, QSize pixels) {
    const QImage picture = DecodePicture(file, [pixels](QSize) { return pixels; }).image;
    if (picture.isNull() || pixels.isEmpty()) {
        return QImage();
    }
    return picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace

bool IsResource(const QString& path) {
    return path.startsWith(QLatin1Char(':'));
}

QImage MakeThumbnail(const QString& path, QSize pixels, const std::atomic<bool>& stop) {
    // Looked at before it is opened: a pipe would never give an end.
    if (!QFileInfo(path).isFile()) {
        return QImage();
    }
    StoppableFile file(SharpestSource(path, pixels), stop);
    if (stop || !file.open(QIODevice::ReadOnly)) {
        return QImage();
    }
    QImage thumbnail = ThumbnailOf(file, pixels);
    // A picture whose reading was cut short may have been decoded in part.
    return stop || file.error() != QFileDevice::NoError ? QImage() : thumbnail;
}

QImage CachedThumbnail(ThumbnailCache& cache, const QString& path, QSize pixels,
                       const std::atomic<bool>& stop) {
    // What is part of the program changes with it and is quickly decoded.
    if (IsResource(path)) {
        return MakeThumbnail(path, pixels, stop);
    }
    const QString key = ThumbnailCache::Key(QFileInfo(path), pixels);
    if (key.isEmpty() || stop) {
        return QImage();
    }
    QImage thumbnail = cache.Load(key, pixels);
    if (thumbnail.isNull()) {
        thumbnail = MakeThumbnail(path, pixels, stop);
        if (!thumbnail.isNull()) {
            cache.Store(key, thumbnail);
        }
    }
    return thumbnail;
}

}  // namespace kivo
