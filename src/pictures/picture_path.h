#pragma once

// What a picture's path says: which picture it names, as settings written by hand may say the same in another
// way, and its file's name. Asks no file system. Any thread.

#include <QDir>
#include <QString>

namespace kivo {

// Whether a path names a part of the program and no file.
inline bool IsResource(const QString& path) {
    return path.startsWith(QLatin1Char(':'));
}

// One form for all ways to write a path, for comparing. What is opened and stored is the path as it was
// given.
inline QString CleanPicturePath(const QString& path) {
    return QDir::cleanPath(QDir::fromNativeSeparators(path));
}

// The name of a picture's file, as people know it.
inline QString PictureFileName(const QString& path) {
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

// The same without its ending. A name that is nothing but an ending stays whole.
inline QString PictureFileTitle(const QString& path) {
    const QString name = PictureFileName(path);
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.left(dot) : name;
}

inline bool IsSamePicture(const QString& a, const QString& b) {
    return a == b || CleanPicturePath(a) == CleanPicturePath(b);
}

}  // namespace kivo
