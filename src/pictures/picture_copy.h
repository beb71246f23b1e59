#pragma once

// Pictures that are handed on with a layout, and those that come with one. Any thread but the window's.

#include <QByteArray>
#include <QImage>
#include <QString>

namespace kivo {

// The pixels of a picture, and nothing else that its file says, such as where a photograph was taken: a PNG
// file. Empty for a null picture.
QByteArray PictureToHandOn(const QImage& picture);

// How the name of such a picture's file ends, "png" or "jpg". Empty: the bytes are neither, or cannot be
// shown under the usual limits (DecodePicture).
QString SuffixOfPicture(const QByteArray& bytes);

// What a file may be called after a text that comes from anywhere, without ending: letters, digits, blanks,
// hyphens and underscores, kLongestPictureName of them at most, and nothing that a system keeps for itself.
QString PlainFileTitle(const QString& text);

struct PictureCopy {
    QString path;  // empty: it could not be written
    bool isNew = false;
    QString trouble;  // why it could not, for the log
};

// Keeps a picture in the folder, which is made where it is missing: as "<title>.png", "<title> 2.png" and so
// on, whatever is free. A copy with the very same bytes is found again. Nothing is ever written over, and
// nothing is left where it fails. title is a PlainFileTitle.
PictureCopy KeepPictureCopy(const QByteArray& bytes, const QString& title, const QString& suffix,
                            const QString& folder);

}  // namespace kivo
