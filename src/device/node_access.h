#pragma once

#include <QByteArray>

namespace kivo {

// Whether the device behind the path is there, but this user may not read and write it.
bool IsNodeDenied(const QByteArray& path);

}  // namespace kivo
