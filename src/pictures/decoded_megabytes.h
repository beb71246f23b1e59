#pragma once

#include <QImageReader>
#include <QtGlobal>

namespace kivo {

// Lets Qt decode pictures of so many MiB, in the whole program. Qt 6 refuses those of more than 128; Qt 5
// knows no such limit.
inline void AllowDecodedMegabytes(int megabytes) {
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    Q_UNUSED(megabytes)
#else
    QImageReader::setAllocationLimit(megabytes);
#endif
}

}  // namespace kivo
