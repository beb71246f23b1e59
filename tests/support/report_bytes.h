#pragma once

#include <QByteArray>

namespace kivo::test {

// A report that begins so, with zeros up to its size.
inline QByteArray Padded(const QByteArray& start, int size) {
    return start + QByteArray(size - start.size(), '\0');
}

}  // namespace kivo::test
