#pragma once

// One picture made small for the list. Any thread; may take as long as its file takes to read.

#include <QImage>
#include <QSize>
#include <QString>

namespace kivo {

class ThumbnailCache;
class ThumbnailWork;

// The list's icon, in window points; what is asked for in device pixels has this shape.
inline constexpr QSize kThumbnailSize{77, 54};

// Whether a path names a part of the program and no file.
bool IsResource(const QString& path);

// The picture at path (a file or a resource) squeezed to exactly `pixels` (device pixels) whatever its shape,
// turned upright by its own orientation mark. Decoded at reduced size where the format can. Of a resource
// picture its "@2x" variant is taken where that is the sharper one. Null for what is no picture, cannot be
// read, is absurdly large by its header (decided before any pixel is decoded), and when the work has been
// stopped, though what is being decoded then is decoded to its end.
QImage MakeThumbnail(const QString& path, QSize pixels, const ThumbnailWork& work);

// The same through a cache: only a picture that is new or has changed is decoded, and a broken one once.
QImage CachedThumbnail(ThumbnailCache& cache, const QString& path, QSize pixels, const ThumbnailWork& work);

}  // namespace kivo
