#include "config/first_run_marker.h"

namespace kivo {

const QByteArray& MarkerBytes() {
    static const QByteArray bytes("true", sizeof("true"));
    return bytes;
}

bool MeansInitialized(quint32 type, const QByteArray& bytes) {
    return type == kMarkerTextType && bytes == MarkerBytes();
}

}  // namespace kivo
