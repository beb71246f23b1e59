#pragma once

// Reads a picture without letting it eat the memory: what its header claims decides, before any pixel is
// decoded. Any thread.

#include <QImage>
#include <QSize>
#include <QString>

#include <functional>

class QIODevice;

namespace kivo {

struct DecodedPicture {
    QImage image;
    QString refusal;  // why there is no image, for the log: "is too large ...", "cannot be read ..."
};

// The picture in a device that is open and not sequential, turned upright by its own orientation mark. Where
// the format can be decoded at reduced size, it is decoded to usefulSize(its upright size), in pixels; others
// come as they are. No image for what is no picture, cannot be read or is absurdly large.
DecodedPicture DecodePicture(QIODevice& device, const std::function<QSize(QSize)>& usefulSize);

// Whether a picture of that size by its header is decoded at all. Far more where only some lines of it are in
// the memory at a time.
bool IsReasonablePictureSize(QSize size, bool decodesLineByLine);

// Whether a JPEG is of the plain kind, whose pixels come line by line. Of a progressive one, and of one whose
// colours come one after the other, all is in the memory before the first line is known, however small it is
// wanted. The device is left where it was.
bool IsLineByLineJpeg(QIODevice& device);

}  // namespace kivo
