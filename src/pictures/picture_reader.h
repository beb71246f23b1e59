#pragma once

// The only reader of pictures: looks a file up, opens it and decodes it. Any thread but the window's, for a
// file may take as long as it likes.

#include <QImage>
#include <QSize>
#include <QString>

#include <functional>

#include "pictures/picture.h"

namespace kivo {

class PictureWork;

// Pixels that are worth decoding, told the upright size of the picture.
using UsefulSize = std::function<QSize(QSize)>;

// No picture that is kept for preview and panel is larger.
constexpr qint64 kMostPicturePixels = 4LL * 1024 * 1024;

// What the file system tells of the file; its failure is None where there is a file to be opened.
Picture LookUpPicture(const QString& path, const PictureWork& work);

// The picture at path (a file or a resource), turned upright by its own orientation mark. Where the format
// can be decoded at reduced size it has usefulSize, others come as they are. What is absurdly large by its
// header is refused before any pixel is decoded. looked is what LookUpPicture gave. A file is never cut
// short, not even when the work is stopped: decoders would call it damaged in the log.
Picture DecodePictureFile(const QString& path, const Picture& looked, const UsefulSize& usefulSize,
                          const PictureWork& work);

// The picture no larger than is useful for the panel: its shorter side has 1080 pixels at most, all of it
// kMostPicturePixels, with 32 bits each at most. former is what was read of this path before, or null: while
// the file is the same, that is the answer.
Picture ReadPicture(const QString& path, const Picture* former, const PictureWork& work);

// The same for whoever has no source of pictures: tools and tests. Null, with one log line that says why,
// where there is none.
QImage LoadPicture(const QString& path);

// One log line that says why a picture cannot be shown.
void LogPictureFailure(const QString& path, const Picture& picture);

}  // namespace kivo
