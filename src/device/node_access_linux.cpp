#include <unistd.h>
#include <cerrno>

#include "device/node_access.h"

namespace kivo {

bool IsNodeDenied(const QByteArray& path) {
    return ::access(path.constData(), R_OK | W_OK) != 0 && (errno == EACCES || errno == EPERM);
}

}  // namespace kivo
