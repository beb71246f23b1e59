#include "pictures/thumbnail_picture.h"

#include <QFile>

#include <memory>

#include "pictures/picture_path.h"
#include "pictures/picture_reader.h"
#include "pictures/picture_work.h"
#include "pictures/thumbnail_cache.h"
#include "widgets/sharp_picture.h"

namespace kivo {

namespace {

// The artwork comes in two sizes; files of the user's do not.
QString SharpestSource(const QString& path, QSize pixels) {
    if (!IsResource(path) || pixels.width() <= kThumbnailSize.width()) {
        return path;
    }
    QString twice = DoublePicturePath(path);
    return QFile::exists(twice) ? twice : path;
}

Picture Make(const QString& path, const Picture& looked, QSize pixels, const PictureWork& work) {
    if (pixels.isEmpty()) {
        return NoPicture(PictureFailure::Unreadable, QStringLiteral("is wanted without a size"));
    }
    Picture picture = DecodePictureFile(
        SharpestSource(path, pixels), looked, [pixels](QSize) { return pixels; }, work);
    // Nothing is scaled any more once the end has come: that may need what the program has put away by then.
    if (picture.failure == PictureFailure::None) {
        picture.image = picture.image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                            .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    }
    return picture;
}

}  // namespace

Picture MakeThumbnail(const QString& path, QSize pixels, const PictureWork& work) {
    const Picture looked = LookUpPicture(path, work);
    return looked.failure == PictureFailure::None ? Make(path, looked, pixels, work) : looked;
}

Picture CachedThumbnail(ThumbnailCache& cache, const QString& path, QSize pixels, const PictureWork& work) {
    // What is part of the program changes with it and is quickly decoded.
    if (IsResource(path)) {
        return MakeThumbnail(path, pixels, work);
    }
    Picture looked = LookUpPicture(path, work);
    if (looked.failure != PictureFailure::None) {
        return looked;
    }
    const QString key = ThumbnailCache::Key(path, looked.version, pixels);
    if (cache.IsKnownAsBroken(key)) {
        return NoPicture(PictureFailure::Unreadable, QStringLiteral("is known to be broken"), looked.version);
    }
    {
        const PictureWork::FileAccess access(work);
        QImage thumbnail = cache.Load(key, pixels);
        if (!thumbnail.isNull()) {
            return {std::move(thumbnail), PictureFailure::None, QString(), looked.version};
        }
    }
    Picture made = Make(path, looked, pixels, work);
    if (made.failure == PictureFailure::None) {
        const PictureWork::FileAccess access(work);
        cache.Store(key, made.image);
    } else if (made.version.bytes >= 0) {
        cache.RememberAsBroken(key);
    }
    return made;
}

PictureSource::Readers FileReaders() {
    auto cache = std::make_shared<ThumbnailCache>();
    return {ReadPicture, [cache](const QString& path, QSize pixels, const PictureWork& work) {
                return CachedThumbnail(*cache, path, pixels, work);
            }};
}

}  // namespace kivo
