#pragma once

// One picture made small for the list. Any thread; may take as long as its file takes to read.

#include <QSize>
#include <QString>

#include "pictures/picture.h"
#include "pictures/picture_source.h"

namespace kivo {

class PictureWork;
class ThumbnailCache;

// The list's icon, in window points; what is asked for in device pixels has this shape.
inline constexpr QSize kThumbnailSize{77, 54};

// The picture at path (a file or a resource) squeezed to exactly `pixels` (device pixels) whatever its shape.
// Decoded at reduced size where the format can. Of a resource picture its "@2x" variant is taken where that
// is the sharper one.
Picture MakeThumbnail(const QString& path, QSize pixels, const PictureWork& work);

// The same through a cache: only a picture that is new or has changed is decoded, and a broken one once.
Picture CachedThumbnail(ThumbnailCache& cache, const QString& path, QSize pixels, const PictureWork& work);

// Reads files, thumbnails through the cache in the user's cache folder.
PictureSource::Readers FileReaders();

}  // namespace kivo
