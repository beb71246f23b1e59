#include "pictures/thumbnail_picture.h"

#include <QFile>
#include <QFileInfo>

#include "compose/picture_decoder.h"
#include "pictures/thumbnail_cache.h"
#include "pictures/thumbnail_work.h"
#include "widgets/sharp_picture.h"

namespace kivo {

namespace {

// Tells while it is being read.
class WatchedFile final : public QFile {
public:
    WatchedFile(const QString& path, const ThumbnailWork& work) : QFile(path), m_work(work) {}

protected:
    qint64 readData(char* data, qint64 length) override {
        const ThumbnailWork::FileAccess access(m_work);
        return QFile::readData(data, length);
    }

private:
    const ThumbnailWork& m_work;
};

struct Made {
    QImage thumbnail;
    bool isBroken = false;  // the file was read as it is, and there is no picture in it
};

// The artwork comes in two sizes; files of the user's do not.
QString SharpestSource(const QString& path, QSize pixels) {
    if (!IsResource(path) || pixels.width() <= kThumbnailSize.width()) {
        return path;
    }
    QString twice = DoublePicturePath(path);
    return QFile::exists(twice) ? twice : path;
}

bool Open(QFile& file, const QString& path, const ThumbnailWork& work) {
    const ThumbnailWork::FileAccess access(work);
    // Looked at before it is opened: a pipe would never give an end.
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
}

// A file is never cut short, not even at the end of the program: decoders would call it damaged in the log.
Made Make(const QString& path, QSize pixels, const ThumbnailWork& work) {
    WatchedFile file(SharpestSource(path, pixels), work);
    if (work.IsStopped() || pixels.isEmpty() || !Open(file, path, work)) {
        return {};
    }
    const QImage picture = DecodePicture(file, [pixels](QSize) { return pixels; }).image;
    // A picture whose reading failed may have been decoded in part. Nothing is scaled any more once the end
    // has come: that may need what the program has put away by then.
    if (work.IsStopped() || file.error() != QFileDevice::NoError) {
        return {};
    }
    if (picture.isNull()) {
        return {QImage(), true};
    }
    return {picture.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .convertToFormat(QImage::Format_ARGB32_Premultiplied),
            false};
}

QString KeyOf(const QString& path, QSize pixels, const ThumbnailWork& work) {
    const ThumbnailWork::FileAccess access(work);
    return ThumbnailCache::Key(QFileInfo(path), pixels);
}

}  // namespace

bool IsResource(const QString& path) {
    return path.startsWith(QLatin1Char(':'));
}

QImage MakeThumbnail(const QString& path, QSize pixels, const ThumbnailWork& work) {
    return Make(path, pixels, work).thumbnail;
}

QImage CachedThumbnail(ThumbnailCache& cache, const QString& path, QSize pixels, const ThumbnailWork& work) {
    // What is part of the program changes with it and is quickly decoded.
    if (IsResource(path)) {
        return MakeThumbnail(path, pixels, work);
    }
    const QString key = KeyOf(path, pixels, work);
    if (key.isEmpty() || work.IsStopped() || cache.IsKnownAsBroken(key)) {
        return QImage();
    }
    QImage thumbnail = cache.Load(key, pixels);
    if (!thumbnail.isNull()) {
        return thumbnail;
    }
    Made made = Make(path, pixels, work);
    if (work.IsStopped()) {
        return QImage();
    }
    if (made.isBroken) {
        cache.RememberAsBroken(key);
    } else if (!made.thumbnail.isNull()) {
        cache.Store(key, made.thumbnail);
    }
    return made.thumbnail;
}

}  // namespace kivo
