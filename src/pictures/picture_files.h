#pragma once

// Which files are taken for pictures, by their names alone: looking at one might take as long as its share
// likes.

#include <QStringList>

class QMimeData;

namespace kivo {

// Without a dot, in small letters: what the file dialog offers and a drop is taken for.
QStringList PictureSuffixes();

// The paths of the picture files in what is dragged; empty where there is none.
QStringList PictureFilesOf(const QMimeData* data);

}  // namespace kivo
